// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/Search.h"

#include "modelserver/ModelService.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/WhenFinished.h"
#include "search/VectorText.h"

#include <exception>

namespace dorvantel {

using namespace Qt::StringLiterals;

Search::Search(RecordsService& records, ModelService& models, QObject& application, QObject* parent)
    : QObject(parent)
    , m_records(records)
    , m_models(models)
    , m_application(application) {}

void Search::start(const SearchCriteria& criteria) {
    countUnderWay(1);
    const QStringList clauses = clauseList(criteria);
    if (!criteria.freeTextSearchString.isEmpty()) {
        startSemantic(criteria.freeTextSearchString, clauses);
        return;
    }
    runOnMainQueue(&m_application, [&records = m_records, self = QPointer(this),
                                    statement = structuredStatement(clauses)] { send(records, self, statement); });
}

void Search::startSemantic(const QString& text, const QStringList& clauses) {
    const auto vector = m_models.generateEmbedding(text, std::nullopt);
    whenFinished(
        vector, &m_application,
        [&records = m_records, self = QPointer(this), clauses](const ModelResult<QList<double>>& answer) {
            if (answer) {
                send(records, self, semanticStatement(*answer, clauses));
            } else {
                failEmbedding(self, localizedDescription(answer.error()));
            }
        },
        [self = QPointer(this)](const std::exception& error) { failEmbedding(self, QString::fromUtf8(error.what())); });
}

void Search::failEmbedding(const QPointer<Search>& self, const QString& description) {
    logLine(u"❌ Error generating embedding: "_s + description);
    if (self) {
        self->countUnderWay(-1);
    }
}

void Search::send(RecordsService& records, const QPointer<Search>& self, const QString& statement) {
    records.search(statement, [self](std::expected<Results, APIError> answer) {
        if (!answer) {
            logLine(u"Failure! No records returned"_s);
        } else if (self) {
            self->setResults(std::move(*answer));
        }
        if (self) {
            self->countUnderWay(-1);
        }
    });
}

void Search::countUnderWay(int change) {
    const bool before = isUnderWay();
    m_underWay += change;
    if (isUnderWay() != before) {
        Q_EMIT isUnderWayChanged();
    }
}

void Search::clear() {
    setResults(nullptr);
}

void Search::setResults(Results results) {
    m_results = std::move(results);
    Q_EMIT resultsChanged();
}

} // namespace dorvantel
