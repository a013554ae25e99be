// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

/// One line of plain text that gives way when room is short: it ends in an ellipsis and tells the rest in a tooltip.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    ElidedLabel(const QString& text, const QFont& font, QWidget* parent = nullptr);

    const QString& text() const { return m_text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString m_text;
};

} // namespace dorvantel
