// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"
#include "search/Query.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace dorvantel {

class ModelService;

/// Runs searches and holds the last answer. Lives on the UI thread; outlived by all it was given.
///
/// Searches run independently, nothing cancels one, and the answer that arrives last is the one that stays. Failures
/// are one line in the log and change nothing. A search that is under way when this object goes is still brought to
/// its end, with the same lines in the log, but its answer reaches nobody. Only the end of `application` gives up what
/// has not been sent by then.
class Search : public QObject {
    Q_OBJECT

public:
    using Results = std::shared_ptr<IdentifiableSearchResponse>;

    Search(RecordsService& records, ModelService& models, QObject& application, QObject* parent = nullptr);

    /// Returns before anything is sent to the records service. With a free text the model server is asked for its
    /// vector first.
    void start(const SearchCriteria& criteria);

    /// The last answer; null before the first one and after clear().
    const Results& results() const { return m_results; }
    void clear();

    /// Whether a search has not ended yet, with an answer or with a failure.
    bool isUnderWay() const { return m_underWay > 0; }

Q_SIGNALS:
    void isUnderWayChanged();
    void resultsChanged();

private:
    void startSemantic(const QString& text, const QStringList& clauses);
    static void send(RecordsService& records, const QPointer<Search>& self, const QString& statement);
    static void failEmbedding(const QPointer<Search>& self, const QString& description);
    void countUnderWay(int change);
    void setResults(Results results);

    RecordsService& m_records;
    ModelService& m_models;
    QObject& m_application;
    Results m_results;
    int m_underWay = 0;
};

} // namespace dorvantel
