// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

namespace dorvantel {

/// An indeterminate progress indicator: spokes that fade one after another while it is visible. Square; its size is
/// given once in logical pixels. Without a colour it takes the secondary text colour of its palette.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(int size, const QColor& color = {}, QWidget* parent = nullptr);

    /// Shows itself when something is still going on after a moment, and goes when it is over. What is quick shows
    /// nothing, so nothing flickers.
    void setBusy(bool busy);

    QSize sizeHint() const override { return m_size; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QSize m_size;
    QColor m_color;
    QTimer m_timer;
    QTimer m_moment;
    int m_step = 0;
};

} // namespace dorvantel
