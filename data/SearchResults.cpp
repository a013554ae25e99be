// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/SearchResults.h"

namespace dorvantel {

namespace {

QList<TagViewItem> tags(const QStringList& titles) {
    QList<TagViewItem> items;
    items.reserve(titles.size());
    for (const QString& title : titles) {
        items.append({title, false});
    }
    return items;
}

} // namespace

QList<TagViewItem> IdentifiableQueryResult::techSkillTags() const {
    return tags(jsonCVData.techSkills);
}

QList<TagViewItem> IdentifiableQueryResult::softSkillTags() const {
    return tags(jsonCVData.softSkills);
}

QList<TagViewItem> IdentifiableQueryResult::languageTags() const {
    return tags(jsonCVData.languages);
}

IdentifiableSearchResponse::IdentifiableSearchResponse(SearchResponse response)
    : sql(std::move(response.sql)) {
    result.reserve(response.result.size());
    for (QueryResult& row : response.result) {
        auto item = std::make_shared<IdentifiableQueryResult>();
        item->name = std::move(row.name);
        item->profession = std::move(row.profession);
        item->email = std::move(row.email);
        item->summarizedText = std::move(row.summarizedText);
        item->invitationMail = std::move(row.invitationMail);
        item->jsonCVData = std::move(row.jsonCVData);
        item->score = row.score;
        item->file = std::move(row.file);
        result.push_back(std::move(item));
    }
}

} // namespace dorvantel
