// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <vector>

namespace dorvantel::test {

/// CVs without end, no two alike: invented ones of changing people with changing jobs and lengths, the sample CVs as
/// they are drawn, and real ones where there are some.
class CvSupply {
public:
    /// `realCvs`: a folder with PDFs, or empty.
    explicit CvSupply(const QString& realCvs = {});

    /// The n-th CV as a PDF file.
    QByteArray pdf(int n) const;

    /// A description that a search would be given, of the job that the n-th invented person has.
    QString description(int n) const;

private:
    struct Person {
        QString name;
        QString email;
        QString profession;
        QString text;
    };
    QByteArray invented(int n) const;

    std::vector<Person> m_people;
    QByteArrayList m_files; ///< the samples, then the real ones
};

} // namespace dorvantel::test
