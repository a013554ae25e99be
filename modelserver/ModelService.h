// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/OllamaChatMessage.h"
#include "modelserver/OllamaError.h"

#include <QFuture>
#include <QList>

#include <expected>
#include <optional>

namespace dorvantel {

template <typename Value>
using ModelResult = std::expected<Value, OllamaError>;

/// The language and embedding models, as the rest of the program is written against them. Lives on the UI thread and
/// is called there; calls return at once and run independently of each other.
///
/// The holder of a future that cancels it gives the call up: the request is aborted and the future never has a result.
/// When the service goes first, its unfinished futures end as cancelled. A call that cannot be sent may have its
/// result at once. Wait with `whenFinished` (platform/WhenFinished.h): its context may go before the future ends.
class ModelService {
public:
    virtual ~ModelService() = default;

    /// The model's reply to `messages`, as it came. Without `model` the chosen language model replies; without
    /// `temperature` the server's own applies.
    virtual QFuture<ModelResult<QString>> chat(const QList<OllamaChatMessage>& messages,
                                               const std::optional<QString>& model,
                                               const std::optional<double>& temperature) = 0;

    /// The vector of `text`, of whatever length the model yields. Without `model` the chosen embedding model is used.
    virtual QFuture<ModelResult<QList<double>>> generateEmbedding(const QString& text,
                                                                  const std::optional<QString>& model) = 0;
};

} // namespace dorvantel
