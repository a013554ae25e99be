// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageReader.h"

#include "platform/PDFStrayAccents.h"
#include "platform/PDFText.h"

#include <QBuffer>
#include <QDeadlineTimer>
#include <QPdfDocument>

#include <chrono>

namespace dorvantel {

namespace {

// A few hundred bytes can announce millions of pages; the thickest CV has some hundreds.
constexpr int mostPages = 20'000;
constexpr qsizetype mostCharacters = 32'000'000;
// Some misplaced accents matter less than that the PDF opens.
constexpr std::chrono::seconds timeForStrayAccents{2};

} // namespace

std::optional<QStringList> readPageTexts(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&buffer);
    // Not by its status: a file whose page tree is damaged ends as "Error" although its pages can be read.
    const int pages = document.pageCount();
    if (document.error() != QPdfDocument::Error::None || pages < 1 || pages > mostPages) {
        return std::nullopt;
    }
    const QDeadlineTimer deadline(timeForStrayAccents);
    QStringList texts;
    qsizetype characters = 0;
    for (int page = 0; page < pages; ++page) {
        texts.append(ordinaryPageText(pageTextWithStrayAccentsPlaced(document, page, deadline)));
        characters += texts.last().size();
        if (characters > mostCharacters) {
            return std::nullopt;
        }
    }
    return texts;
}

} // namespace dorvantel
