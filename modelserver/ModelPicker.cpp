// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelPicker.h"

#include "modelserver/FileSizeText.h"
#include "ui/Style.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int nameRole = Qt::UserRole;
constexpr int sizeRole = Qt::UserRole + 1;

/// The name and, smaller and paler, the size behind it. What does not fit is cut from the name.
void drawEntry(QPainter& painter, const QRect& rect, const QString& name, const QString& size, const QColor& nameColour,
               const QColor& sizeColour) {
    const QFont sizeFont = textFont(TextStyle::Caption);
    const QFontMetrics sizeMetrics(sizeFont);
    const int sizeWidth = size.isEmpty() ? 0 : spacing::tight + sizeMetrics.horizontalAdvance(size);
    const QFontMetrics nameMetrics = painter.fontMetrics();
    const QString shown = nameMetrics.elidedText(name, Qt::ElideMiddle, rect.width() - sizeWidth);
    painter.setPen(nameColour);
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    if (sizeWidth > 0) {
        const QRect rest = rect.adjusted(nameMetrics.horizontalAdvance(shown) + spacing::tight, 0, 0, 0);
        painter.setFont(sizeFont);
        painter.setPen(sizeColour);
        painter.drawText(rest, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, size);
    }
}

class EntryDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem entry = option;
        initStyleOption(&entry, index);
        const QString size = index.data(sizeRole).toString();
        if (size.isEmpty()) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        const QStyle& style = *entry.widget->style();
        const QRect rect = style.subElementRect(QStyle::SE_ItemViewItemText, &entry, entry.widget);
        entry.text.clear();
        style.drawControl(QStyle::CE_ItemViewItem, &entry, painter, entry.widget);
        const bool selected = entry.state & QStyle::State_Selected;
        const QColor colour = entry.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &entry, entry.widget) + 1;
        painter->save();
        painter->setFont(entry.font);
        drawEntry(*painter, rect.adjusted(margin, 0, -margin, 0), index.data(nameRole).toString(), size, colour,
                  selected ? colour : secondaryTextColour(entry.palette));
        painter->restore();
    }
};

} // namespace

ModelPicker::ModelPicker(const QString& title, QWidget* parent)
    : QComboBox(parent) {
    setAccessibleName(title);
    setItemDelegate(new EntryDelegate(this));
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(24);
    addItem(u"Select a model..."_s);
    connect(this, &QComboBox::activated, this, [this](int index) {
        const QVariant name = itemData(index, nameRole);
        m_selection = name.isValid() ? std::optional(name.toString()) : std::nullopt;
        Q_EMIT chosen();
    });
}

void ModelPicker::setModels(const QList<OllamaModel>& models) {
    if (models == m_models) {
        return;
    }
    m_models = models;
    while (count() > 1) {
        removeItem(count() - 1);
    }
    int widest = 0;
    for (const OllamaModel& model : models) {
        const QString size = model.size ? u"(%1)"_s.arg(fileSizeText(*model.size)) : QString();
        addItem(size.isEmpty() ? model.name : model.name + u' ' + size);
        setItemData(count() - 1, model.name, nameRole);
        setItemData(count() - 1, size, sizeRole);
        widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(count() - 1)));
    }
    // The menu may be wider than the picker, so that names which differ only in their middle can be told apart.
    view()->setMinimumWidth(widest + 4 * spacing::small);
    showSelection();
}

void ModelPicker::setSelection(const std::optional<QString>& name) {
    m_selection = name;
    showSelection();
}

void ModelPicker::showSelection() {
    setPlaceholderText(m_selection.value_or(QString()));
    setCurrentIndex(m_selection ? findData(*m_selection, nameRole) : 0);
}

void ModelPicker::paintEvent(QPaintEvent* event) {
    const QString size = currentData(sizeRole).toString();
    if (size.isEmpty()) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    drawEntry(painter, field.adjusted(1, 0, -1, 0), currentData(nameRole).toString(), size,
              palette().color(QPalette::ButtonText), secondaryTextColour(palette()));
}

/// Scrolling the page past the picker must not choose a model.
void ModelPicker::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace dorvantel
