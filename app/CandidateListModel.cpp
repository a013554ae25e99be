// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/CandidateListModel.h"

#include "data/Model.h"
#include "ui/Figures.h"

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {
constexpr int rowsBeforeCandidates = 2;
}

CandidateListModel::CandidateListModel(const Model& model, QObject* parent)
    : QAbstractListModel(parent)
    , m_model(model)
    , m_candidates(static_cast<int>(model.dbRecords().size())) {
    connect(&m_model, &Model::recordsAppended, this, [this](qsizetype first, qsizetype count) {
        const int row = rowsBeforeCandidates + static_cast<int>(first);
        beginInsertRows({}, row, row + static_cast<int>(count) - 1);
        m_candidates += static_cast<int>(count);
        endInsertRows();
    });
    connect(&m_model, &Model::recordRemoved, this, [this](qsizetype index) {
        const int row = rowsBeforeCandidates + static_cast<int>(index);
        m_removedRow = row;
        beginRemoveRows({}, row, row);
        --m_candidates;
        m_removedRow.reset();
        endRemoveRows();
    });
}

int CandidateListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rowsBeforeCandidates + m_candidates;
}

CandidateListModel::Kind CandidateListModel::kind(const QModelIndex& index) {
    switch (index.row()) {
    case 0:
        return Kind::Search;
    case 1:
        return Kind::Header;
    default:
        return Kind::Candidate;
    }
}

DBRecordPointer CandidateListModel::record(const QModelIndex& index) const {
    if (!index.isValid() || kind(index) != Kind::Candidate) {
        return nullptr;
    }
    int at = index.row() - rowsBeforeCandidates;
    if (m_removedRow && index.row() >= *m_removedRow) {
        if (index.row() == *m_removedRow) {
            return nullptr;
        }
        --at;
    }
    return m_model.dbRecords()[static_cast<std::size_t>(at)];
}

QModelIndex CandidateListModel::indexOf(const DBRecordPointer& record) const {
    if (!record) {
        return {};
    }
    const auto& records = m_model.dbRecords();
    const auto found = std::ranges::find_if(records, [&](const DBRecordPointer& other) { return *other == *record; });
    return found == records.end() ? QModelIndex()
                                  : index(rowsBeforeCandidates + static_cast<int>(found - records.begin()));
}

QVariant CandidateListModel::data(const QModelIndex& index, int role) const {
    if (role == KindRole) {
        return static_cast<int>(kind(index));
    }
    const DBRecordPointer candidate = record(index);
    switch (role) {
    case Qt::DisplayRole:
        return candidate ? candidate->name : kind(index) == Kind::Search ? u"Buscar"_s : u"Candidatos"_s;
    case Qt::AccessibleTextRole:
        return candidate ? candidate->name + u", "_s + candidate->profession : data(index, Qt::DisplayRole);
    case Qt::ToolTipRole:
        return candidate ? QVariant(candidate->email) : QVariant();
    case ProfessionRole:
        return candidate ? QVariant(candidate->profession) : QVariant();
    case FigureRole:
        return candidate ? QVariant(candidateFigure(candidate->jsonCVData.gender)) : QVariant();
    default:
        return {};
    }
}

Qt::ItemFlags CandidateListModel::flags(const QModelIndex& index) const {
    return kind(index) == Kind::Header ? Qt::NoItemFlags : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace dorvantel
