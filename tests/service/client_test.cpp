// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/APIRequest.h"

#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Wait.h"

#include <gmock/gmock.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

/// Counts the answers, for the calls that have no completion of their own.
class CountingSession final : public HttpSession {
public:
    void send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) override {
        m_session.send(request, context, [this, completion = std::move(completion)](HttpOutcome outcome) {
            completion(std::move(outcome));
            ++answers;
        });
    }
    int answers = 0;

private:
    NetworkHttpSession m_session;
};

/// The program's own client against the service as a process.
class ClientTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(process.waitUntilReady());
        client = std::make_unique<APIRequest>(session, QString::fromStdString(process.url()));
    }

    static std::unique_ptr<DBRecordRepresentation> candidate(const QString& email) {
        auto record = std::make_unique<DBRecordRepresentation>();
        record->name = u"María José"_s;
        record->profession = u"Contable"_s;
        record->email = email;
        record->summarizedText = u"Diez años\nde experiencia"_s;
        record->invitationMail = u"Estimada \"María\""_s;
        record->jsonCVData = {u"Femenino"_s, {u"Empatía"_s}, {u"Excel"_s}, {u"Español"_s}};
        return record;
    }

    bool insert(const DBRecordRepresentation& record) {
        std::optional<bool> stored;
        client->insertResume(record, [&](const auto& result) { stored = result && *result == record.toDBRecord(); });
        return waitUntil([&] { return stored.has_value(); }) && *stored;
    }
    std::vector<DBRecordPointer> list() {
        std::optional<std::vector<DBRecordPointer>> records;
        client->fetchAll([&](const auto& result) {
            EXPECT_TRUE(result);
            records = result.value_or(std::vector<DBRecordPointer>());
        });
        EXPECT_TRUE(waitUntil([&] { return records.has_value(); }));
        return records.value_or(std::vector<DBRecordPointer>());
    }
    std::expected<std::optional<QByteArray>, APIError> pdf(const QString& key) {
        std::optional<std::expected<std::optional<QByteArray>, APIError>> outcome;
        client->fetchPDF(key, [&](const auto& result) { outcome = result; });
        EXPECT_TRUE(waitUntil([&] { return outcome.has_value(); }));
        return outcome.value_or(std::unexpected(APIError::responseProblem));
    }
    /// The e-mails that a search finds.
    QStringList search(const QString& condition) {
        std::optional<QStringList> emails;
        client->search(u"select name,profession,email,summarizedText,invitationMail,jsonCVData,100.0 as score from "
                       "curriculums"_s +
                           condition,
                       [&](const auto& result) {
                           EXPECT_TRUE(result);
                           emails.emplace();
                           for (const auto& row : result ? (*result)->result : decltype((*result)->result){}) {
                               EXPECT_EQ(row->score, 100);
                               emails->append(row->email);
                           }
                       });
        EXPECT_TRUE(waitUntil([&] { return emails.has_value(); }));
        return emails.value_or(QStringList());
    }

    StoreFolder folder;
    RecordsProcess process{
        {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, QString::fromStdString(folder.store().string())}};
    CountingSession session;
    std::unique_ptr<APIRequest> client;
};

} // namespace

TEST_F(ClientTest, InsertsListsAndFetchesThePDF) {
    const auto record = candidate(u"ana@example.com"_s);
    record->file = QByteArray("%PDF-1.4\0\xff\x80", 11);
    ASSERT_TRUE(insert(*record));
    const auto records = list();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->name, record->name);
    EXPECT_EQ(records[0]->profession, record->profession);
    EXPECT_EQ(records[0]->email, record->email);
    EXPECT_EQ(records[0]->summarizedText, record->summarizedText);
    EXPECT_EQ(records[0]->invitationMail, record->invitationMail);
    EXPECT_EQ(records[0]->jsonCVData, record->jsonCVData);
    EXPECT_EQ(pdf(record->email).value(), record->file);
}

