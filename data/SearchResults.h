// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/JSONCVData.h"
#include "data/TagViewItem.h"

#include <QByteArray>
#include <QList>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace dorvantel {

/// One row of a search answer as it came over the wire.
struct QueryResult {
    QString name;
    QString profession;
    QString email;
    QString summarizedText;
    QString invitationMail;
    JSONCVData jsonCVData;
    float score = 0;                ///< 0 to 100
    std::optional<QByteArray> file; ///< the PDF when the row carried it; may be present and empty
};

/// A search answer as it came over the wire: the statement as the service ran it, and its rows.
struct SearchResponse {
    QString sql;
    std::vector<QueryResult> result;
};

/// A row as the search screen lists it. Its `id` is fresh for every row of every answer, equal content or not.
struct IdentifiableQueryResult {
    QUuid id = QUuid::createUuid();
    QString name;
    QString profession;
    QString email;
    QString summarizedText;
    QString invitationMail;
    JSONCVData jsonCVData;
    float score = 0;
    std::optional<QByteArray> file;

    QList<TagViewItem> techSkillTags() const;
    QList<TagViewItem> softSkillTags() const;
    QList<TagViewItem> languageTags() const;
};

/// What the search screen holds of an answer; made once per answer and shared.
struct IdentifiableSearchResponse {
    QString sql;
    std::vector<std::shared_ptr<IdentifiableQueryResult>> result;

    /// Takes the texts out of `response` and gives every row, in order, an identity of its own.
    explicit IdentifiableSearchResponse(SearchResponse response);
};

} // namespace dorvantel
