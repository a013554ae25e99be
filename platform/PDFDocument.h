// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <memory>

namespace dorvantel {

/// A PDF that opened: its bytes and the text of its pages. Immutable, shared between whoever shows it or reads it.
/// The texts are as a careful platform gives them: LF line ends, words whole across a hyphenated line end, every
/// horizontal blank as U+0020, ligature characters as their letters, accents composed with their letters.
class PDFDocument {
public:
    PDFDocument() = default; ///< an empty document: no bytes, no pages
    PDFDocument(QByteArray bytes, QStringList pageTexts)
        : m_bytes(std::move(bytes))
        , m_pageTexts(std::move(pageTexts)) {}

    qsizetype pageCount() const { return m_pageTexts.size(); }
    const QString& pageText(qsizetype index) const { return m_pageTexts[index]; }

    /// The document as a file: the very bytes it was opened from. Empty for the empty document.
    const QByteArray& dataRepresentation() const { return m_bytes; }

private:
    QByteArray m_bytes;
    QStringList m_pageTexts;
};

} // namespace dorvantel
