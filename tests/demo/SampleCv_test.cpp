// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SampleCv.h"

#include "demo/CvReader.h"
#include "demo/SamplePdf.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QSet>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

const QString head = u"---\nname: Ana Ruiz\nlayout: lateral\npages: 2\n---\n"_s;

struct NamedCv {
    QString name;
    SampleCv cv;
};

std::vector<NamedCv> samples(const QString& folder) {
    std::vector<NamedCv> out;
    for (const auto& [name, source] : sampleSources(folder)) {
        const auto cv = parseSampleCv(source);
        EXPECT_TRUE(cv.has_value()) << name.toStdString() << ": " << (cv ? "" : cv.error().toStdString());
        if (cv) {
            out.push_back({name, *cv});
        }
    }
    return out;
}

std::vector<NamedCv> allSamples() {
    std::vector<NamedCv> out = samples(u"src"_s);
    for (NamedCv& sample : samples(u"more"_s)) {
        out.push_back(std::move(sample));
    }
    return out;
}

QString textOf(QPdfDocument& document) {
    QString text;
    for (int page = 0; page < document.pageCount(); ++page) {
        text += document.getAllText(page).text().normalized(QString::NormalizationForm_C);
    }
    return text;
}

TEST(ParseSampleCv, ReadsHeadSectionsEntriesAndTags) {
    const auto cv = parseSampleCv(head + u"## Perfil\nUna línea\ny otra.\n\nOtro párrafo.\n"
                                         "## Experiencia\n### Contable | Acme | 2019\n- Facturas\n  y cierres\n- SAP\n"
                                         "## < Idiomas\n* Español\n* Inglés\n"_s);
    ASSERT_TRUE(cv.has_value());
    EXPECT_EQ(cv->name, u"Ana Ruiz"_s);
    EXPECT_EQ(cv->layout, SampleCv::Layout::Sidebar);
    EXPECT_EQ(cv->pages, 2);
    ASSERT_EQ(cv->sections.size(), 3U);
    EXPECT_EQ(cv->sections[0].entries[0].paragraphs, QStringList({u"Una línea y otra."_s, u"Otro párrafo."_s}));
    EXPECT_EQ(cv->sections[1].entries[0].title, u"Contable"_s);
    EXPECT_EQ(cv->sections[1].entries[0].place, u"Acme"_s);
    EXPECT_EQ(cv->sections[1].entries[0].dates, u"2019"_s);
    EXPECT_EQ(cv->sections[1].entries[0].bullets, QStringList({u"Facturas y cierres"_s, u"SAP"_s}));
    EXPECT_TRUE(cv->sections[2].aside);
    EXPECT_EQ(cv->sections[2].title, u"Idiomas"_s);
    EXPECT_EQ(cv->sections[2].tags, QStringList({u"Español"_s, u"Inglés"_s}));
}

TEST(ParseSampleCv, MistakesNameTheirLine) {
    EXPECT_EQ(parseSampleCv(u"---\nname: A\nshoe: 43\n---\n"_s).error(), u"line 3: not a known field and value"_s);
    EXPECT_EQ(parseSampleCv(u"---\nlayout: round\n---\n"_s).error(), u"line 2: not a known field and value"_s);
    EXPECT_EQ(parseSampleCv(head + u"text"_s).error(), u"line 6: text before the first section"_s);
    EXPECT_EQ(parseSampleCv(QString()).error(), u"no name or no section"_s);
}

TEST(SampleCvs, AreEightWithPdfAndSixteenMore) {
    EXPECT_EQ(samples(u"src"_s).size(), 8U);
    EXPECT_EQ(samples(u"more"_s).size(), 16U);
}

TEST(SampleCvs, DifferInProfessionGenderLengthAndLayout) {
    QSet<QString> professions;
    QSet<QString> genders;
    QSet<int> pages;
    QSet<int> layouts;
    for (const NamedCv& sample : samples(u"src"_s)) {
        professions.insert(sample.cv.profession);
        genders.insert(sample.cv.gender);
        pages.insert(sample.cv.pages);
        layouts.insert(static_cast<int>(sample.cv.layout));
    }
    EXPECT_EQ(professions.size(), 8);
    EXPECT_EQ(genders, QSet<QString>({u"Femenino"_s, u"Masculino"_s}));
    EXPECT_GE(pages.size(), 2);
    EXPECT_EQ(layouts.size(), 4) << "among them one of two columns and one without a text layer";
}

