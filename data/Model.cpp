// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"

#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/Text.h"

#include <QPointer>
#include <QSet>

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// A spelling that some record holds, by its bytes. Over all values of all records, QString's own hash and comparison
/// take three times as long.
class Spelling {
public:
    explicit Spelling(const QString& text)
        : m_bytes(reinterpret_cast<const char*>(text.constData()),
                  static_cast<std::size_t>(text.size()) * sizeof(QChar)) {}

    bool operator==(const Spelling& other) const = default;
    friend std::size_t qHash(const Spelling& spelling, std::size_t seed) {
        return std::hash<std::string_view>{}(spelling.m_bytes) ^ seed;
    }

private:
    std::string_view m_bytes;
};

/// Collects the values of one kind. They are to be added from the last to the first: the spelling added first stays.
/// So the same spelling, which most values are, costs one look-up and changes nothing.
class CatalogueBuilder {
public:
    explicit CatalogueBuilder(Model::Catalogue& catalogue)
        : m_catalogue(catalogue) {
        m_catalogue.clear();
    }

    void addFromTheLast(const QStringList& values) {
        for (auto value = values.crbegin(); value != values.crend(); ++value) {
            if (const Spelling spelling(*value); !m_seen.contains(spelling)) {
                m_seen.insert(spelling);
                if (const QString key = caselessForm(*value); !m_catalogue.contains(key)) {
                    m_catalogue.insert(key, *value);
                }
            }
        }
    }

private:
    Model::Catalogue& m_catalogue;
    QSet<Spelling> m_seen;
};

/// Asks the processor for the values of the records before `records[at]`. Record, list and characters lie apart in
/// memory, so each is asked for when the step before it should have arrived; it halves the time. Inlined always: gcc
/// takes a call that does nothing but this for one without effect, and drops it.
[[gnu::always_inline]] inline void prefetchBefore(const std::vector<DBRecordPointer>& records, std::size_t at) {
    const auto lists = [&records](std::size_t index) {
        const JSONCVData& data = records[index]->jsonCVData;
        return std::array{&data.languages, &data.techSkills, &data.softSkills};
    };
    if (at >= 12) {
        for (const QStringList* list : lists(at - 12)) {
            __builtin_prefetch(list);
        }
    }
    if (at >= 8) {
        for (const QStringList* list : lists(at - 8)) {
            __builtin_prefetch(list->constData());
        }
    }
    if (at >= 4) {
        for (const QStringList* list : lists(at - 4)) {
            for (const QString& value : *list) {
                __builtin_prefetch(value.constData());
            }
        }
    }
}

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
            if (self) {
                self->endLoading();
            }
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
            self->endLoading();
        });
    });
}

void Model::endLoading() {
    m_isLoading = false;
    Q_EMIT isLoadingChanged();
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
    for (std::size_t at = m_dbRecords.size(); at-- > 0;) {
        prefetchBefore(m_dbRecords, at);
        const JSONCVData& data = m_dbRecords[at]->jsonCVData;
        softSkills.addFromTheLast(data.softSkills);
        techSkills.addFromTheLast(data.techSkills);
        languages.addFromTheLast(data.languages);
    }
    m_softSkills.append(m_softSkillsDictionary.values());
    m_techSkills.append(m_techSkillsDictionary.values());
    m_languages.append(m_languagesDictionary.values());
    m_knownSoftSkills.insert(m_softSkillsDictionary);
    m_knownTechSkills.insert(m_techSkillsDictionary);
    m_knownLanguages.insert(m_languagesDictionary);
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
