// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/SamplePDF.h"

#include <QCryptographicHash>
#include <QList>

#include <array>
#include <numeric>
#include <utility>

namespace dorvantel::test {

namespace {

QByteArray reference(qsizetype object) {
    return QByteArray::number(object) + " 0 R";
}

QByteArray pageContent(const QByteArray& lines) {
    QByteArray content = "BT /F1 12 Tf 14 TL 72 740 Td\n";
    for (const QByteArray& line : lines.split('\n')) {
        content += "(" + line + ") Tj T*\n";
    }
    return content + "ET";
}

/// Objects 1 catalogue, 2 page tree, 3 font, then page and content for each.
QByteArrayList textObjects(const QByteArrayList& contents) {
    QByteArrayList objects = {"<< /Type /Catalog /Pages 2 0 R >>",
                              {},
                              "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>"};
    QByteArray kids;
    for (const QByteArray& content : contents) {
        const qsizetype page = objects.size() + 1;
        kids += reference(page) + ' ';
        objects.append("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Resources << /Font << /F1 3 0 R >> >> "
                       "/Contents " +
                       reference(page + 1) + " >>");
        objects.append(pdfStream(content));
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(contents.size()) + " >>";
    return objects;
}

QByteArray rc4(const QByteArray& key, QByteArray data) {
    std::array<unsigned char, 256> state{};
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    unsigned j = 0;
    for (unsigned i = 0; i < 256; ++i) {
        j = (j + state[i] + static_cast<unsigned char>(key[qsizetype(i) % key.size()])) & 255U;
        std::swap(state[i], state[j]);
    }
    unsigned i = 0;
    j = 0;
    for (char& byte : data) {
        i = (i + 1) & 255U;
        j = (j + state[i]) & 255U;
        std::swap(state[i], state[j]);
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ state[(state[i] + state[j]) & 255U]);
    }
    return data;
}

QByteArray md5(const QByteArray& data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Md5);
}

QByteArray padded(const QByteArray& password) {
    static const QByteArray padding =
        QByteArray::fromHex("28bf4e5e4e758a4164004e56fffa01082e2e00b6d0683e802f0ca9fe6453697a");
    return (password + padding).left(32);
}

} // namespace

QByteArray pdfFromObjects(const QByteArrayList& objects, const QByteArray& trailerEntries) {
    QByteArray pdf = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";
    QByteArray table = "0000000000 65535 f \n";
    for (qsizetype i = 0; i < objects.size(); ++i) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(objects.size() + 1);
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + "xref\n0 " + count + "\n" + table + "trailer\n<< /Size " + count + " /Root 1 0 R " + trailerEntries +
           " >>\nstartxref\n" + start + "\n%%EOF\n";
}

QByteArray pdfStream(const QByteArray& content, const QByteArray& entries) {
    return "<< /Length " + QByteArray::number(content.size()) + ' ' + entries + " >>\nstream\n" + content +
           "\nendstream";
}

QByteArray textPDF(const QByteArrayList& pages) {
    QByteArrayList contents;
    for (const QByteArray& page : pages) {
        contents.append(page.isEmpty() ? QByteArray() : pageContent(page));
    }
    return contentPDF(contents);
}

QByteArray contentPDF(const QByteArrayList& contents) {
    return pdfFromObjects(textObjects(contents));
}

QByteArray encryptedPDF(const QByteArray& page, const QByteArray& userPassword) {
    constexpr qsizetype keyLength = 5;
    const QByteArray id = md5("sample");
    const QByteArray permissions = QByteArray::fromHex("fcffffff"); // -4, low byte first
    const QByteArray ownerEntry = rc4(md5(padded("owner")).left(keyLength), padded(userPassword));
    const QByteArray key = md5(padded(userPassword) + ownerEntry + permissions + id).left(keyLength);
    const QByteArray userEntry = rc4(key, padded({}));

    constexpr char contentObject = 5;
    const QByteArray contentKey = md5(key + QByteArray(1, contentObject) + QByteArray(4, '\0')).left(keyLength + 5);
    QByteArrayList objects = textObjects({rc4(contentKey, pageContent(page))});
    objects.append("<< /Filter /Standard /V 1 /R 2 /P -4 /O <" + ownerEntry.toHex() + "> /U <" + userEntry.toHex() +
                   "> >>");
    return pdfFromObjects(objects,
                          "/Encrypt " + reference(objects.size()) + " /ID [<" + id.toHex() + "> <" + id.toHex() + ">]");
}

QByteArray neverEndingPDF() {
    constexpr qsizetype depth = 110;
    QByteArrayList objects = {"<< /Type /Catalog /Pages 2 0 R >>"};
    for (qsizetype level = 2; level < depth; ++level) {
        objects.append("<< /Type /Pages /Kids [" + reference(level + 1) + "] /Count 1 >>");
    }
    objects.append("<< /Type /Pages /Kids [2 0 R] /Count 1 >>");
    return pdfFromObjects(objects);
}

QByteArray memoryBombPDF() {
    constexpr qsizetype megabyte = 1024 * 1024;
    constexpr int uses = 200;
    // qCompress puts the length in front of the zlib stream.
    const QByteArray blanks = qCompress(QByteArray(16 * megabyte, ' '), 9).sliced(4);
    QByteArrayList objects = textObjects({QByteArray()});
    objects[4] = pdfStream(blanks, "/Filter /FlateDecode");
    objects[3].replace("/Contents 5 0 R", "/Contents [" + QByteArray("5 0 R ").repeated(uses) + "]");
    return pdfFromObjects(objects);
}

} // namespace dorvantel::test
