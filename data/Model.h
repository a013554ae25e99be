// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <vector>

namespace dorvantel {

/// The state of the application: the stored candidates, the one that is selected, and the catalogues of the values that
/// occur in them. Lives on the UI thread; made once, by the main window, and outlived by the records service that it
/// was given. Loading starts at creation and happens once per run; failures are only logged.
class Model : public QObject {
    Q_OBJECT

public:
    /// From the caseless form of a value to its spelling as stored.
    using Catalogue = QHash<QString, QString>;

    explicit Model(RecordsService& service, QObject* parent = nullptr);

    const std::vector<DBRecordPointer>& dbRecords() const { return m_dbRecords; }
    void appendRecord(DBRecordPointer record);

    /// From the creation until the records service has answered, with records or with a failure.
    bool isLoading() const { return m_isLoading; }

    const DBRecordPointer& selectedDBRecord() const { return m_selectedDBRecord; }
    void setSelectedDBRecord(DBRecordPointer record);

    /// The catalogues as they grow: every rebuild appends all its values to them, so values occur repeatedly.
    const QStringList& techSkills() const { return m_techSkills; }
    const QStringList& softSkills() const { return m_softSkills; }
    const QStringList& languages() const { return m_languages; }

    /// What the lists above hold, each value once in its latest spelling, in no order: for display, and for fields that
    /// complete values and let them in. As long as there are values, while the lists grow with every candidate.
    QStringList knownTechSkills() const { return m_knownTechSkills.values(); }
    QStringList knownSoftSkills() const { return m_knownSoftSkills.values(); }
    QStringList knownLanguages() const { return m_knownLanguages.values(); }

    /// The catalogues for membership and spelling; exact at all times.
    const Catalogue& techSkillsDictionary() const { return m_techSkillsDictionary; }
    const Catalogue& softSkillsDictionary() const { return m_softSkillsDictionary; }
    const Catalogue& languagesDictionary() const { return m_languagesDictionary; }

    /// Recomputes the dictionaries from the records and appends their values to the lists.
    void rebuildCatalogues();

    /// Takes the selected record out of the list and clears the selection; the records service is not told. Does
    /// nothing without a selection, or with one that is not in the list.
    void removeSelectedRecord();

Q_SIGNALS:
    void isLoadingChanged();
    void recordsAppended(qsizetype first, qsizetype count);
    void recordRemoved(qsizetype index);
    void selectedDBRecordChanged();
    void cataloguesRebuilt();

private:
    void load(RecordsService& service);
    void endLoading();

    bool m_isLoading = true;
    std::vector<DBRecordPointer> m_dbRecords;
    DBRecordPointer m_selectedDBRecord;
    QStringList m_techSkills;
    QStringList m_softSkills;
    QStringList m_languages;
    Catalogue m_knownTechSkills;
    Catalogue m_knownSoftSkills;
    Catalogue m_knownLanguages;
    Catalogue m_softSkillsDictionary;
    Catalogue m_techSkillsDictionary;
    Catalogue m_languagesDictionary;
};

} // namespace dorvantel
