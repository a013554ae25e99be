// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/APIRequest.h"
#include "search/Search.h"
#include "service/store/SqliteStore.h"

#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int candidateCount = 500;
constexpr std::size_t dimensions = 24;
constexpr double tolerance = 1e-3; ///< of a score that crosses the wire as a 32-bit float

struct Candidate {
    QString email;
    JSONCVData cvData;
    std::vector<float> vector;
};

/// The program's own searches against the service as a process, and the same searches done plainly over the same
/// candidates.
class ProgramSearches : public testing::Test {
protected:
    void SetUp() override {
        fillStore();
        process = std::make_unique<RecordsProcess>(
            QStringList{u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, QString::fromStdString(folder.store().string()),
                        // Nothing is embedded: every candidate has its vector, so this server is never asked.
                        u"--embedding-model"_s, u"m"_s, u"--model-server"_s, u"http://127.0.0.1:9"_s});
        ASSERT_TRUE(process->waitUntilReady());
        client = std::make_unique<APIRequest>(session, QString::fromStdString(process->url()));
    }

    QStringList some(const QStringList& values, unsigned most) {
        QStringList chosen;
        for (auto count = random() % (most + 1); count > 0; --count) {
            chosen.append(values[static_cast<qsizetype>(random() % static_cast<unsigned>(values.size()))]);
        }
        return chosen;
    }
    std::vector<float> unitVector() {
        std::normal_distribution<float> normal;
        std::vector<float> vector(dimensions);
        float square = 0;
        for (float& number : vector) {
            number = normal(random);
            square += number * number;
        }
        for (float& number : vector) {
            number /= std::sqrt(square);
        }
        return vector;
    }
    static std::vector<std::string> utf8(const QStringList& texts) {
        std::vector<std::string> bytes;
        for (const QString& text : texts) {
            bytes.push_back(text.toStdString());
        }
        return bytes;
    }

    void fillStore() {
        service::SqliteStore store(folder.store(), "m");
        for (int i = 0; i < candidateCount; ++i) {
            const JSONCVData cvData{random() % 2 ? u"Masculino"_s : u"Femenino"_s, some(softSkills, 3),
                                    some(techSkills, 5), some(languages, 2)};
            const QString email = u"c%1@example.org"_s.arg(i);
            candidates.push_back({email, cvData, unitVector()});
            ASSERT_TRUE(
                store.insert(makeRecord(email.toStdString(), {cvData.gender.toStdString(), utf8(cvData.softSkills),
                                                              utf8(cvData.techSkills), utf8(cvData.languages)})));
        }
        for (std::int64_t id = 0; const auto waiting = *store.nextUnembedded(id);) {
            id = *waiting;
            const std::string email = (*store.unembedded(id))->profession.substr(std::string("Profession of ").size());
            const auto candidate = std::ranges::find(candidates, QString::fromStdString(email), &Candidate::email);
            ASSERT_TRUE(*store.putVector(id, candidate->vector));
        }
    }

    SearchCriteria randomCriteria() {
        return {static_cast<Gender>(random() % 3), some(techSkills, 2), some(softSkills, 1), some(languages, 1), {}};
    }
    static bool matches(const Candidate& candidate, const SearchCriteria& criteria) {
        const auto hasAll = [](const QStringList& values, const QStringList& wanted) {
            return std::ranges::all_of(wanted, [&](const QString& value) { return values.contains(value); });
        };
        const bool rightGender =
            criteria.genderRequired == Gender::any ||
            candidate.cvData.gender == (criteria.genderRequired == Gender::male ? u"Masculino"_s : u"Femenino"_s);
        return rightGender && hasAll(candidate.cvData.techSkills, criteria.techSkillsRequiredTokens) &&
               hasAll(candidate.cvData.softSkills, criteria.softSkillsRequiredTokens) &&
               hasAll(candidate.cvData.languages, criteria.languagesRequiredTokens);
    }
    static double score(const Candidate& candidate, const QList<double>& query) {
        double dot = 0;
        for (std::size_t i = 0; i < dimensions; ++i) {
            dot += static_cast<double>(candidate.vector[i]) * query[static_cast<qsizetype>(i)];
        }
        return std::clamp((dot + 1) * 50, 0.0, 100.0);
    }
    std::vector<const Candidate*> matching(const SearchCriteria& criteria) const {
        std::vector<const Candidate*> found;
        for (const Candidate& candidate : candidates) {
            if (matches(candidate, criteria)) {
                found.push_back(&candidate);
            }
        }
        return found;
    }

