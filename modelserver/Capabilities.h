// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/WireTypes.h"

#include <QString>

#include <optional>

namespace dorvantel {

/// What a model can do by the capabilities that the server lists, compared exactly and case by case. A model that lists
/// images does not count as a tool user, whatever else it lists. Without a list nothing is supported.
ModelCapabilities deriveCapabilities(const OllamaShowResponse& response);

/// The diagnostic line for the list that the server sent; none without a list. One line whatever the list holds.
std::optional<QString> capabilitiesLogLine(const OllamaShowResponse& response);

} // namespace dorvantel
