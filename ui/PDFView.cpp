// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFView.h"

#include "platform/PDFPageRenderer.h"
#include "ui/PDFAccessibility.h"
#include "ui/Style.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <chrono>

namespace dorvantel {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int step = 40; ///< of the arrow keys; the wheel goes three of them
constexpr qint64 bytesPerPixel = 4;
// Most pages are drawn in less, and starting over costs about as much.
constexpr auto patience = 300ms;

QString nameOf(int pageCount) {
    return pageCount == 1 ? u"Documento PDF, 1 página"_s : u"Documento PDF, %1 páginas"_s.arg(pageCount);
}

} // namespace

PDFView::PDFView(QWidget* parent)
    : QAbstractScrollArea(parent) {
    installPDFAccessibility();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    // A scroll bar that came and went with the height of the pages would change their width, and so their height.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(step);
    setAccessibleName(nameOf(0));
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        m_renderer->giveUp();
        m_drawing.reset();
        drawNext();
    });
}

PDFView::~PDFView() = default;

void PDFView::setDocument(int pageCount, std::unique_ptr<PDFPageRenderer> renderer) {
    m_renderer = std::move(renderer);
    m_wasOpened = false;
    m_isOpen = false;
    m_drawing.reset();
    m_patience.stop();
    m_images.clear();
    m_unavailable.clear();
    m_sizes = QList<QSizeF>(m_renderer ? pageCount : 0, usualPageSize);
    m_layout = {};
    layOut();
    verticalScrollBar()->setValue(0);
    setAccessibleName(nameOf(this->pageCount()));
    if (m_renderer) {
        connect(m_renderer.get(), &PDFPageRenderer::opened, this, &PDFView::takeSizes);
        connect(m_renderer.get(), &PDFPageRenderer::rendered, this, &PDFView::takeImage);
        openDocument();
    }
}

void PDFView::openDocument() {
    if (m_renderer && !m_wasOpened && isVisible()) {
        m_wasOpened = true;
        m_renderer->open();
    }
}

void PDFView::takeSizes(const QList<QSizeF>& sizes) {
    m_isOpen = sizes.size() == m_sizes.size();
    for (int page = 0; page < pageCount(); ++page) {
        if (m_isOpen && isShowablePageSize(sizes[page])) {
            m_sizes[page] = sizes[page];
        } else {
            m_unavailable.insert(page);
        }
    }
    layOut();
}

void PDFView::takeImage(int page, const QImage& image) {
    m_drawing.reset();
    if (image.isNull()) {
        m_unavailable.insert(page);
    } else {
        m_images.insert(page, image);
    }
    viewport()->update(m_layout.page(page).translated(0, -verticalScrollBar()->value()));
    drawNext();
}

PDFView::PageState PDFView::pageState(int page) const {
    if (!m_images.image(page).isNull()) {
        return PageState::Drawn;
    }
    return m_unavailable.contains(page) ? PageState::Unavailable : PageState::Waiting;
}

PDFPageLayout::Span PDFView::pagesInSight() const {
    const int top = verticalScrollBar()->value();
    return m_layout.pagesWithin(top, top + viewport()->height());
}

/// Lays the pages out for the width that there is, and stays where the reader is in them.
void PDFView::layOut() {
    QScrollBar* bar = verticalScrollBar();
    const PDFPageLayout::Place place = m_layout.placeAt(bar->value());
    m_layout = PDFPageLayout(m_sizes, viewport()->width());
    bar->setPageStep(std::max(viewport()->height() - step, step));
    bar->setRange(0, std::max(m_layout.height() - viewport()->height(), 0));
    bar->setValue(m_layout.positionOf(place));
    viewport()->update();
    drawNext();
}

QSize PDFView::imageSizeOf(int page) const {
    return imageSize(m_layout.page(page).size(), devicePixelRatioF(), mostImagePixels);
}

/// What is to be drawn, the most wanted first, and no more than there is room for: a page that had to make room for
/// the next one would be drawn again, for ever.
QList<int> PDFView::wantedPages() const {
    const PDFPageLayout::Span inSight = pagesInSight();
    QList<int> candidates;
    for (int page = inSight.first; page < inSight.end; ++page) {
        candidates.append(page);
    }
    candidates << inSight.end << inSight.first - 1;
    QList<int> wanted;
    qint64 bytes = 0;
    for (const int page : candidates) {
        if (page < 0 || page >= pageCount()) {
            continue;
        }
        const QSize size = imageSizeOf(page);
        bytes += bytesPerPixel * size.width() * size.height();
        if (bytes > mostImageBytes) {
            break;
        }
        wanted.append(page);
    }
    return wanted;
}

bool PDFView::needsDrawing(int page) const {
    return !m_unavailable.contains(page) && m_images.image(page).size() != imageSizeOf(page);
}

void PDFView::drawNext() {
    if (!m_isOpen || !isVisible()) {
        return;
    }
    const QList<int> wanted = wantedPages();
    m_images.use(wanted);
    const auto next = std::ranges::find_if(wanted, [this](int page) { return needsDrawing(page); });
    if (m_drawing) {
        const PDFPageLayout::Span inSight = pagesInSight();
        const bool isInTheWay = next != wanted.end() && inSight.contains(*next) && !inSight.contains(*m_drawing);
        if (!isInTheWay) {
            m_patience.stop();
        } else if (!m_patience.isActive()) {
            m_patience.start();
        }
        return;
    }
    m_patience.stop();
    if (next != wanted.end()) {
        m_drawing = *next;
        m_renderer->render(*next, imageSizeOf(*next));
    }
}

void PDFView::paintPage(QPainter& painter, int page) const {
    const QRect sheet = m_layout.page(page).translated(0, -verticalScrollBar()->value());
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(Qt::white);
    painter.drawRect(sheet.adjusted(-1, -1, 0, 0));
    const QImage image = m_images.image(page);
    if (!image.isNull()) {
        painter.drawImage(sheet, image);
        return;
    }
    const bool isUnavailable = m_unavailable.contains(page);
    painter.setPen(QColor(isUnavailable ? colours::secondaryText : colours::border));
    painter.setFont(textFont(TextStyle::Headline));
    painter.drawText(sheet.intersected(viewport()->rect()), Qt::AlignCenter | Qt::TextWordWrap,
                     isUnavailable ? u"Página %1 no disponible"_s.arg(page + 1) : u"Página %1"_s.arg(page + 1));
}

void PDFView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    constexpr int shade = 112;
    painter.fillRect(event->rect(), palette().color(QPalette::Window).darker(shade));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int top = verticalScrollBar()->value() + event->rect().top();
    const PDFPageLayout::Span span = m_layout.pagesWithin(top, top + event->rect().height() + 1);
    for (int page = span.first; page < span.end; ++page) {
        paintPage(painter, page);
    }
}

bool PDFView::event(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        viewport()->update();
    }
    return QAbstractScrollArea::event(event);
}

void PDFView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

void PDFView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    openDocument();
    drawNext();
}

void PDFView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update(); // what a blank sheet says stays in the middle of what is seen of it
    drawNext();
}

void PDFView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Home) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    } else if (event->key() == Qt::Key_End) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

} // namespace dorvantel
