// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFStrayAccents.h"

#include "platform/PDFAccents.h"

#include <QList>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QPolygonF>
#include <QRectF>

#include <algorithm>

namespace dorvantel {

namespace {

bool isBlankOrEdge(const QString& text, qsizetype i) {
    return i < 0 || i >= text.size() || text[i].isSpace();
}

QList<int> strayAccents(const QString& text) {
    QList<int> places;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isSpacingAccent(text[i]) && isBlankOrEdge(text, i - 1) && isBlankOrEdge(text, i + 1)) {
            places.append(static_cast<int>(i));
        }
    }
    return places;
}

/// Asks the library about one page.
class Page {
public:
    Page(QPdfDocument& document, int page, const QString& text)
        : m_document(document)
        , m_page(page)
        , m_text(text) {}

    /// The place of the letter that the accent at `place` is drawn on, or -1.
    int letterUnder(int place) const {
        const QRectF accent = box(place);
        if (accent.isEmpty()) {
            return -1;
        }
        // A letter begins at about the width of its accent below it, or somewhat further down under a flat accent.
        for (const double below : {0.8, 1.5}) {
            const QPointF inLetter(accent.center().x(), accent.bottom() + below * accent.width());
            const QPointF behind(inLetter.x() + 2 * accent.width(), inLetter.y());
            const QPdfSelection found = m_document.getSelection(m_page, inLetter, behind);
            if (found.isValid() && isUnder(found.startIndex(), place, accent)) {
                return found.startIndex();
            }
        }
        return -1;
    }

private:
    /// The box of the one character at `place`; empty when the library counts characters differently there.
    QRectF box(int place) const {
        const QPdfSelection one = m_document.getSelectionAtIndex(m_page, place, 1);
        const bool same = one.text().size() == 1 && one.text()[0] == m_text[place] && !one.bounds().isEmpty();
        return same ? one.bounds().constFirst().boundingRect() : QRectF();
    }

    bool isUnder(int place, int accentPlace, const QRectF& accent) const {
        if (place == accentPlace || place >= m_text.size() || accented(m_text[place], m_text[accentPlace]).isNull()) {
            return false;
        }
        const QRectF letter = box(place);
        const double middle = accent.center().x();
        return letter.left() <= middle && middle <= letter.right() && letter.bottom() > accent.bottom() &&
               letter.top() < accent.bottom() + letter.height();
    }

    QPdfDocument& m_document;
    int m_page;
    const QString& m_text;
};

} // namespace

QString pageTextWithStrayAccentsPlaced(QPdfDocument& document, int page, QDeadlineTimer deadline) {
    const QString text = document.getAllText(page).text();
    QString placed = text;
    QList<int> gone;
    for (const int place : strayAccents(text)) {
        if (deadline.hasExpired()) {
            break;
        }
        const int letter = Page(document, page, text).letterUnder(place);
        if (letter >= 0) {
            placed[letter] = accented(text[letter], text[place]);
            gone.append(place);
        }
    }
    std::ranges::for_each(gone.crbegin(), gone.crend(), [&placed](int place) {
        const bool blankBefore = place > 0 && placed[place - 1] == u' ';
        placed.remove(blankBefore ? place - 1 : place, blankBefore ? 2 : 1);
    });
    return placed;
}

} // namespace dorvantel
