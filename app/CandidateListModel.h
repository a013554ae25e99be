// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"

#include <QAbstractListModel>

#include <optional>

namespace dorvantel {

class Model;

/// The rows of the sidebar: the way to the search screen, the header of the candidates, then one row per record of
/// `Model` in its order. Follows the model's changes row by row; holds nothing of its own.
class CandidateListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum class Kind { Search, Header, Candidate };
    enum Role { KindRole = Qt::UserRole, ProfessionRole, FigureRole };

    explicit CandidateListModel(const Model& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// True while views move their current row away from one that goes: what they choose then is nobody's choice.
    bool isRemoving() const { return m_removedRow.has_value(); }

    static Kind kind(const QModelIndex& index);
    /// Null for the rows that are no candidate, and for the row of a candidate that has just gone.
    DBRecordPointer record(const QModelIndex& index) const;
    QModelIndex indexOf(const DBRecordPointer& record) const; ///< by identity; invalid when it is not listed

private:
    const Model& m_model;
    int m_candidates = 0;            ///< as announced to the view
    std::optional<int> m_removedRow; ///< while views are told that it goes; the record is not in `Model` any more
};

} // namespace dorvantel
