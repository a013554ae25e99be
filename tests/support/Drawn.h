// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QWidget>

namespace dorvantel::test {

/// What the widget itself draws, on one colour instead of what is behind it.
inline QImage drawn(QWidget& widget, const QSize& size, const QColor& background = Qt::white) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(background);
    widget.resize(size);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

} // namespace dorvantel::test
