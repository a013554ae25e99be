// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelDetailView.h"

#include "modelserver/CapabilityBadge.h"
#include "modelserver/SettingsRows.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

void addDetail(QVBoxLayout& rows, const QString& label, const std::optional<QString>& value) {
    if (!value) {
        return;
    }
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing::tight);
    QLabel* name = secondaryLabel(label, TextStyle::Caption2);
    name->setWordWrap(false);
    row->addWidget(name, 0, Qt::AlignTop);
    row->addWidget(textLabel(*value, TextStyle::Caption2), 1);
    rows.addLayout(row);
}

QHBoxLayout* badgeRow(const ModelCapabilities& capabilities) {
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing::tight);
    QLabel* name = secondaryLabel(u"Capabilities:"_s, TextStyle::Caption);
    name->setWordWrap(false);
    row->addWidget(name);
    const auto add = [row](bool supported, const QString& text, QRgb colour) {
        if (supported) {
            row->addWidget(new CapabilityBadge(text, colour));
        }
    };
    add(capabilities.supportsEmbedding, u"Embedding"_s, colours::blue);
    add(capabilities.supportsTools, u"Tools"_s, colours::purple);
    add(capabilities.supportsVision, u"Vision"_s, colours::green);
    add(capabilities.supportsThinking, u"Thinking"_s, colours::orange);
    row->addStretch(1);
    return row;
}

} // namespace

ModelDetailView::ModelDetailView(const OllamaModel& model, QWidget* parent)
    : QFrame(parent)
    , m_model(model) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(8, 8, 8, 8);
    rows->setSpacing(spacing::tight);
    if (model.details) {
        addDetail(*rows, u"Format:"_s, model.details->format);
        addDetail(*rows, u"Parameters:"_s, model.details->parameterSize);
        addDetail(*rows, u"Family:"_s, model.details->family);
    }
    rows->addLayout(badgeRow(model.capabilities));
}

void ModelDetailView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(QColor(colours::gray), 0.1));
    painter.drawRoundedRect(rect(), 6, 6);
}

} // namespace dorvantel
