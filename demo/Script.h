// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>
#include <expected>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace dorvantel {

/// How one request is answered. What is not set stays as the stand-in would answer by itself.
struct ScriptedStep {
    enum class Way {
        Whole,     ///< the answer, complete
        Stall,     ///< nothing, for as long as the client waits
        Cut,       ///< the connection closes without a byte
        CutInBody, ///< the header announces the whole body, half of it comes, the connection closes
    };
    Way way = Way::Whole;
    std::chrono::milliseconds delay{0};
    std::optional<int> status;
    std::optional<std::string> contentType;
    std::optional<std::string> body;
    std::size_t chunkBytes = 0; ///< sent in chunks of this size when not 0
    std::chrono::milliseconds chunkDelay{0};
};

/// What a stand-in under test does instead of answering by itself: for each route ("POST /api/chat") steps that are
/// used one after another, the last one for good. Any thread.
class Script {
public:
    /// From the JSON text of a script (docs/demo-model.md); files in it are found from `folder`. The error says what
    /// is wrong, and where.
    static std::expected<Script, QString> parse(const QByteArray& json, const QString& folder);
    static std::expected<Script, QString> load(const QString& file);

    Script() = default;
    Script(Script&& other) noexcept
        : m_routes(std::move(other.m_routes)) {}

    /// The step for this request, or nothing for a route without a script.
    std::optional<ScriptedStep> next(const std::string& method, const std::string& path);

private:
    struct RouteSteps {
        std::vector<ScriptedStep> steps; ///< never empty
        std::size_t used = 0;
    };
    std::mutex m_mutex;
    std::map<std::string, RouteSteps> m_routes;
};

} // namespace dorvantel
