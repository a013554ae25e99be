// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace dorvantel::test {

/// Types `text` into `widget` key by key. `QTest::keyClicks` knows no letters beyond ASCII.
inline void typeText(QWidget& widget, const QString& text) {
    for (const QChar letter : text) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, 0, Qt::NoModifier, QString(letter));
            QApplication::sendEvent(&widget, &event);
        }
    }
}

} // namespace dorvantel::test
