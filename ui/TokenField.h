// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/BoundTokenField.h"

namespace dorvantel {

/// The strict token field: takes only exact members of its catalogue. Writes to the owner's list when tokens are let
/// in, after the Backspace key, and when editing ends. The rules are those of TokenFieldCoordinator.
class TokenField final : public BoundTokenField {
    Q_OBJECT

public:
    TokenField(const QStringList& tokens, const QStringList& validValuesArray, QWidget* parent = nullptr);
};

} // namespace dorvantel