TEST(SampleCvs, HaveAddressesAtExampleComEachItsOwn) {
    QSet<QString> addresses;
    for (const NamedCv& sample : allSamples()) {
        EXPECT_TRUE(sample.cv.email.endsWith(u"@example.com"_s)) << sample.cv.email.toStdString();
        addresses.insert(sample.cv.email);
    }
    EXPECT_EQ(addresses.size(), 24);
}

TEST(SampleCvs, AreReadAsTheirAuthorsMeantThem) {
    for (const NamedCv& sample : allSamples()) {
        const CvFacts facts = readCv(plainText(sample.cv));
        EXPECT_EQ(facts.name, sample.cv.name);
        EXPECT_EQ(facts.email, sample.cv.email);
        EXPECT_EQ(facts.profession, sample.cv.profession);
        EXPECT_EQ(facts.gender == NameGender::Feminine, sample.cv.gender == u"Femenino"_s) << facts.name.toStdString();
        EXPECT_GE(facts.techSkills.size(), 4) << facts.name.toStdString();
        EXPECT_GE(facts.softSkills.size(), 3) << facts.name.toStdString();
        EXPECT_TRUE(facts.languages.contains(u"Español"_s)) << facts.name.toStdString();
        EXPECT_GE(facts.summary.size(), 80) << facts.name.toStdString();
        EXPECT_TRUE(sample.cv.sections[sample.cv.sections[0].aside ? 3 : 0].entries[0].paragraphs[0].startsWith(
            facts.summary.left(40)))
            << facts.summary.toStdString();
    }
}

TEST(SamplePdfFiles, AreThereAndSmall) {
    for (const NamedCv& sample : samples(u"src"_s)) {
        const QFileInfo file(QStringLiteral(DORVANTEL_SOURCE_DIR "/demo/samples/") + sample.name + u".pdf"_s);
        ASSERT_TRUE(file.exists()) << file.filePath().toStdString();
        EXPECT_LT(file.size(), 300'000);
    }
}

TEST(SamplePdfFiles, HoldTheTextOfTheirSources) {
    for (const NamedCv& sample : samples(u"src"_s)) {
        QPdfDocument document;
        ASSERT_EQ(document.load(QStringLiteral(DORVANTEL_SOURCE_DIR "/demo/samples/") + sample.name + u".pdf"_s),
                  QPdfDocument::Error::None);
        EXPECT_EQ(document.pageCount(), sample.cv.pages) << sample.name.toStdString();
        const QString text = textOf(document).simplified(); // a line may end within a skill
        if (sample.cv.layout == SampleCv::Layout::Scan) {
            EXPECT_EQ(text.trimmed(), QString());
            continue;
        }
        for (const QString& piece : {sample.cv.name, sample.cv.profession, sample.cv.email}) {
            EXPECT_TRUE(text.contains(piece)) << sample.name.toStdString() << ": " << piece.toStdString();
        }
        for (const SampleCv::Section& section : sample.cv.sections) {
            EXPECT_TRUE(text.contains(section.title))
                << sample.name.toStdString() << ": " << section.title.toStdString();
            for (const QString& tag : section.tags) {
                EXPECT_TRUE(text.contains(tag)) << sample.name.toStdString() << ": " << tag.toStdString();
            }
        }
    }
}

TEST(SamplePdf, DrawsEveryOtherCandidateOnOnePage) {
    for (const NamedCv& sample : samples(u"more"_s)) {
        QByteArray bytes = samplePdf(sample.cv);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QPdfDocument document;
        document.load(&buffer);
        EXPECT_EQ(document.pageCount(), 1) << sample.name.toStdString();
        EXPECT_TRUE(textOf(document).contains(sample.cv.email)) << sample.name.toStdString();
        EXPECT_LT(bytes.size(), 100'000);
    }
}

TEST(SamplePdf, ALongTextGoesOnOnTheNextPages) {
    auto cv = parseSampleCv(head + u"## Perfil\n"_s + u"Una línea larga que se repite muchas veces. "_s.repeated(300));
    ASSERT_TRUE(cv.has_value());
    for (int i = 0; i < 60; ++i) {
        cv->sections[0].entries[0].bullets.append(u"Punto %1"_s.arg(i));
    }
    for (const SampleCv::Layout layout :
         {SampleCv::Layout::Classic, SampleCv::Layout::Band, SampleCv::Layout::Sidebar}) {
        cv->layout = layout;
        QByteArray bytes = samplePdf(*cv);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QPdfDocument document;
        document.load(&buffer);
        EXPECT_GE(document.pageCount(), 2);
        EXPECT_TRUE(textOf(document).contains(u"Punto 59"_s));
    }
}

} // namespace
} // namespace dorvantel
