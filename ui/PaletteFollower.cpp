// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PaletteFollower.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QWidget>

namespace dorvantel {

namespace {

class PaletteFollower final : public QObject {
public:
    PaletteFollower(QWidget& widget, std::function<void()> takeColours)
        : QObject(&widget)
        , m_takeColours(std::move(takeColours)) {
        widget.installEventFilter(this);
        follow();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange && !m_following) {
            follow();
        }
        return false;
    }

private:
    void follow() {
        const QScopedValueRollback following(m_following, true);
        m_takeColours();
    }

    std::function<void()> m_takeColours;
    bool m_following = false;
};

} // namespace

void followPalette(QWidget& widget, std::function<void()> takeColours) {
    new PaletteFollower(widget, std::move(takeColours)); // the widget's
}

} // namespace dorvantel
