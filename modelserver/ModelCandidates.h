// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/WireTypes.h"

#include <QList>

namespace dorvantel {

/// The models that turn text into vectors, in their order.
QList<OllamaModel> embeddingCandidates(const QList<OllamaModel>& models);

/// The models that write text and do nothing else, in their order. A model of which nothing is known counts as one.
QList<OllamaModel> languageModelCandidates(const QList<OllamaModel>& models);

} // namespace dorvantel
