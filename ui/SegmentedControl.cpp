// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/SegmentedControl.h"

#include "ui/AccessibleRole.h"
#include "ui/Style.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

namespace dorvantel {

namespace {

/// A radio button that looks like one segment of the row. Being a radio button gives it the role and the keys.
class Segment final : public QRadioButton {
public:
    using QRadioButton::QRadioButton;

    QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()) + 2 * spacing::standard,
                fontMetrics().height() + 2 * spacing::tight + 2};
    }

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF body = QRectF(rect()).adjusted(2, 2, -2, -2);
        if (isChecked()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(palette().color(QPalette::Highlight));
            painter.drawRoundedRect(body, spacing::cornerRadius - 1, spacing::cornerRadius - 1);
        }
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), spacing::cornerRadius,
                                    spacing::cornerRadius);
        }
        painter.setPen(palette().color(isChecked() ? QPalette::HighlightedText : QPalette::ButtonText));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

} // namespace

SegmentedControl::SegmentedControl(const QStringList& labels, const QString& accessibleName, QWidget* parent)
    : QWidget(parent)
    , m_group(new QButtonGroup(this)) {
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);
    row->setSpacing(0);
    for (qsizetype i = 0; i < labels.size(); ++i) {
        auto* segment = new Segment(labels[i], this);
        segment->setFocusPolicy(Qt::TabFocus);
        m_group->addButton(segment, static_cast<int>(i));
        row->addWidget(segment);
    }
    m_group->button(0)->setChecked(true);
    connect(m_group, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        if (checked) {
            Q_EMIT currentIndexChanged(index);
        }
    });
}

int SegmentedControl::currentIndex() const {
    return m_group->checkedId();
}

void SegmentedControl::setCurrentIndex(int index) {
    m_group->button(index)->setChecked(true);
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Button));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), spacing::cornerRadius + 1,
                            spacing::cornerRadius + 1);
}

} // namespace dorvantel