TEST_F(ClientTest, LargePDFGoesThereAndBack) {
    const auto record = candidate(u"ana@example.com"_s);
    QByteArray bytes(2'000'000, '\0');
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 + i / 256);
    }
    record->file = bytes;
    ASSERT_TRUE(insert(*record));
    EXPECT_EQ(pdf(record->email).value(), record->file);
}

TEST_F(ClientTest, CandidateWithoutPDFHasNone) {
    ASSERT_TRUE(insert(*candidate(u"ana@example.com"_s)));
    EXPECT_EQ(pdf(u"ana@example.com"_s).value(), std::nullopt);
    EXPECT_EQ(pdf(u"nobody@example.com"_s).error(), APIError::responseProblem);
}

TEST_F(ClientTest, SkillsWithEveryAwkwardCharacterAreListedAndFoundAsTheyWere) {
    const QStringList skills{u"O'Reilly"_s, u"\"Excel\""_s, u"back\\slash"_s, u"two\nlines"_s,     u"😀"_s,
                             u"n\0l"_s,     u"\\'"_s,       u"x') OR 1=1"_s,  u"tab\tdel\u007f"_s, u"\u2028"_s,
                             u"'"_s,        u"e\u0301"_s};
    for (qsizetype i = 0; i < skills.size(); ++i) {
        const auto record = candidate(QString::number(i) + u"@example.com"_s);
        record->jsonCVData.techSkills = {skills[i]};
        record->jsonCVData.softSkills = {skills[i], u"Empatía"_s};
        record->jsonCVData.languages = {skills[i]};
        ASSERT_TRUE(insert(*record));
    }
    const auto records = list();
    ASSERT_EQ(records.size(), static_cast<std::size_t>(skills.size()));
    for (qsizetype i = 0; i < skills.size(); ++i) {
        EXPECT_EQ(records[static_cast<std::size_t>(i)]->jsonCVData.techSkills, QStringList{skills[i]});
        for (const QString& name : {u"techSkills"_s, u"softSkills"_s, u"languages"_s}) {
            const QString clause = u"JSON_ARRAY_CONTAINS_STRING(jsonCVData::"_s + name + u",'"_s + skills[i] + u"')"_s;
            EXPECT_EQ(search(u" where "_s + clause), QStringList{records[static_cast<std::size_t>(i)]->email})
                << clause.toStdString();
        }
    }
    EXPECT_EQ(search(u" where jsonCVData::gender = '\"Femenino\"'"_s).size(), skills.size());
    EXPECT_EQ(search({}).size(), skills.size());
}

TEST_F(ClientTest, KeysThatAPathCannotCarryAreFetchedAndDeleted) {
    const QStringList keys{u"a b@x"_s, u"ñandú@x"_s, u"a?b@x"_s, u"a#b@x"_s, u"100%41@x"_s, u"a/b@x"_s, u"a\"b\\c@x"_s};
    for (const QString& key : keys) {
        const auto record = candidate(key);
        record->file = key.toUtf8();
        ASSERT_TRUE(insert(*record));
        EXPECT_EQ(pdf(key).value(), key.toUtf8()) << key.toStdString();
    }
    for (qsizetype i = 0; i < keys.size(); ++i) {
        client->deleteResume(keys[i]);
        EXPECT_TRUE(waitUntil([&] { return list().size() == static_cast<std::size_t>(keys.size() - i - 1); }))
            << keys[i].toStdString();
    }
}

TEST_F(ClientTest, DeleteIsLoggedByItsOutcome) {
    ASSERT_TRUE(insert(*candidate(u"ana@example.com"_s)));
    for (const char* const expected :
         {"Resume deleted successfully from database\n", "Failure! Record could not be deleted\n"}) {
        CapturedOutput output;
        const int before = session.answers;
        client->deleteResume(u"ana@example.com"_s);
        EXPECT_TRUE(waitUntil([&] { return session.answers > before; }));
        EXPECT_EQ(output.text().toStdString(), expected);
    }
}
