// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"
#include "search/Query.h"

#include <QObject>

#include <memory>

namespace dorvantel {

class ModelService;

/// Runs searches and holds the last answer. Lives on the UI thread; outlived by the services that it was given.
///
/// Searches run independently, nothing cancels one, and the answer that arrives last is the one that stays. Failures
/// are one line in the log and change nothing. When this object goes, its searches go with it.
class Search : public QObject {
    Q_OBJECT

public:
    using Results = std::shared_ptr<IdentifiableSearchResponse>;

    Search(RecordsService& records, ModelService& models, QObject* parent = nullptr);

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
    void send(const QString& statement);
    void countUnderWay(int change);
    void setResults(Results results);

    RecordsService& m_records;
    ModelService& m_models;
    Results m_results;
    int m_underWay = 0;
};

} // namespace dorvantel
