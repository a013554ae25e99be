// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SampleLayout.h"

#include "demo/SamplePage.h"

#include <QColor>
#include <QPainterPath>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QColor grey(0x6b, 0x72, 0x80);

struct Styles {
    QColor accent;
    SampleTextStyle body;
    SampleTextStyle small{8.5, QFont::Normal, grey};
    SampleTextStyle entry{10, QFont::DemiBold};
    SampleTextStyle place{9.5, QFont::Medium, accent};
    SampleTextStyle heading{11.5, QFont::Bold, accent};
};

Styles stylesOf(const SampleCv& cv) {
    Styles styles;
    styles.accent = QColor(cv.accent);
    styles.place.color = styles.accent;
    styles.heading.color = styles.accent;
    return styles;
}

QString contactLine(const SampleCv& cv) {
    return QStringList{cv.email, cv.phone, cv.city}.join(u"   ·   "_s);
}

void drawEntry(SampleColumn& column, const SampleCv::Entry& entry, const Styles& styles) {
    if (!entry.title.isEmpty()) {
        column.need(58); // a title never stands alone at the foot of a page
        column.line(entry.title, styles.entry, entry.dates, styles.small);
        column.text(entry.place, styles.place);
        column.space(1);
    }
    for (const QString& paragraph : entry.paragraphs) {
        column.text(paragraph, styles.body);
    }
    for (const QString& bullet : entry.bullets) {
        column.bullet(bullet, styles.body, styles.accent);
    }
    column.space(6);
}

// One column under a name, headings with a thin rule.
void drawClassic(const SampleCv& cv, QPainter& painter, QPaintDevice& device, const std::function<void()>& newPage) {
    const Styles styles = stylesOf(cv);
    SampleColumn column(painter, device, QRectF(54, 50, pageWidth - 108, pageHeight - 100), newPage);
    column.text(cv.name, {24, QFont::Bold, styles.accent, Qt::AlignLeft, 1.1});
    column.space(1);
    column.text(cv.profession, {13, QFont::Medium});
    column.space(3);
    column.text(contactLine(cv), {9, QFont::Normal, grey});
    column.space(8);
    column.rule(styles.accent, 1.6);
    for (const SampleCv::Section& section : cv.sections) {
        column.space(11);
        column.need(64);
        column.text(section.title, styles.heading);
        column.space(1);
        column.rule(QColor(0xd1, 0xd5, 0xdb), 0.6);
        column.space(5);
        for (const SampleCv::Entry& entry : section.entries) {
            drawEntry(column, entry, styles);
        }
        if (!section.tags.isEmpty()) {
            column.text(section.tags.join(u"\u00a0\u00a0·  "_s), styles.body);
        }
    }
}

// A coloured head over the width of the page, then the sections with skills as chips.
void drawBand(const SampleCv& cv, QPainter& painter, QPaintDevice& device, const std::function<void()>& newPage) {
    const Styles styles = stylesOf(cv);
    const double unit = device.logicalDpiY() / 72.0;
    constexpr double bandHeight = 112;
    painter.fillRect(QRectF(0, 0, pageWidth * unit, bandHeight * unit), styles.accent);
    SampleColumn head(painter, device, QRectF(48, 26, pageWidth - 96, bandHeight - 26), [] {});
    head.text(cv.name, {25, QFont::Bold, Qt::white, Qt::AlignLeft, 1.1});
    head.text(cv.profession, {13, QFont::Medium, QColor(255, 255, 255, 230)});
    head.space(4);
    head.text(contactLine(cv), {9, QFont::Normal, QColor(255, 255, 255, 215)});
    SampleColumn column(painter, device, QRectF(48, 44, pageWidth - 96, pageHeight - 88), newPage);
    column.space(bandHeight - 44 + 12);
    for (const SampleCv::Section& section : cv.sections) {
        column.space(9);
        column.need(60);
        column.text(section.title, styles.heading);
        column.space(4);
        for (const SampleCv::Entry& entry : section.entries) {
            drawEntry(column, entry, styles);
        }
        if (!section.tags.isEmpty()) {
            column.chips(section.tags, {8.8, QFont::Medium, QColor(0x37, 0x41, 0x51)}, styles.accent);
        }
    }
}

