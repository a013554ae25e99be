// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/SettingsRows.h"

#include "ui/PaletteFollower.h"
#include "ui/Symbols.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace dorvantel {

QLabel* textLabel(const QString& text, TextStyle style, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(textFont(style));
    label->setWordWrap(true);
    return label;
}

QLabel* secondaryLabel(const QString& text, TextStyle style, QWidget* parent) {
    QLabel* label = textLabel(text, style, parent);
    followPalette(*label, [label] {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, secondaryTextColour(palette));
        label->setPalette(palette);
    });
    return label;
}

MarkedRow::MarkedRow(const QString& symbol, const QColor& colour, QLabel* label, QWidget* parent)
    : QWidget(parent)
    , m_symbol(new SymbolView(symbol, colour, 16))
    , m_label(label) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing::small);
    layout->addWidget(m_symbol, 0, Qt::AlignTop);
    layout->addWidget(m_label, 1);
    followPalette(*this, [this, colour] { m_symbol->setColour(readableColour(colour, palette())); });
}

FormSection::FormSection(QWidget* parent)
    : QFrame(parent)
    , m_rows(new QVBoxLayout(this)) {
    m_rows->setContentsMargins(spacing::standard, spacing::gridRow, spacing::standard, spacing::gridRow);
    m_rows->setSpacing(spacing::small);
}

void FormSection::add(QWidget* row) {
    m_rows->addWidget(row);
}

void FormSection::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), spacing::cornerRadius,
                            spacing::cornerRadius);
}

} // namespace dorvantel
