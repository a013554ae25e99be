// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/FillSamples.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <QSet>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using nlohmann::json;

// A records service that keeps what it is given.
class FakeRecords {
public:
    explicit FakeRecords(json listed = json::array(), int insertStatus = 201) {
        m_server.Get("/curriculums", [listed](const httplib::Request&, httplib::Response& response) {
            response.set_content(json({{"response", listed}}).dump(), "application/json");
        });
        m_server.Post(
            "/curriculums", [this, insertStatus](const httplib::Request& request, httplib::Response& response) {
                {
                    const std::scoped_lock lock(m_mutex);
                    m_inserts.push_back({request.get_header_value("Content-Type"), json::parse(request.body)});
                }
                response.status = insertStatus;
                response.set_content(request.body, "application/json");
            });
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        while (!m_server.is_running()) {
            std::this_thread::yield();
        }
    }
    ~FakeRecords() {
        m_server.stop();
        m_thread.join();
    }
    QString url() const { return u"http://127.0.0.1:%1/curriculums"_s.arg(m_port); }

    struct Insert {
        std::string contentType;
        json body;
    };
    std::vector<Insert> inserts() const {
        const std::scoped_lock lock(m_mutex);
        return m_inserts;
    }

private:
    mutable std::mutex m_mutex; // the server answers every connection on a thread of its own
    std::vector<Insert> m_inserts;
    httplib::Server m_server;
    int m_port = 0;
    std::thread m_thread;
};

DBRecord record(const QString& email) {
    return {u"Ana Ruiz"_s,
            u"Contable"_s,
            email,
            u"Resumen"_s,
            u"Estimada Sra. Ruiz:"_s,
            u"{\"gender\":\"Femenino\"}"_s,
            QByteArray("%PDF-1.4\xff")};
}

TEST(InsertBody, HoldsTheDataAsTextAndTheFileAsBase64) {
    const json body = json::parse(insertBody(record(u"ana@example.com"_s)));
    EXPECT_EQ(body, json({{"name", "Ana Ruiz"},
                          {"profession", "Contable"},
                          {"email", "ana@example.com"},
                          {"summarizedText", "Resumen"},
                          {"invitationMail", "Estimada Sra. Ruiz:"},
                          {"jsonCVData", "{\"gender\":\"Femenino\"}"},
                          {"file", "JVBERi0xLjT/"}}));
}

TEST(InsertBody, WithoutAFileHasNoKeyForIt) {
    DBRecord without = record(u"ana@example.com"_s);
    without.file.reset();
    EXPECT_FALSE(json::parse(insertBody(without)).contains("file"));
}

TEST(FillRecords, InsertsEveryCandidateInOrder) {
    FakeRecords records;
    EXPECT_EQ(fillRecords(records.url(), {record(u"a@example.com"_s), record(u"b@example.com"_s)}), 2);
    const auto inserts = records.inserts();
    ASSERT_EQ(inserts.size(), 2U);
    EXPECT_EQ(inserts[0].body["email"], "a@example.com");
    EXPECT_EQ(inserts[1].body["email"], "b@example.com");
    EXPECT_EQ(inserts[0].contentType, "application/json");
}

TEST(FillRecords, LeavesAServiceWithRecordsAlone) {
    FakeRecords records(json({{{"email", "someone@example.com"}}}));
    EXPECT_EQ(fillRecords(records.url(), {record(u"a@example.com"_s)}), 0);
    EXPECT_TRUE(records.inserts().empty());
}

TEST(FillRecords, StopsAtTheFirstRefusalAndNamesIt) {
    FakeRecords records(json::array(), 200);
    const auto filled = fillRecords(records.url(), {record(u"a@example.com"_s), record(u"b@example.com"_s)});
    ASSERT_FALSE(filled.has_value());
    EXPECT_TRUE(filled.error().startsWith(u"a@example.com: HTTP 200 "_s)) << filled.error().toStdString();
    EXPECT_EQ(records.inserts().size(), 1U);
}

TEST(FillRecords, TellsWhatIsWrongWithTheAddress) {
    EXPECT_EQ(fillRecords(u"nowhere"_s, {}).error(), u"nowhere is no http:// address"_s);
    EXPECT_TRUE(fillRecords(u"http://127.0.0.1:1/curriculums"_s, {}).error().startsWith(u"the list of records: "_s));
    FakeRecords records;
    EXPECT_TRUE(fillRecords(records.url() + u"/other"_s, {}).error().startsWith(u"the list of records: HTTP 404 "_s));
}

TEST(SampleCandidates, AreTwentyFourCompleteRecords) {
    const std::vector<DBRecord> candidates = sampleCandidates();
    EXPECT_EQ(candidates.size(), 24U);
    QSet<QString> addresses;
    for (const DBRecord& candidate : candidates) {
        addresses.insert(candidate.email);
        EXPECT_FALSE(candidate.name.isEmpty() || candidate.profession.isEmpty() || candidate.summarizedText.isEmpty());
        ASSERT_TRUE(candidate.file.has_value());
        EXPECT_TRUE(candidate.file->startsWith("%PDF-"));
        const json data = json::parse(candidate.jsonCVData.toStdString());
        EXPECT_GE(data["techSkills"].size(), 4U) << candidate.name.toStdString();
        EXPECT_GE(data["softSkills"].size(), 3U) << candidate.name.toStdString();
        const bool toAWoman = candidate.invitationMail.startsWith(u"Estimada Sra. "_s);
        EXPECT_EQ(data["gender"], toAWoman ? "Femenino" : "Masculino") << candidate.name.toStdString();
    }
    EXPECT_EQ(addresses.size(), 24);
}

} // namespace
} // namespace dorvantel
