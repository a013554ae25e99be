// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/ControlStyle.h"

#include "ui/DeferredIcon.h"
#include "ui/Style.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QPainter>
#include <QPointer>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr qreal radius = spacing::cornerRadius;

/// Drawn on half pixels, so that a line one point wide is one row of pixels.
QRectF outline(const QRect& rect) {
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawRounded(QPainter& painter, const QRectF& rect, const QColor& fill, const QPen& pen) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void drawRing(QPainter& painter, const QRect& rect, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

QColor pressedShade(const QColor& colour, const QStyle::State state) {
    if (state & QStyle::State_Sunken) {
        return colour.darker(115);
    }
    if ((state & QStyle::State_MouseOver) && (state & QStyle::State_Enabled)) {
        return colour.lightness() > 128 ? colour.darker(104) : colour.lighter(112);
    }
    return colour;
}

bool isAccented(const QStyleOption& option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return button && (button->features & QStyleOptionButton::DefaultButton) && (option.state & QStyle::State_Enabled);
}

void drawButtonPanel(QPainter& painter, const QStyleOption& option) {
    const QPalette& palette = option.palette;
    const bool raised = isAccented(option) || (option.state & QStyle::State_On);
    const QColor fill = palette.color(raised ? QPalette::Highlight : QPalette::Button);
    const QPen pen(raised ? fill : palette.color(QPalette::Mid), 1);
    drawRounded(painter, outline(option.rect), pressedShade(fill, option.state), pen);
}

/// A radio button when `corner` makes it round, else a check box.
void drawIndicator(QPainter& painter, const QStyleOption& option, qreal corner) {
    const QPalette& palette = option.palette;
    const QRectF box = outline(option.rect);
    const bool on = option.state & QStyle::State_On;
    const QColor fill = palette.color(on ? QPalette::Highlight : QPalette::Base);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(on ? fill : palette.color(QPalette::Dark), 1));
    painter.setBrush(pressedShade(fill, option.state));
    painter.drawRoundedRect(box, corner, corner);
    if (on && corner * 2 >= option.rect.height()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.color(QPalette::HighlightedText));
        painter.drawEllipse(box.center(), 3, 3);
    } else if (on) {
        painter.setPen(QPen(palette.color(QPalette::HighlightedText), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF(
            {box.center() + QPointF(-3.5, 0), box.center() + QPointF(-1, 2.5), box.center() + QPointF(3.5, -3)}));
    }
    painter.restore();
}

void drawArrowDown(QPainter& painter, const QRect& rect, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF centre = QRectF(rect).center();
    painter.drawPolyline(QPolygonF({centre + QPointF(-4, -2), centre + QPointF(0, 2), centre + QPointF(4, -2)}));
    painter.restore();
}

/// What lies behind a scroll bar is what lies behind the content beside it.
QPalette::ColorRole backgroundBeside(const QWidget* scrollBar) {
    for (const QWidget* parent = scrollBar; parent; parent = parent->parentWidget()) {
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(parent)) {
            return area->viewport()->backgroundRole();
        }
    }
    return QPalette::Base;
}

void drawScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle, const QWidget* widget) {
    const QPalette& palette = option.palette;
    painter.fillRect(option.rect, palette.color(backgroundBeside(widget)));
    if (!(option.state & QStyle::State_Enabled) || option.minimum == option.maximum) {
        return;
    }
    const bool held = (option.activeSubControls & QStyle::SC_ScrollBarSlider) &&
                      (option.state & (QStyle::State_Sunken | QStyle::State_MouseOver));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(palette.color(QPalette::Text), held ? 0.5 : 0.3));
    painter.drawRoundedRect(QRectF(handle).adjusted(2, 2, -2, -2), 3, 3);
    painter.restore();
}

/// Scroll bars have no arrow buttons: the handle runs from end to end.
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
    const bool horizontal = option.orientation == Qt::Horizontal;
    const int length = horizontal ? option.rect.width() : option.rect.height();
    const int steps = option.maximum - option.minimum;
    constexpr int shortest = 28;
    const int handle =
        steps > 0 ? std::clamp(static_cast<int>(qint64(length) * option.pageStep / (qint64(steps) + option.pageStep)),
                               std::min(shortest, length), length)
                  : length;
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - handle, option.upsideDown);
    const auto span = [&](int from, int size) {
        return horizontal ? QRect(option.rect.x() + from, option.rect.y(), size, option.rect.height())
                          : QRect(option.rect.x(), option.rect.y() + from, option.rect.width(), size);
    };
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return option.rect;
    case QStyle::SC_ScrollBarSlider:
        return span(start, handle);
    case QStyle::SC_ScrollBarSubPage:
        return span(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return span(start + handle, length - start - handle);
    default:
        return {};
    }
}

} // namespace

