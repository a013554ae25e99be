// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/BoundTokenField.h"

namespace dorvantel {

/// The lenient token field: takes values of its catalogue in any case and stores the catalogue's spelling; without a
/// catalogue it takes everything. Writes to the owner's list on every addition and deletion. The rules are those of
/// TokenField2Coordinator.
class TokenField2 final : public BoundTokenField {
    Q_OBJECT

public:
    /// `first` is the owner's mark and means nothing to the field. The catalogue is taken as it is now; a field for a
    /// later one has to be made anew.
    TokenField2(const QStringList& tokens, bool first, const QStringList& validValuesArray, QWidget* parent = nullptr);

    bool first() const { return m_first; }

private:
    bool m_first;
};

} // namespace dorvantel
