// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/DeferredIcon.h"

#include <QIconEngine>
#include <QPainter>

#include <utility>

namespace dorvantel {

namespace {

class DeferredIconEngine final : public QIconEngine {
public:
    explicit DeferredIconEngine(std::function<QIcon()> make)
        : m_make(std::move(make)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().pixmap(size, 1.0, mode, state);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
        return icon().pixmap(size / scale, scale, mode, state);
    }

    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().actualSize(size, mode, state);
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override {
        return icon().availableSizes(mode, state);
    }

    QIconEngine* clone() const override { return new DeferredIconEngine(*this); }

private:
    const QIcon& icon() {
        if (m_make) {
            m_icon = std::exchange(m_make, nullptr)();
        }
        return m_icon;
    }

    std::function<QIcon()> m_make;
    QIcon m_icon;
};

} // namespace

QIcon deferredIcon(std::function<QIcon()> make) {
    return QIcon(new DeferredIconEngine(std::move(make)));
}

} // namespace dorvantel
