// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SamplePdf.h"

#include "demo/SampleLayout.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRandomGenerator>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int scanDpi = 110;

void prepare(QPdfWriter& writer, const SampleCv& cv) {
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(600);
    writer.setTitle(cv.name);
    writer.setCreator(u"dorvantel-make-samples"_s);
}

// As a flatbed gives it: grey, a little askew, never quite white.
QImage scanned(const SampleCv& cv) {
    const auto pixels = [](double points) { return static_cast<int>(points * scanDpi / 72); };
    constexpr int dotsPerMeter = static_cast<int>(scanDpi / 0.0254);
    QImage page(pixels(pageWidth), pixels(pageHeight), QImage::Format_RGB32);
    page.setDotsPerMeterX(dotsPerMeter);
    page.setDotsPerMeterY(dotsPerMeter);
    page.fill(Qt::white);
    {
        QPainter painter(&page);
        drawSample(cv, painter, page, [] {});
    }
    QImage glass(page.size(), QImage::Format_RGB32);
    glass.fill(QColor(0xec, 0xec, 0xea));
    {
        QPainter painter(&glass);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(page.width() / 2.0, page.height() / 2.0);
        painter.rotate(0.7);
        painter.translate(-page.width() / 2.0, -page.height() / 2.0);
        painter.drawImage(0, 0, page);
    }
    QImage grey = glass.convertToFormat(QImage::Format_Grayscale8);
    QRandomGenerator noise(20260101);
    for (int y = 0; y < grey.height(); ++y) {
        uchar* row = grey.scanLine(y);
        for (int x = 0; x < grey.width(); ++x) {
            row[x] = static_cast<uchar>(std::clamp(row[x] + noise.bounded(-4, 3), 0, 255));
        }
    }
    return grey;
}

} // namespace

QByteArray samplePdf(const SampleCv& cv) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        prepare(writer, cv);
        QPainter painter(&writer);
        if (cv.layout == SampleCv::Layout::Scan) {
            painter.drawImage(QRectF(0, 0, writer.width(), writer.height()), scanned(cv));
        } else {
            drawSample(cv, painter, writer, [&writer] { writer.newPage(); });
        }
    }
    return buffer.data();
}

} // namespace dorvantel
