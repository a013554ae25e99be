// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Symbols.h"

#include "platform/Fatal.h"
#include "ui/AccessibleRole.h"

#include <QDir>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

// In a static library nothing else refers to the resources, and the linker would leave them out.
static void initResources() {
    Q_INIT_RESOURCE(ui);
}

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString symbolPath(const QString& name) {
    initResources();
    const QString path = u":/dorvantel/ui/symbols/"_s + name + u".svg"_s;
    if (!QFile::exists(path)) {
        fatalError(u"there is no symbol named "_s + name);
    }
    return path;
}

QString imagePath(const QString& name) {
    initResources();
    return u":/dorvantel/ui/images/"_s + name + u".svg"_s;
}

/// The drawing's shape in one colour. `size` is in device pixels.
QImage tinted(QSvgRenderer& drawing, QSize size, const QColor& colour) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QSizeF fitted = QSizeF(drawing.defaultSize()).scaled(size, Qt::KeepAspectRatio);
    const QPointF corner((size.width() - fitted.width()) / 2, (size.height() - fitted.height()) / 2);
    drawing.render(&painter, QRectF(corner, fitted));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(QString path, const QColor& colour)
        : m_path(std::move(path))
        , m_colour(colour) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        QColor colour = m_colour;
        if (mode == QIcon::Disabled) {
            constexpr float paler = 0.4F;
            colour.setAlphaF(colour.alphaF() * paler);
        }
        QSvgRenderer drawing(m_path);
        QPixmap pixmap = QPixmap::fromImage(tinted(drawing, size, colour));
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    QString m_path;
    QColor m_colour;
};

class ApplicationIconEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode, QIcon::State, qreal scale) override {
        const int side = std::min(size.width(), size.height());
        QPixmap& pixmap = m_drawn[side]; // the window system asks twice
        if (pixmap.isNull()) {
            pixmap = QPixmap::fromImage(applicationImage(side));
        }
        QPixmap scaled = pixmap;
        scaled.setDevicePixelRatio(scale);
        return scaled;
    }

    /// A window system that keeps pictures of an icon asks for all of these before the window shows, so they are few
    /// and small. Where larger ones are shown, they come from the icon theme.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new ApplicationIconEngine(*this); }

private:
    QHash<int, QPixmap> m_drawn;
};

} // namespace

QStringList symbolNames() {
    initResources();
    QStringList names;
    for (const QString& file : QDir(u":/dorvantel/ui/symbols"_s).entryList(QDir::Files, QDir::Name)) {
        names.append(file.chopped(u".svg"_s.size()));
    }
    return names;
}

QIcon symbolIcon(const QString& name, const QColor& colour) {
    return QIcon(new SymbolIconEngine(symbolPath(name), colour));
}

QImage applicationImage(int size) {
    constexpr int largestSmall = 24;
    QSvgRenderer drawing(imagePath(size <= largestSmall ? u"dorvantel-small"_s : u"dorvantel"_s));
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(image.rect()));
    return image;
}

QIcon applicationIcon() {
    return QIcon(new ApplicationIconEngine);
}

SymbolView::SymbolView(const QString& name, const QColor& colour, int points, QWidget* parent)
    : SymbolView(File{symbolPath(name), name}, colour, points, parent) {}

SymbolView::SymbolView(const File& file, const QColor& colour, int points, QWidget* parent)
    : QWidget(parent)
    , m_drawing(std::make_unique<QSvgRenderer>(file.path))
    , m_name(file.symbol)
    , m_colour(colour)
    , m_points(points) {
    setAccessibleRole(*this, QAccessible::Graphic);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

SymbolView::~SymbolView() = default;

SymbolView* SymbolView::ostrelLogo(const QColor& colour, int points, QWidget* parent) {
    return new SymbolView(File{imagePath(u"Ostrel"_s), {}}, colour, points, parent);
}

void SymbolView::setShown(bool shown) {
    if (m_shown == shown) {
        return;
    }
    m_shown = shown;
    update();
    QAccessible::State changed;
    changed.invisible = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void SymbolView::setColour(const QColor& colour) {
    m_colour = colour;
    update();
}

void SymbolView::setRotation(qreal degrees) {
    m_rotation = degrees;
    update();
}

QSize SymbolView::sizeHint() const {
    return {m_points, m_points};
}

void SymbolView::paintEvent(QPaintEvent*) {
    if (!m_shown) {
        return;
    }
    const QSizeF exact = QSizeF(m_points, m_points) * devicePixelRatioF();
    QImage image = tinted(*m_drawing, exact.toSize(), m_colour);
    image.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, m_rotation != 0);
    painter.translate(QRectF(rect()).center());
    painter.rotate(m_rotation);
    painter.drawImage(QPointF(-m_points / 2.0, -m_points / 2.0), image);
}

} // namespace dorvantel