void drawInitials(const SampleCv& cv, QPainter& painter, QPaintDevice& device, double centerX, double centerY) {
    const double unit = device.logicalDpiY() / 72.0;
    const double radius = 34;
    painter.setPen(QPen(QColor(255, 255, 255, 160), 1.5 * unit));
    painter.setBrush(QColor(255, 255, 255, 38));
    painter.drawEllipse(QPointF(centerX * unit, centerY * unit), radius * unit, radius * unit);
    // As a shape: initials in the text layer would be read as part of the CV.
    QFont font(u"Inter"_s);
    font.setPixelSize(1000);
    font.setWeight(QFont::DemiBold);
    QPainterPath path;
    path.addText(0, 0, font, cv.name.left(1) + cv.name.section(u' ', 1, 1).left(1));
    const QRectF bounds = path.boundingRect();
    painter.save();
    painter.translate(centerX * unit, centerY * unit);
    const double scale = 24 * unit / bounds.height();
    painter.scale(scale, scale);
    painter.translate(-bounds.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawPath(path);
    painter.restore();
}

// Contact and skills in a coloured column at the left, the story at the right.
void drawSidebar(const SampleCv& cv, QPainter& painter, QPaintDevice& device, const std::function<void()>& newPage) {
    const Styles styles = stylesOf(cv);
    const double unit = device.logicalDpiY() / 72.0;
    constexpr double barWidth = 182;
    const auto drawBar = [&] {
        painter.fillRect(QRectF(0, 0, barWidth * unit, pageHeight * unit), styles.accent.darker(130));
    };
    drawBar();
    drawInitials(cv, painter, device, barWidth / 2, 84);
    const SampleTextStyle light{9, QFont::Normal, QColor(255, 255, 255, 235)};
    const SampleTextStyle lightHeading{11, QFont::Bold, Qt::white};
    SampleColumn bar(painter, device, QRectF(24, 146, barWidth - 44, pageHeight - 180), [] {});
    bar.text(u"Contacto"_s, lightHeading);
    bar.space(4);
    for (const QString& value : {cv.email, cv.phone, cv.city}) {
        bar.text(value, {8.6, QFont::Normal, light.color});
    }
    for (const SampleCv::Section& section : cv.sections) {
        if (section.aside) {
            bar.space(16);
            bar.text(section.title, lightHeading);
            bar.space(4);
            for (const QString& tag : section.tags) {
                bar.text(tag, light);
            }
        }
    }
    SampleColumn main(painter, device, QRectF(barWidth + 28, 52, pageWidth - barWidth - 68, pageHeight - 100), [&] {
        newPage();
        drawBar();
    });
    main.text(cv.name, {23, QFont::Bold, QColor(0x11, 0x18, 0x27), Qt::AlignLeft, 1.1});
    main.text(cv.profession, {12.5, QFont::Medium, styles.accent});
    for (const SampleCv::Section& section : cv.sections) {
        if (section.aside) {
            continue;
        }
        main.space(12);
        main.need(60);
        main.text(section.title, styles.heading);
        main.space(1);
        main.rule(QColor(0xe5, 0xe7, 0xeb), 0.7);
        main.space(5);
        for (const SampleCv::Entry& entry : section.entries) {
            drawEntry(main, entry, styles);
        }
    }
}

} // namespace

void drawSample(const SampleCv& cv, QPainter& painter, QPaintDevice& device, const std::function<void()>& newPage) {
    painter.setRenderHint(QPainter::Antialiasing);
    switch (cv.layout) {
    case SampleCv::Layout::Classic:
    case SampleCv::Layout::Scan:
        drawClassic(cv, painter, device, newPage);
        break;
    case SampleCv::Layout::Band:
        drawBand(cv, painter, device, newPage);
        break;
    case SampleCv::Layout::Sidebar:
        drawSidebar(cv, painter, device, newPage);
        break;
    }
}

} // namespace dorvantel
