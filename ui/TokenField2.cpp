// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenField2.h"

#include "ui/TokenField2Coordinator.h"

namespace dorvantel {

TokenField2::TokenField2(const QStringList& tokens, bool first, const QStringList& validValuesArray, QWidget* parent)
    : BoundTokenField(
          tokens,
          [&validValuesArray](const TokenBinding& binding) {
              return std::make_unique<TokenField2Coordinator>(binding, validValuesArray);
          },
          parent)
    , m_first(first) {}

} // namespace dorvantel