    Search::Results run(const SearchCriteria& criteria) {
        QObject application;
        Search search(*client, models, application);
        search.start(criteria);
        EXPECT_TRUE(waitUntil([&] { return search.results() != nullptr; }));
        return search.results();
    }

    const QStringList techSkills = {u"Excel"_s,
                                    u"EXCEL"_s,
                                    u"C++"_s,
                                    u"SQL"_s,
                                    u"O'Reilly"_s,
                                    u"Nóminas"_s,
                                    u"100 %"_s,
                                    u"a\\b"_s,
                                    u"\"Lean\""_s,
                                    u"\U0001F600"_s,
                                    u"larga"_s.repeated(2'000)};
    const QStringList softSkills = {u"Liderazgo"_s, u"Empatía"_s, u"Trabajo en equipo"_s};
    const QStringList languages = {u"Español"_s, u"Inglés"_s, u"L'occitan"_s};
    std::mt19937 random{500};
    std::vector<Candidate> candidates;
    StoreFolder folder;
    std::unique_ptr<RecordsProcess> process;
    NetworkHttpSession session;
    std::unique_ptr<APIRequest> client;
    FakeModelService models;
};

} // namespace

TEST_F(ProgramSearches, StructuredSearchesFindExactlyTheCandidatesThatHaveEverything) {
    std::size_t found = 0;
    for (int round = 0; round < 100; ++round) {
        const SearchCriteria criteria = randomCriteria();
        const Search::Results results = run(criteria);
        ASSERT_TRUE(results);
        QStringList emails;
        for (const auto& row : results->result) {
            EXPECT_EQ(row->score, 100.0F);
            emails.append(row->email);
        }
        QStringList expected;
        for (const Candidate* candidate : matching(criteria)) {
            expected.append(candidate->email);
        }
        emails.sort();
        expected.sort();
        ASSERT_EQ(emails, expected) << qPrintable(results->sql);
        found += results->result.size();
    }
    EXPECT_GT(found, 1000U);
}

TEST_F(ProgramSearches, WithoutCriteriaEverybodyIsFoundWithAHundred) {
    const Search::Results results = run({});
    ASSERT_TRUE(results);
    EXPECT_EQ(results->result.size(), candidates.size());
    EXPECT_TRUE(std::ranges::all_of(results->result, [](const auto& row) { return row->score == 100.0F; }));
}

TEST_F(ProgramSearches, SemanticSearchesFindTheBestFiveOfThem) {
    std::size_t full = 0;
    for (int round = 0; round < 100; ++round) {
        SearchCriteria criteria = randomCriteria();
        criteria.freeTextSearchString = u"alguien"_s;
        const std::vector<float> numbers = unitVector();
        const QList<double> query(numbers.begin(), numbers.end());
        models.queueEmbedding(query);
        const Search::Results results = run(criteria);
        ASSERT_TRUE(results);

        std::map<QString, double> scores;
        std::vector<double> best;
        for (const Candidate* candidate : matching(criteria)) {
            scores[candidate->email] = score(*candidate, query);
            best.push_back(scores[candidate->email]);
        }
        std::ranges::sort(best, std::greater());
        best.resize(std::min<std::size_t>(best.size(), 5));
        ASSERT_EQ(results->result.size(), best.size());
        for (std::size_t i = 0; i < best.size(); ++i) {
            const IdentifiableQueryResult& row = *results->result[i];
            ASSERT_TRUE(scores.contains(row.email)) << qPrintable(row.email);
            EXPECT_NEAR(static_cast<double>(row.score), scores[row.email], tolerance);
            EXPECT_NEAR(static_cast<double>(row.score), best[i], tolerance);
        }
        full += best.size() == 5 ? 1 : 0;
    }
    EXPECT_GT(full, 20U);
}