void drawFieldFrame(QPainter& painter, const QRect& rect, const QPalette& palette, bool focused) {
    drawRounded(painter, outline(rect), palette.color(QPalette::Base), QPen(palette.color(QPalette::Mid), 1));
    if (focused) {
        drawRing(painter, rect, palette);
    }
}

ControlStyle::ControlStyle()
    : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_PanelLineEdit: {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        if (frame && frame->lineWidth > 0) {
            drawFieldFrame(*painter, option->rect, option->palette, option->state & State_HasFocus);
            return;
        }
        break;
    }
    case PE_Frame:
        if (qobject_cast<const QAbstractScrollArea*>(widget) && widget->isWindow()) {
            // A list that pops up: nothing shines through round corners of a window, and its focus is elsewhere.
            painter->fillRect(option->rect, option->palette.color(QPalette::Mid));
            painter->fillRect(option->rect.adjusted(1, 1, -1, -1), option->palette.color(QPalette::Base));
            return;
        }
        if (qobject_cast<const QAbstractScrollArea*>(widget)) {
            drawFieldFrame(*painter, option->rect, option->palette, option->state & State_HasFocus);
            return;
        }
        break;
    case PE_IndicatorRadioButton:
        drawIndicator(*painter, *option, option->rect.height() / 2.0);
        return;
    case PE_IndicatorCheckBox:
        drawIndicator(*painter, *option, 4);
        return;
    case PE_PanelButtonCommand:
        drawButtonPanel(*painter, *option);
        return;
    case PE_FrameFocusRect:
        // A row of a list says where it is by its selection; a ring around it as well would be noise.
        if (!widget || !widget->inherits("QAbstractItemView")) {
            drawRing(*painter, option->rect, option->palette);
        }
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ControlStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && button && (isAccented(*option) || (option->state & State_On))) {
        QStyleOptionButton accented = *button;
        accented.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &accented, painter, widget);
        return;
    }
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item && item->menuItemType == QStyleOptionMenuItem::Separator &&
        item->text.isEmpty()) {
        // The style beneath darkens the window's colour for it, which on a dark window is not seen.
        const int y = option->rect.center().y();
        painter->fillRect(QRect(option->rect.left() + spacing::small, y, option->rect.width() - 2 * spacing::small, 1),
                          option->palette.color(QPalette::Mid));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
    const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control == CC_ComboBox && combo && !combo->editable) {
        drawButtonPanel(*painter, *option);
        const QRect arrow = proxy()->subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
        drawArrowDown(*painter, arrow, option->palette.color(QPalette::ButtonText));
        if (option->state & State_HasFocus) {
            drawRing(*painter, option->rect, option->palette);
        }
        return;
    }
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && slider) {
        drawScrollBar(*painter, *slider, proxy()->subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget),
                      widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect ControlStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && slider) {
        return scrollBarPart(*slider, part);
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect ControlStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (element == SE_LineEditContents && frame && frame->lineWidth > 0) {
        return rect.adjusted(spacing::tight, 0, -spacing::tight, 0);
    }
    return rect;
}

int ControlStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return 10;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 16;
    case PM_DefaultFrameWidth:
        // Room for the round corners, which the contents of a scroll area would paint over.
        return qobject_cast<const QAbstractScrollArea*>(widget) ? 3 : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
        return spacing::standard;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
    case PM_FocusFrameHMargin:
        return spacing::small;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_ComboBox_Popup:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize ControlStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    constexpr int controlHeight = 28;
    switch (type) {
    case CT_PushButton:
        return size.expandedTo(QSize(size.width() + 2 * spacing::small, controlHeight));
    case CT_ItemViewItem:
        return size.expandedTo(QSize(0, 24));
    case CT_LineEdit:
    case CT_ComboBox:
        return size.expandedTo(QSize(0, controlHeight));
    default:
        return size;
    }
}

// Every menu bar has a button for what it has no room for, hidden as a rule; looking its icon up makes the toolkit load
// all that it can read pictures with.
QIcon ControlStyle::standardIcon(StandardPixmap symbol, const QStyleOption* option, const QWidget* widget) const {
    if (symbol == SP_ToolBarHorizontalExtensionButton) {
        return deferredIcon(
            [style = QPointer(baseStyle()), symbol] { return style ? style->standardIcon(symbol) : QIcon(); });
    }
    return QProxyStyle::standardIcon(symbol, option, widget);
}

void ControlStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void ControlStyle::polish(QPalette& palette) {
    palette = lookFor(palette).resolve(palette);
}

} // namespace dorvantel
