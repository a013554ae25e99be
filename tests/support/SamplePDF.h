// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace dorvantel::test {

/// A PDF from its objects: `objects[0]` is object 1, the catalogue, as it stands between "obj" and "endobj".
/// `trailerEntries` are further entries of the trailer's dictionary.
QByteArray pdfFromObjects(const QByteArrayList& objects, const QByteArray& trailerEntries = {});

/// A stream object, with its length and further `entries` in the dictionary.
QByteArray pdfStream(const QByteArray& content, const QByteArray& entries = {});

/// One page per element, in Helvetica. An element holds the page's lines, separated by line feeds, in Windows-1252 and
/// with the escapes of PDF strings ("\\(", "\\)", "\\\\", octal); an empty element is a page without text.
QByteArray textPDF(const QByteArrayList& pages);

/// One page per element, which is its content stream; the font F1 is Helvetica.
QByteArray contentPDF(const QByteArrayList& contents);

/// A page of text, encrypted with 40-bit RC4. With an empty `userPassword` it opens without asking for one.
QByteArray encryptedPDF(const QByteArray& page, const QByteArray& userPassword);

/// A page tree nested a hundredfold and looping: opening it takes the PDF library practically for ever.
QByteArray neverEndingPDF();

/// A few kilobytes whose one page holds content of gigabytes.
QByteArray memoryBombPDF();

} // namespace dorvantel::test
