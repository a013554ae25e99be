// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaSettingsView.h"

#include "modelserver/AppSettings.h"
#include "modelserver/ServerAddress.h"
#include "modelserver/SettingsRows.h"
#include "platform/MainQueue.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

struct SettingsURLExample {
    QStringView title;
    QStringView url;
};

constexpr std::array urlExamples{
    SettingsURLExample{u"Local (default)", AppSettings::defaultURL},
    SettingsURLExample{u"Custom port", u"http://localhost:8080"},
    SettingsURLExample{u"Remote server", u"http://192.168.1.100:11434"},
};

} // namespace

RunLater runLaterOnMainQueue() {
    return [](std::chrono::milliseconds delay, QObject* context, std::function<void()> work) {
        runOnMainQueueAfter(delay, context, std::move(work));
    };
}

OllamaSettingsView::OllamaSettingsView(AppSettings& settings, RunLater runLater, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_runLater(std::move(runLater))
    , m_urlText(new QLineEdit(settings.ollamaURL()))
    , m_errorMessage(
          new MarkedRow(u"exclamationmark.triangle.fill"_s, colours::orange, textLabel({}, TextStyle::Caption)))
    , m_saveConfirmation(
          new MarkedRow(u"checkmark.circle.fill"_s, colours::green,
                        textLabel(u"Settings saved! Restart the app to apply changes."_s, TextStyle::Body)))
    , m_save(new QPushButton(u"Save"_s)) {
    m_urlText->setObjectName(u"urlText"_s);
    m_errorMessage->setObjectName(u"errorMessage"_s);
    m_saveConfirmation->setObjectName(u"saveConfirmation"_s);
    m_save->setObjectName(u"save"_s);
    m_save->setDefault(true);

    setAutoFillBackground(true); // as the other page's scroll area does, and not in the tab's own colour
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(spacing::gridColumn, spacing::gridColumn, spacing::gridColumn, spacing::gridColumn);
    rows->setSpacing(spacing::small);
    rows->addWidget(textLabel(u"Ollama Server URL"_s, TextStyle::Headline));
    rows->addWidget(secondaryLabel(u"Enter the URL where your Ollama server is running"_s, TextStyle::Caption));
    rows->addWidget(addressRow());
    rows->addWidget(m_errorMessage);
    rows->addWidget(m_saveConfirmation);
    rows->addWidget(m_save, 0, Qt::AlignLeft);
    rows->addSpacing(spacing::standard);
    rows->addWidget(textLabel(u"Examples"_s, TextStyle::Headline));
    rows->addWidget(examples());
    rows->addStretch(1);

    const auto enableSave = [this] { m_save->setEnabled(!withoutOuterBlanks(m_urlText->text()).isEmpty()); };
    connect(m_urlText, &QLineEdit::textChanged, this, enableSave);
    connect(m_urlText, &QLineEdit::returnPressed, m_save, &QPushButton::click);
    connect(m_save, &QPushButton::clicked, this, &OllamaSettingsView::save);
    enableSave();
    showOutcome(std::nullopt, false);
}

QWidget* OllamaSettingsView::addressRow() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_urlText->setPlaceholderText(AppSettings::defaultURL.toString());
    m_urlText->setAccessibleName(u"Ollama Server URL"_s);
    layout->addWidget(m_urlText, 1);
    auto* reset = new QPushButton(u"Reset"_s);
    reset->setObjectName(u"reset"_s);
    connect(reset, &QPushButton::clicked, this, [this] { m_urlText->setText(AppSettings::defaultURL.toString()); });
    layout->addWidget(reset);
    return row;
}

QWidget* OllamaSettingsView::examples() {
    auto* list = new QWidget;
    auto* layout = new QGridLayout(list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(spacing::gridColumn);
    layout->setVerticalSpacing(spacing::tight);
    layout->setColumnStretch(1, 1);
    for (const SettingsURLExample& example : urlExamples) {
        const int row = layout->rowCount();
        layout->addWidget(secondaryLabel(example.title.toString(), TextStyle::Caption), row, 0);
        layout->addWidget(secondaryLabel(example.url.toString(), TextStyle::Caption), row, 1);
    }
    return list;
}

void OllamaSettingsView::save() {
    const std::expected<QString, QString> address = checkedServerAddress(m_urlText->text());
    if (!address) {
        showOutcome(address.error(), false);
        return;
    }
    m_settings.setOllamaURL(*address);
    showOutcome(std::nullopt, true);
    // Never cancelled: after two saves in a row the confirmation goes when the first one's time is over.
    m_runLater(std::chrono::seconds(3), this, [this] { setShowingSaveConfirmation(false); });
}

void OllamaSettingsView::showOutcome(const std::optional<QString>& errorMessage, bool showing) {
    m_errorMessage->setText(errorMessage.value_or(QString()));
    m_errorMessage->setVisible(errorMessage.has_value());
    setShowingSaveConfirmation(showing);
}

void OllamaSettingsView::setShowingSaveConfirmation(bool showing) {
    m_showingSaveConfirmation = showing;
    m_saveConfirmation->setVisible(showing);
}

} // namespace dorvantel
