// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"

#include "platform/Log.h"
#include "platform/MainQueue.h"

#include <QPointer>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// Fills `catalogue` with the values of one kind, later spellings replacing earlier ones.
class CatalogueBuilder {
public:
    explicit CatalogueBuilder(Model::Catalogue& catalogue)
        : m_catalogue(catalogue) {
        m_catalogue.clear();
    }

    void add(const QStringList& values) {
        for (const QString& value : values) {
            // Lower-casing costs far more than looking up, and the same spellings come back in most records.
            auto key = m_lowerCased.constFind(value);
            if (key == m_lowerCased.cend()) {
                key = m_lowerCased.insert(value, value.toLower());
            }
            QString& spelling = m_catalogue[*key];
            if (!spelling.isSharedWith(value)) {
                spelling = value;
            }
        }
    }

private:
    Model::Catalogue& m_catalogue;
    QHash<QString, QString> m_lowerCased;
};

} // namespace

Model::Model(RecordsService& service, QObject* parent)
    : QObject(parent) {
    load(service);
}

void Model::load(RecordsService& service) {
    service.fetchAll([self = QPointer<Model>(this)](std::expected<std::vector<DBRecordPointer>, APIError> answer) {
        if (!answer) {
            logLine(u"❌ Failed to load resumes from API"_s);
            logLine(u"❌ Error type: "_s + caseName(answer.error()));
            return;
        }
        if (!self) {
            return;
        }
        runOnMainQueue(self, [self, records = std::move(*answer)]() mutable {
            const auto first = static_cast<qsizetype>(self->m_dbRecords.size());
            const auto count = static_cast<qsizetype>(records.size());
            self->m_dbRecords.insert(self->m_dbRecords.end(), std::make_move_iterator(records.begin()),
                                     std::make_move_iterator(records.end()));
            if (count > 0) {
                Q_EMIT self->recordsAppended(first, count);
            }
            self->rebuildCatalogues();
        });
    });
}

void Model::appendRecord(DBRecordPointer record) {
    m_dbRecords.push_back(std::move(record));
    Q_EMIT recordsAppended(static_cast<qsizetype>(m_dbRecords.size()) - 1, 1);
}

void Model::setSelectedDBRecord(DBRecordPointer record) {
    if (m_selectedDBRecord == record) {
        return;
    }
    m_selectedDBRecord = std::move(record);
    Q_EMIT selectedDBRecordChanged();
}

void Model::rebuildCatalogues() {
    CatalogueBuilder softSkills(m_softSkillsDictionary);
    CatalogueBuilder techSkills(m_techSkillsDictionary);
    CatalogueBuilder languages(m_languagesDictionary);
    for (const DBRecordPointer& record : m_dbRecords) {
        softSkills.add(record->jsonCVData.softSkills);
        techSkills.add(record->jsonCVData.techSkills);
        languages.add(record->jsonCVData.languages);
    }
    m_softSkills.append(m_softSkillsDictionary.values());
    m_techSkills.append(m_techSkillsDictionary.values());
    m_languages.append(m_languagesDictionary.values());
    Q_EMIT cataloguesRebuilt();
}

void Model::removeSelectedRecord() {
    if (!m_selectedDBRecord) {
        return;
    }
    const auto found = std::ranges::find_if(
        m_dbRecords, [this](const DBRecordPointer& record) { return *record == *m_selectedDBRecord; });
    if (found == m_dbRecords.end()) {
        return;
    }
    const qsizetype index = std::distance(m_dbRecords.begin(), found);
    m_dbRecords.erase(found);
    Q_EMIT recordRemoved(index);
    setSelectedDBRecord(nullptr);
    rebuildCatalogues();
}

} // namespace dorvantel
