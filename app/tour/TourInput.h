// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QKeyEvent>

namespace dorvantel {

/// Types into `widget` key by key. `QTest::keyClicks` knows no letters beyond ASCII.
inline void typeText(QWidget& widget, const QString& text) {
    for (const QChar letter : text) {
        QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
        QApplication::sendEvent(&widget, &event);
    }
}

} // namespace dorvantel
