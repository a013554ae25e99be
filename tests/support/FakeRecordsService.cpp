// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/FakeRecordsService.h"

#include <gtest/gtest.h>

#include <utility>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

template <typename Completion, typename Answer>
void answerOldest(std::deque<Completion>& waiting, Answer answer) {
    if (waiting.empty()) {
        ADD_FAILURE() << "no call waits for this answer";
        return;
    }
    // Taken out first: a completion may start the next call.
    const Completion completion = std::move(waiting.front());
    waiting.pop_front();
    completion(std::move(answer));
}

} // namespace

void FakeRecordsService::answerFetchAll(std::expected<std::vector<DBRecordPointer>, APIError> answer) {
    answerOldest(m_waitingFetchAll, std::move(answer));
}

void FakeRecordsService::answerFetchPDF(std::expected<std::optional<QByteArray>, APIError> answer) {
    answerOldest(m_waitingFetchPDF, std::move(answer));
}

void FakeRecordsService::answerInsert(std::expected<DBRecord, APIError> answer) {
    answerOldest(m_waitingInsert, std::move(answer));
}

void FakeRecordsService::answerInsert() {
    if (m_waitingInsert.empty()) {
        ADD_FAILURE() << "no insert waits for an answer";
        return;
    }
    answerInsert(m_inserted[m_inserted.size() - m_waitingInsert.size()]);
}

void FakeRecordsService::answerSearch(std::expected<std::shared_ptr<IdentifiableSearchResponse>, APIError> answer) {
    answerOldest(m_waitingSearch, std::move(answer));
}

void FakeRecordsService::fetchAll(Completion<std::vector<DBRecordPointer>> completion) {
    m_calls.append(u"fetchAll"_s);
    m_waitingFetchAll.push_back(std::move(completion));
}

void FakeRecordsService::fetchPDF(const QString& key, Completion<std::optional<QByteArray>> completion) {
    m_calls.append(u"fetchPDF "_s + key);
    m_waitingFetchPDF.push_back(std::move(completion));
}

void FakeRecordsService::insertResume(const DBRecordRepresentation& record, Completion<DBRecord> completion) {
    m_calls.append(u"insertResume "_s + record.email);
    m_inserted.push_back(record.toDBRecord());
    m_waitingInsert.push_back(std::move(completion));
}

void FakeRecordsService::deleteResume(const QString& key) {
    m_calls.append(u"deleteResume "_s + key);
}

void FakeRecordsService::search(const QString& sql,
                                Completion<std::shared_ptr<IdentifiableSearchResponse>> completion) {
    m_calls.append(u"search "_s + sql);
    m_waitingSearch.push_back(std::move(completion));
}

} // namespace dorvantel::test
