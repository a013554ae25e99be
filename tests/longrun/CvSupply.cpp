// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/CvSupply.h"

#include "demo/SampleCv.h"
#include "tests/support/SamplePDF.h"

#include <QDir>

#include <stdexcept>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

/// As the text of a PDF string in Windows-1252, which has Latin-1's letters in Latin-1's places.
QByteArray pageText(const QString& text) {
    QString plain = text;
    plain.replace(u'–', u'-').replace(u'•', u'-').replace(u'\\', u'/').replace(u'(', u"\\("_s).replace(u')', u"\\)"_s);
    return plain.toLatin1();
}

QByteArrayList filesIn(const QString& folder) {
    QByteArrayList files;
    const QDir dir(folder);
    for (const QString& name : dir.entryList({u"*.pdf"_s}, QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (file.open(QIODevice::ReadOnly)) {
            files.append(file.readAll());
        }
    }
    return files;
}

} // namespace

CvSupply::CvSupply(const QString& realCvs)
    : m_files(filesIn(QStringLiteral(DORVANTEL_SOURCE_DIR "/demo/samples"))) {
    if (!realCvs.isEmpty()) {
        m_files += filesIn(realCvs);
    }
    for (const QString& folder : {u"src"_s, u"more"_s}) {
        for (const auto& [file, source] : sampleSources(folder)) {
            const auto cv = parseSampleCv(source);
            if (!cv) {
                throw std::runtime_error(file.toStdString() + ": " + cv.error().toStdString());
            }
            m_people.push_back({cv->name, cv->email, cv->profession, plainText(*cv)});
        }
    }
}

QByteArray CvSupply::pdf(int n) const {
    constexpr int oneInFour = 4;
    if (n % oneInFour == 0) {
        // What stands behind the end of a PDF means nothing, and makes the file another one.
        return m_files[n / oneInFour % m_files.size()] + "\n% " + QByteArray::number(n) + '\n';
    }
    return invented(n);
}

QByteArray CvSupply::invented(int n) const {
    const std::size_t count = m_people.size();
    const Person& worker = m_people[static_cast<std::size_t>(n) % count];
    const Person& namesake = m_people[static_cast<std::size_t>(n) / count % count];
    QString text = worker.text;
    text.replace(worker.name, worker.name.section(u' ', 0, 0) + u' ' + namesake.name.section(u' ', 1));
    text.replace(worker.email, u"persona.%1@example.com"_s.arg(n));
    QByteArrayList pages;
    const QStringList lines = text.split(u'\n');
    constexpr qsizetype linesPerPage = 45;
    for (qsizetype line = 0; line < lines.size(); line += linesPerPage) {
        pages.append(pageText(lines.mid(line, linesPerPage).join(u'\n')));
    }
    pages.append(pageText(namesake.text.left(200 + n % 1000)));
    return textPDF(pages);
}

QString CvSupply::description(int n) const {
    const Person& person = m_people[static_cast<std::size_t>(n) % m_people.size()];
    return u"%1 con %2 años de experiencia"_s.arg(person.profession).arg(n % 30);
}

} // namespace dorvantel::test
