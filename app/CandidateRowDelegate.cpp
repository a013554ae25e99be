// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/CandidateRowDelegate.h"

#include "app/CandidateListModel.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QIcon>
#include <QPainter>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using Kind = CandidateListModel::Kind;

constexpr int figurePoints = 36;
constexpr int figureWidth = 52;

Kind kindOf(const QModelIndex& index) {
    return static_cast<Kind>(index.data(CandidateListModel::KindRole).toInt());
}

struct Colours {
    QColor primary;
    QColor secondary;
};

Colours coloursOf(const QStyleOptionViewItem& option) {
    if (option.state.testFlag(QStyle::State_Selected)) {
        const QColor text = option.palette.color(QPalette::HighlightedText);
        return {text, withOpacity(text, 0.85)};
    }
    return {option.palette.color(QPalette::Text), secondaryTextColour(option.palette)};
}

void drawLine(QPainter* painter, const QRect& rect, TextStyle style, const QColor& colour, const QString& text) {
    painter->setFont(textFont(style));
    painter->setPen(colour);
    painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(text, Qt::ElideRight, rect.width()));
}

void drawBackground(QPainter* painter, const QStyleOptionViewItem& option) {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    if (!selected && !hovered) {
        return;
    }
    QColor fill = option.palette.color(QPalette::Highlight);
    if (!selected) {
        fill = withOpacity(fill, 0.08);
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(option.rect.adjusted(spacing::small, 1, -spacing::small, -1), spacing::cornerRadius,
                             spacing::cornerRadius);
}

/// The way to the search screen.
struct SearchRowUIView {
    QString label;

    void draw(QPainter* painter, const QRect& content, const Colours& colours) const {
        constexpr int symbolSize = 16;
        symbolIcon(u"magnifyingglass"_s, colours.primary)
            .paint(painter, content.left(), content.center().y() - symbolSize / 2, symbolSize, symbolSize);
        drawLine(painter, content.adjusted(symbolSize + spacing::small, 0, 0, 0), TextStyle::Body, colours.primary,
                 label);
    }
};

/// A candidate: the figure, and beside it the name over the profession.
struct CandidateRowUIView {
    QString figure;
    QString name;
    QString profession;

    void draw(QPainter* painter, const QRect& content, const Colours& colours) const {
        painter->setFont(emojiFont(figurePoints));
        painter->setPen(colours.primary);
        painter->drawText(QRect(content.left(), content.top(), figureWidth, content.height()), Qt::AlignCenter, figure);
        const QRect texts = content.adjusted(figureWidth + spacing::small, 0, 0, 0);
        const int half = texts.height() / 2;
        drawLine(painter, texts.adjusted(0, spacing::tight, 0, -half), TextStyle::Headline, colours.primary, name);
        drawLine(painter, texts.adjusted(0, half, 0, -spacing::tight), TextStyle::Subheadline, colours.secondary,
                 profession);
    }
};

} // namespace

void CandidateRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    painter->save();
    drawBackground(painter, option);
    const QRect content = option.rect.adjusted(spacing::standard, 0, -spacing::standard, 0);
    const QString text = index.data().toString();
    switch (kindOf(index)) {
    case Kind::Search:
        SearchRowUIView{text}.draw(painter, content, coloursOf(option));
        break;
    case Kind::Header:
        drawLine(painter, content, TextStyle::Caption, secondaryTextColour(option.palette), text);
        break;
    case Kind::Candidate:
        CandidateRowUIView{index.data(CandidateListModel::FigureRole).toString(), text,
                           index.data(CandidateListModel::ProfessionRole).toString()}
            .draw(painter, content, coloursOf(option));
        break;
    }
    painter->restore();
}

QSize CandidateRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    switch (kindOf(index)) {
    case Kind::Search:
        return {0, 36};
    case Kind::Header:
        return {0, 28};
    case Kind::Candidate:
        break;
    }
    return {0, figurePoints + 12 + 2 * spacing::tight};
}

} // namespace dorvantel
