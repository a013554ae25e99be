// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"

#include <QStringList>

#include <deque>

namespace dorvantel::test {

/// A records service without a network: it writes down every call and answers only when the test says so, oldest call
/// of the kind first. Answering without a waiting call fails the test. Calls that are never answered stay silent.
class FakeRecordsService : public RecordsService {
public:
    /// One line a call, in order: the operation's name, then a blank and its key or statement where it has one.
    const QStringList& calls() const { return m_calls; }
    /// What `insertResume` would have sent, in order.
    const std::vector<DBRecord>& inserted() const { return m_inserted; }

    void answerFetchAll(std::expected<std::vector<DBRecordPointer>, APIError> answer);
    void answerFetchPDF(std::expected<std::optional<QByteArray>, APIError> answer);
    void answerInsert(std::expected<DBRecord, APIError> answer);
    /// Answers the oldest waiting insert with the very record it was given.
    void answerInsert();
    void answerSearch(std::expected<std::shared_ptr<IdentifiableSearchResponse>, APIError> answer);

    void fetchAll(Completion<std::vector<DBRecordPointer>> completion) override;
    void fetchPDF(const QString& key, Completion<std::optional<QByteArray>> completion) override;
    void insertResume(const DBRecordRepresentation& record, Completion<DBRecord> completion) override;
    void deleteResume(const QString& key) override;
    void search(const QString& sql, Completion<std::shared_ptr<IdentifiableSearchResponse>> completion) override;

private:
    QStringList m_calls;
    std::vector<DBRecord> m_inserted;
    std::deque<Completion<std::vector<DBRecordPointer>>> m_waitingFetchAll;
    std::deque<Completion<std::optional<QByteArray>>> m_waitingFetchPDF;
    std::deque<Completion<DBRecord>> m_waitingInsert;
    std::deque<Completion<std::shared_ptr<IdentifiableSearchResponse>>> m_waitingSearch;
};

} // namespace dorvantel::test
