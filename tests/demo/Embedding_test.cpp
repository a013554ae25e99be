// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Embedding.h"

#include "demo/Vocabulary.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::Each;

double product(const std::vector<float>& a, const std::vector<float>& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

double likeness(const QString& a, const QString& b) {
    return product(embedding(a), embedding(b));
}

TEST(Embedding, HasUnitLengthWhateverTheText) {
    for (const QString& text :
         {u"Contable"_s, QString(), u"de la y con"_s, u"!!!"_s, u"日本語"_s, u"a"_s.repeated(9999)}) {
        const std::vector<float> vector = embedding(text);
        ASSERT_EQ(vector.size(), 768U);
        EXPECT_NEAR(product(vector, vector), 1.0, 1e-5) << text.left(20).toStdString();
    }
}

TEST(Embedding, IsTheSameEveryTime) {
    EXPECT_EQ(embedding(u"Enfermera de UCI con inglés"_s), embedding(u"Enfermera de UCI con inglés"_s));
}

TEST(Embedding, CaseAccentsAndSmallWordsDoNotCount) {
    EXPECT_NEAR(likeness(u"Gestión de almacén"_s, u"GESTION DE ALMACEN"_s), 1.0, 1e-5);
    EXPECT_NEAR(likeness(u"la enfermera y el hospital"_s, u"ENFERMERA HOSPITAL"_s), 1.0, 1e-5);
}

TEST(Embedding, FormsOfAWordAreAlike) {
    EXPECT_GT(likeness(u"abogada"_s, u"abogados"_s), 0.35);
    EXPECT_GT(likeness(u"contable"_s, u"contabilidad"_s), 0.3);
}

TEST(Embedding, SpanishAndEnglishMeetInTheVocabulary) {
    EXPECT_GT(likeness(u"atención al cliente y ventas"_s, u"customer service and sales"_s), 0.4);
    EXPECT_GT(likeness(u"busco enfermera"_s, u"registered nurse"_s), 0.3);
}

TEST(Embedding, OtherThingsAreFarApart) {
    EXPECT_LT(likeness(u"contable con experiencia en impuestos"_s, u"cocinero de cocina mediterránea"_s), 0.25);
}

TEST(Embedding, AWordSaidTenTimesDoesNotDrownTheRest) {
    const QString many = u"cocina "_s.repeated(10) + u"contabilidad impuestos facturación"_s;
    EXPECT_GT(likeness(many, u"contabilidad impuestos facturación"_s), 0.3);
}

// Records as the service embeds them: profession, a summary and skills of the profession's field of work.
struct Record {
    QString field;
    QString text;
};

std::vector<Record> generatedRecords() {
    std::map<QString, QStringList> skillsOfField;
    for (const Term& term : vocabulary().technical.terms) {
        skillsOfField[term.field].append(term.display);
    }
    std::vector<Term> professions;
    std::ranges::copy_if(vocabulary().professions.terms, std::back_inserter(professions),
                         [&](const Term& term) { return skillsOfField[term.field].size() >= 6; });
    const QStringList wordings = {u"%1 con %2 años de experiencia en %3 y %4."_s,
                                  u"Profesional titulado. Trabajo desde hace %2 años como %1, sobre todo en %3 y %4."_s,
                                  u"%1. Buen trato, ganas de aprender y %2 años de oficio: %3, %4."_s};
    const auto& soft = vocabulary().soft.terms;
    std::vector<Record> records;
    for (std::size_t i = 0; records.size() < 200; ++i) {
        const Term& profession = professions[(i * 7) % professions.size()];
        const QStringList& skills = skillsOfField[profession.field];
        const auto skill = [&](std::size_t n) {
            return skills[static_cast<qsizetype>((i + 3 * n) % static_cast<std::size_t>(skills.size()))];
        };
        const QString summary =
            wordings[static_cast<qsizetype>(i % 3)].arg(profession.display).arg(2 + i % 20).arg(skill(0), skill(1));
        records.push_back(
            {profession.field,
             QStringList{profession.display, summary, skill(0), skill(1), skill(2), soft[i % soft.size()].display}.join(
                 u' ')});
    }
    return records;
}

std::vector<QString> bestFields(const std::vector<Record>& records, const QString& query, std::size_t count) {
    std::vector<std::pair<double, QString>> ranked;
    const std::vector<float> wanted = embedding(query);
    for (const Record& record : records) {
        ranked.emplace_back(product(embedding(record.text), wanted), record.field);
    }
    std::ranges::stable_sort(ranked, std::greater(), [](const auto& entry) { return entry.first; });
    std::vector<QString> fields;
    for (std::size_t i = 0; i < count; ++i) {
        fields.push_back(ranked[i].second);
    }
    return fields;
}

TEST(EmbeddingRanking, AQueryAboutAccountingRanksAccountantsFirst) {
    const std::vector<Record> records = generatedRecords();
    ASSERT_EQ(records.size(), 200U);
    const auto accountants = std::ranges::count(records, u"contabilidad"_s, &Record::field);
    ASSERT_GE(accountants, 2);
    ASSERT_LE(accountants, 40);
    const auto top = std::min<std::size_t>(5, static_cast<std::size_t>(accountants));
    EXPECT_THAT(bestFields(records, u"Busco a alguien que lleve la contabilidad y los impuestos de la empresa"_s, top),
                Each(u"contabilidad"_s));
    EXPECT_THAT(bestFields(records, u"accountant with tax experience"_s, top), Each(u"contabilidad"_s));
}

TEST(EmbeddingRanking, OtherQueriesFindTheirFieldsToo) {
    const std::vector<Record> records = generatedRecords();
    EXPECT_THAT(bestFields(records, u"enfermera para urgencias y cuidados intensivos"_s, 3), Each(u"sanidad"_s));
    EXPECT_THAT(bestFields(records, u"jefe de cocina que elabore menús"_s, 3), Each(u"cocina"_s));
    EXPECT_THAT(bestFields(records, u"alguien que sepa cocinar"_s, 3), Each(u"cocina"_s));
    EXPECT_THAT(bestFields(records, u"profesora de primaria para un colegio"_s, 3), Each(u"educación"_s));
}

} // namespace
} // namespace dorvantel
