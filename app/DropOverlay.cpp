// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/DropOverlay.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

DropOverlay::DropOverlay(QWidget* parent)
    : QWidget(parent)
    , m_opacity(new QGraphicsOpacityEffect(this))
    , m_fade(m_opacity, "opacity") {
    setObjectName(u"dropOverlay"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGraphicsEffect(m_opacity);
    m_opacity->setOpacity(0);
    connect(&m_fade, &QPropertyAnimation::finished, this, [this] { setVisible(m_targeted); });
    hide();
}

// Its heavy letters are the only ones of the window, and finding their font takes a good part of what the start takes.
void DropOverlay::makeContents() {
    auto* icon = new SymbolView(u"plus.circle.fill"_s, Qt::white, 60);
    auto* text = new QLabel(u"Deposita el currículum aquí..."_s);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    QFont heavy = textFont(TextStyle::LargeTitle);
    heavy.setWeight(QFont::Black);
    text->setFont(heavy);
    text->setStyleSheet(u"color: white"_s);
    constexpr int textWidth = 250;
    text->setFixedSize(textWidth, text->heightForWidth(textWidth));
    auto* column = new QVBoxLayout(this);
    column->setSpacing(8);
    column->addStretch();
    column->addWidget(icon, 0, Qt::AlignHCenter);
    column->addWidget(text, 0, Qt::AlignHCenter);
    column->addStretch();
}

void DropOverlay::setTargeted(bool targeted) {
    if (m_targeted == targeted) {
        return;
    }
    m_targeted = targeted;
    if (targeted) {
        if (!layout()) {
            makeContents();
        }
        raise();
        show();
    }
    m_fade.stop();
    m_fade.setDuration(style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this)); // 0: no animations
    m_fade.setStartValue(m_opacity->opacity());
    m_fade.setEndValue(targeted ? 1.0 : 0.0);
    m_fade.start();
}

void DropOverlay::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), withOpacity(Qt::black, 0.7));
}

} // namespace dorvantel
