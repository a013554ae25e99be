// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Answers.h"
#include "intake/Prompts.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <vector>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;

// What language models sent when they were asked for JSON. The answers are no part of the project; the tests find them
// below the folder that the environment names.

/// An answer that is, with or without fences, one JSON object: what is taken from it.
struct Readable {
    const char* file;
    QString name;
    QString email;
    qsizetype softSkills;
    qsizetype techSkills;
    qsizetype languages;
};

const std::vector<Readable> readable{
    {"01-clean-compact", u"Lucía Ferrándiz Olmo"_s, u"lucia.ferrandiz@example.com"_s, 2, 3, 2},
    {"02-clean-pretty", u"Iñaki Echezarra Núñez"_s, u"inaki.echezarra@example.org"_s, 3, 4, 3},
    {"03-clean-unicode-escapes", u"Begoña Muñoz Peñalver"_s, u"begona.munoz@example.com"_s, 2, 2, 2},
    {"05-fence-untagged", u"Ainhoa Larrarte Solís"_s, u"ainhoa.larrarte@example.com"_s, 2, 3, 2},
    // Spanish keys are read only where the answer is no object at all.
    {"29-spanish-keys", u""_s, u""_s, 0, 0, 0},
    {"30-spanish-keys-accented", u""_s, u""_s, 0, 0, 0},
    {"31-mixed-keys", u""_s, u""_s, 1, 0, 0},
    {"33-arrays-as-bullets", u"Rubén Argüelles Prado"_s, u"ruben.arguelles@example.org"_s, 0, 0, 1},
    {"34-arrays-of-objects", u"Greta Pallarés Simón"_s, u"greta.pallares@example.com"_s, 0, 0, 0},
    {"35-nested-wrapper", u""_s, u""_s, 0, 0, 0},
    {"37-nulls-and-placeholders", u"Gael Ibáñez Roca"_s, u""_s, 0, 0, 0},
    {"38-duplicate-keys", u"Olivia Manresa Font"_s, u"olivia.manresa@example.org"_s, 1, 2, 2},
    {"41-schema-echo", u""_s, u""_s, 0, 0, 0},
    {"45-whitespace-flood", u"Ismael Torrente Lozano"_s, u"ismael.torrente@example.org"_s, 1, 2, 1},
    {"53-extra-unknown-keys", u"Amaia Beltrán Zorita"_s, u"amaia.beltran@example.com"_s, 1, 2, 2},
};

/// Answers that are no JSON, nor become JSON when outer fences are taken off: nothing of them is used.
const QStringList unreadable{
    u"06-fence-unclosed"_s,
    u"07-fence-uppercase-crlf"_s,
    u"09-prose-around-fence"_s,
    u"10-prose-with-stray-braces"_s,
    u"11-think-tags-closed"_s,
    u"13-think-unclosed-no-json"_s,
    u"14-think-with-draft-json"_s,
    u"15-trailing-commas"_s,
    u"17-smart-quotes"_s,
    u"18-comments-slashes"_s,
    u"19-comments-hash-ellipsis"_s,
    u"21-missing-commas"_s,
    u"22-raw-newlines-tab"_s,
    u"23-bad-escapes"_s,
    u"25-truncated-mid-string"_s,
    u"26-truncated-mid-array"_s,
    u"27-missing-final-brace"_s,
    u"39-two-objects"_s,
    u"43-leaked-special-tokens"_s,
    u"46-bom-nbsp-zero-width"_s,
    u"47-refusal"_s,
    u"49-whitespace-only"_s,
    u"50-markdown-list-no-json"_s,
    u"51-yaml-like"_s,
    u"54-repetition-loop"_s,
    u"55-template-echo-then-answer"_s,
};

/// JSON, but no object.
const QStringList noObject{u"42-stringified-json"_s};

ExtractedFields nothingButSpanish() {
    ExtractedFields fields;
    fields.languages = {u"Español"_s};
    return fields;
}

class RecordedAnswers : public testing::Test {
protected:
    void SetUp() override {
        const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
        if (data.isEmpty()) {
            GTEST_SKIP() << "DORVANTEL_TEST_DATA names no folder of recorded answers";
        }
        m_folder = QDir(data + u"/answers"_s);
        ASSERT_TRUE(m_folder.exists());
    }

    QString answer(const QString& name) const {
        QFile file(m_folder.filePath(name + u".txt"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        return QString::fromUtf8(file.readAll());
    }

    QDir m_folder;
};

TEST_F(RecordedAnswers, EveryRecordedAnswerIsExpectedHere) {
    QStringList expected = unreadable + noObject;
    for (const Readable& row : readable) {
        expected.append(QString::fromLatin1(row.file));
    }
    expected.sort();
    QStringList found = m_folder.entryList({u"*.txt"_s}, QDir::Files, QDir::Name);
    found.replaceInStrings(u".txt"_s, QString());
    found.sort();
    EXPECT_EQ(found, expected);
}

TEST_F(RecordedAnswers, ObjectsAreReadDirectly) {
    for (const Readable& row : readable) {
        CapturedOutput output;
        const ExtractedFields fields = parseExtractionAnswer(answer(QString::fromLatin1(row.file)));
        EXPECT_FALSE(output.text().contains(u"Falling back"_s)) << row.file;
        EXPECT_EQ(fields.name, row.name) << row.file;
        EXPECT_EQ(fields.email, row.email) << row.file;
        EXPECT_EQ(fields.softSkills.size(), row.softSkills) << row.file;
        EXPECT_EQ(fields.techSkills.size(), row.techSkills) << row.file;
        EXPECT_EQ(fields.languages.size(), row.languages) << row.file;
    }
}

TEST_F(RecordedAnswers, WhatIsNoJSONLeavesOnlyTheDefaults) {
    for (const QString& name : unreadable) {
        CapturedOutput output;
        EXPECT_EQ(parseExtractionAnswer(answer(name)), nothingButSpanish()) << name.toStdString();
        const QString lines = output.text();
        EXPECT_TRUE(lines.startsWith(u"Direct JSON parsing failed: "_s)) << name.toStdString();
        EXPECT_TRUE(lines.contains(
            u"\nFalling back to ExtractedInfoRepresentation parsing\n*** Illegal JSON string\n\nJSON = "_s))
            << name.toStdString();
    }
}

TEST_F(RecordedAnswers, JSONThatIsNoObjectLeavesOnlyTheDefaults) {
    for (const QString& name : noObject) {
        CapturedOutput output;
        EXPECT_EQ(parseExtractionAnswer(answer(name)), nothingButSpanish()) << name.toStdString();
        EXPECT_FALSE(output.text().contains(u"Direct JSON parsing failed"_s)) << name.toStdString();
    }
}

TEST_F(RecordedAnswers, AnyOfThemTakenForAMailGivesAMailAndAGender) {
    for (const QString& file : m_folder.entryList({u"*.txt"_s}, QDir::Files)) {
        const QString mail = parseMailAnswer(answer(QString(file).chopped(4)));
        EXPECT_EQ(inferGender(mail), u"Femenino"_s) << file.toStdString();
    }
    EXPECT_EQ(parseMailAnswer(answer(u"01-clean-compact"_s)), u"lucia.ferrandiz@example.com"_s);
    EXPECT_EQ(parseMailAnswer(answer(u"47-refusal"_s)), answer(u"47-refusal"_s).trimmed());
}

} // namespace
} // namespace dorvantel
