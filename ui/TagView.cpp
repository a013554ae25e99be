// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TagView.h"

#include "ui/AccessibleRole.h"
#include "ui/Style.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QtMath>

#include <algorithm>

namespace dorvantel {

namespace {

constexpr int outerPadding = spacing::tight; ///< around every chip
constexpr int innerPadding = spacing::small; ///< left and right of the text
constexpr int innerRise = 3;                 ///< above and below the text
constexpr qreal chipRadius = 8;

// Pairs that can be read: white on the fill of an unselected chip, the text colour on that of a selected one.
constexpr QRgb unselectedFill = colours::red;
constexpr QRgb selectedFill = 0xff9be5ae; ///< a light green
constexpr QRgb selectedText = 0xff0b3a9e; ///< a dark blue
constexpr QRgb outlineColour = 0xfff08c1e;

} // namespace

/// One chip. It reads its item and reports clicks; the item belongs to the view.
class TagView::Chip final : public QPushButton {
public:
    Chip(const QString& title, bool isSelected, QWidget* parent)
        : QPushButton(parent)
        , m_title(title) {
        setFont(textFont(TextStyle::Caption));
        setCheckable(true);
        setChecked(isSelected);
        setAccessibleName(title);
        setFocusPolicy(Qt::ClickFocus);
    }

    QSize sizeHint() const override {
        // Rounded up: a text that is wider than its room by a fraction is elided.
        const int textWidth = qCeil(QFontMetricsF(font()).horizontalAdvance(m_title));
        return {textWidth + 2 * innerPadding, QFontMetrics(font()).height() + 2 * innerRise};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(isChecked() ? selectedFill : unselectedFill));
        painter.setPen(QPen(QColor(outlineColour), 1));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), chipRadius, chipRadius);
        painter.setPen(isChecked() ? QColor(selectedText) : QColor(Qt::white));
        const QRect inner = rect().adjusted(innerPadding, 0, -innerPadding, 0);
        const QString shown = fontMetrics().elidedText(m_title, Qt::ElideRight, inner.width());
        painter.drawText(inner, Qt::AlignCenter | Qt::TextSingleLine, shown);
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), chipRadius, chipRadius);
        }
    }

    void resizeEvent(QResizeEvent*) override { setToolTip(width() < sizeHint().width() ? m_title : QString()); }

    void keyPressEvent(QKeyEvent* event) override {
        // Buttons take the arrow keys for themselves; here they are the view's.
        if (event->key() == Qt::Key_Space) {
            QPushButton::keyPressEvent(event);
        } else {
            event->ignore();
        }
    }

private:
    QString m_title;
};

TagView::TagView(const QList<TagViewItem>& tags, QWidget* parent)
    : QWidget(parent)
    , m_tags(tags) {
    setAccessibleRole(*this, QAccessible::Grouping);
    for (qsizetype i = 0; i < m_tags.size(); ++i) {
        auto* chip = new Chip(m_tags[i].title, m_tags[i].isSelected, this);
        connect(chip, &QPushButton::clicked, this, [this, i] { toggle(i); });
        m_chips.append(chip);
        m_titles.append(m_tags[i].title);
        m_sizes.append(chip->sizeHint() + QSize(2 * outerPadding, 2 * outerPadding));
    }
    if (!m_chips.isEmpty()) {
        m_chips[0]->setFocusPolicy(Qt::StrongFocus);
    }
    // Not Fixed: a layout would take the hint, which is for one line, as the greatest height.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

TagLayout TagView::layoutFor(int width) const {
    return layOutTags(m_titles, m_sizes, width);
}

int TagView::totalHeight() const {
    return heightForWidth(width());
}

int TagView::heightForWidth(int width) const {
    return layoutFor(width).totalHeight;
}

QSize TagView::sizeHint() const {
    int width = 0;
    for (const QSize& size : m_sizes) {
        width += size.width();
    }
    return {width, heightForWidth(width)};
}

QSize TagView::minimumSizeHint() const {
    return {0, 0};
}

void TagView::resizeEvent(QResizeEvent*) {
    const TagLayout layout = layoutFor(width());
    for (qsizetype i = 0; i < m_chips.size(); ++i) {
        const QPoint corner = layout.places[i] + QPoint(outerPadding, outerPadding);
        const QSize whole = m_chips[i]->sizeHint();
        m_chips[i]->setGeometry(QRect(corner, whole.boundedTo({width() - corner.x() - outerPadding, whole.height()})));
    }
}

void TagView::toggle(qsizetype index) {
    m_tags[index].isSelected = !m_tags[index].isSelected;
    m_chips[index]->setChecked(m_tags[index].isSelected);
    focusChip(index);
}

void TagView::keyPressEvent(QKeyEvent* event) {
    const auto focused = std::ranges::find_if(m_chips, [](const Chip* chip) { return chip->hasFocus(); });
    const qsizetype index = focused - m_chips.begin();
    switch (event->key()) {
    case Qt::Key_Right:
        focusChip(index + 1);
        break;
    case Qt::Key_Left:
        focusChip(index - 1);
        break;
    case Qt::Key_Home:
        focusChip(0);
        break;
    case Qt::Key_End:
        focusChip(m_chips.size() - 1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TagView::focusChip(qsizetype index) {
    if (index < 0 || index >= m_chips.size()) {
        return;
    }
    for (Chip* chip : m_chips) {
        chip->setFocusPolicy(Qt::ClickFocus);
    }
    m_chips[index]->setFocusPolicy(Qt::StrongFocus);
    m_chips[index]->setFocus(Qt::OtherFocusReason);
}

} // namespace dorvantel
