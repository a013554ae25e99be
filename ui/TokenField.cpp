// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenField.h"

#include "ui/TokenFieldCoordinator.h"

namespace dorvantel {

TokenField::TokenField(const QStringList& tokens, const QStringList& validValuesArray, QWidget* parent)
    : BoundTokenField(
          tokens,
          [&validValuesArray](const TokenBinding& binding) {
              return std::make_unique<TokenFieldCoordinator>(binding, validValuesArray);
          },
          parent) {}

} // namespace dorvantel
