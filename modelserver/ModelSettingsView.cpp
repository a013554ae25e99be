// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelSettingsView.h"

#include "modelserver/AppSettings.h"
#include "modelserver/ModelCandidates.h"
#include "modelserver/ModelChoice.h"
#include "modelserver/SettingsRows.h"
#include "ui/PaletteFollower.h"
#include "ui/Symbols.h"

#include <QPropertyAnimation>
#include <QPushButton>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QString warningSymbol = u"exclamationmark.triangle.fill"_s;
const QString doneSymbol = u"checkmark.circle.fill"_s;

const ModelChoice::Texts embeddingTexts{
    .heading = u"Embedding Model"_s,
    .caption = u"Select a model that supports embeddings (text to vector conversion)"_s,
    .pickerTitle = u"Embedding Model"_s,
    .noCandidates = u"No embedding models available. Please install an embedding model (e.g., nomic-embed-text, "
                    u"mxbai-embed-large)"_s,
};

const ModelChoice::Texts languageTexts{
    .heading = u"Language Model (LLM)"_s,
    .caption = u"Select a text-only language model (without vision or embedding capabilities)"_s,
    .pickerTitle = u"LLM Model"_s,
    .noCandidates = u"No compatible LLM models available. Please install a text-only model (e.g., llama3.2, mistral, "
                    u"qwen2.5)"_s,
};

MarkedRow* headlineRow(const QString& symbol, QRgb colour, const QString& text) {
    return new MarkedRow(symbol, colour, textLabel(text, TextStyle::Headline));
}

} // namespace

ModelSettingsView::ModelSettingsView(AppSettings& settings, HttpSession& session, std::chrono::milliseconds timeout,
                                     QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_ollamaService(session, settings, timeout)
    , m_loading(headlineRow(u"arrow.clockwise"_s, colours::blue, u"Loading models..."_s))
    , m_loaded(headlineRow(doneSymbol, colours::green, u"Models loaded"_s))
    , m_modelError(new MarkedRow(warningSymbol, colours::orange, secondaryLabel({}, TextStyle::Caption)))
    , m_configured(new MarkedRow(doneSymbol, colours::green, textLabel(u"Both models configured"_s, TextStyle::Body)))
    , m_notConfigured(new MarkedRow(warningSymbol, colours::orange,
                                    textLabel(u"Please select both models to use the app"_s, TextStyle::Body)))
    , m_embedding(new ModelChoice(embeddingTexts))
    , m_language(new ModelChoice(languageTexts))
    , m_refresh(new QPushButton(u"Refresh Models"_s))
    , m_save(new QPushButton(u"Save Selection"_s))
    , m_turning(new QPropertyAnimation(&m_loading->symbol(), "rotation", this)) {
    auto* form = new QWidget;
    auto* sections = new QVBoxLayout(form);
    sections->setContentsMargins(spacing::gridColumn, spacing::gridColumn, spacing::gridColumn, spacing::gridColumn);
    sections->setSpacing(spacing::gridRow);
    sections->addWidget(loadingSection());
    sections->addWidget(m_embedding);
    sections->addWidget(m_language);
    sections->addWidget(statusSection());
    sections->addWidget(m_save, 0, Qt::AlignLeft);
    sections->addStretch(1);

    auto* scrolling = new QScrollArea;
    scrolling->setWidgetResizable(true);
    scrolling->setFrameShape(QFrame::NoFrame);
    scrolling->setFocusPolicy(Qt::NoFocus); // it follows the focus of what is in it
    scrolling->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolling->setWidget(form);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scrolling);

    m_turning->setStartValue(0.0);
    m_turning->setEndValue(360.0);
    m_turning->setDuration(1000);
    m_turning->setLoopCount(-1);
    connectParts();
    showLoading();
    showModels();
    showStatus();
    showSaveable();
}

QWidget* ModelSettingsView::loadingSection() {
    m_loading->setObjectName(u"loading"_s);
    m_loaded->setObjectName(u"loaded"_s);
    m_modelError->setObjectName(u"modelError"_s);
    m_refresh->setObjectName(u"refresh"_s);
    followPalette(*m_refresh, [this] {
        m_refresh->setIcon(symbolIcon(u"arrow.clockwise"_s, m_refresh->palette().color(QPalette::ButtonText)));
    });
    m_refresh->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* section = new FormSection;
    section->add(m_loading);
    section->add(m_loaded);
    section->add(m_modelError);
    section->add(m_refresh);
    return section;
}

QWidget* ModelSettingsView::statusSection() {
    m_embedding->setObjectName(u"embedding"_s);
    m_language->setObjectName(u"language"_s);
    m_configured->setObjectName(u"configured"_s);
    m_notConfigured->setObjectName(u"notConfigured"_s);
    m_save->setObjectName(u"saveSelection"_s);
    m_save->setDefault(true);
    auto* section = new FormSection;
    section->add(m_configured);
    section->add(m_notConfigured);
    return section;
}

void ModelSettingsView::connectParts() {
    connect(&m_ollamaService, &OllamaService::availableModelsChanged, this, &ModelSettingsView::showModels);
    connect(&m_ollamaService, &OllamaService::isLoadingModelsChanged, this, &ModelSettingsView::showLoading);
    connect(&m_ollamaService, &OllamaService::modelErrorChanged, this, &ModelSettingsView::showLoading);
    connect(&m_settings, &AppSettings::bothModelsChosenChanged, this, &ModelSettingsView::showStatus);
    connect(m_embedding, &ModelChoice::selectionChanged, this, &ModelSettingsView::showSaveable);
    connect(m_language, &ModelChoice::selectionChanged, this, &ModelSettingsView::showSaveable);
    connect(m_refresh, &QPushButton::clicked, &m_ollamaService, &OllamaService::fetchAvailableModels);
    connect(m_save, &QPushButton::clicked, this, &ModelSettingsView::save);
}

void ModelSettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        appear();
        showLoading();
    }
}

void ModelSettingsView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    showLoading(); // nothing turns where nobody sees it
}

const std::optional<QString>& ModelSettingsView::selectedEmbeddingModel() const {
    return m_embedding->selection();
}

const std::optional<QString>& ModelSettingsView::selectedLLMModel() const {
    return m_language->selection();
}

void ModelSettingsView::appear() {
    m_embedding->setSelection(m_settings.selectedEmbeddingModel());
    m_language->setSelection(m_settings.selectedLLMModel());
    m_ollamaService.fetchAvailableModels();
}

void ModelSettingsView::showLoading() {
    const bool loading = m_ollamaService.isLoadingModels();
    m_loading->setVisible(loading);
    m_loaded->setVisible(!loading);
    if (loading && isVisible()) {
        m_turning->start();
    } else {
        m_turning->stop();
    }
    m_modelError->setText(m_ollamaService.modelError().value_or(QString()));
    m_modelError->setVisible(m_ollamaService.modelError().has_value());
}

void ModelSettingsView::showModels() {
    m_embedding->setCandidates(embeddingCandidates(m_ollamaService.availableModels()));
    m_language->setCandidates(languageModelCandidates(m_ollamaService.availableModels()));
}

void ModelSettingsView::showStatus() {
    m_configured->setVisible(m_settings.bothModelsChosen());
    m_notConfigured->setVisible(!m_settings.bothModelsChosen());
}

void ModelSettingsView::showSaveable() {
    m_save->setEnabled(selectedEmbeddingModel() && selectedLLMModel());
}

void ModelSettingsView::save() {
    m_settings.setSelectedEmbeddingModel(selectedEmbeddingModel());
    m_settings.setSelectedLLMModel(selectedLLMModel());
}

} // namespace dorvantel
