// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Store.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvantel::service {

/// How much of a summary, and of all texts together, a vector is made of, in bytes: far more than models read, and
/// little enough that one candidate does not hold up the others.
constexpr std::size_t longestEmbeddedSummary = 32 * 1024;
constexpr std::size_t longestEmbeddedText = 64 * 1024;

/// What a candidate's vector is made of: profession, summary and skills, the summary without the candidate's name and
/// e-mail. So neither they nor the gender nor the languages can move a ranking. A change of these texts needs a
/// migration that forgets the vectors made of the earlier ones.
std::string embeddingText(const Unembedded& candidate);

/// The vector scaled to unit length; nothing for one without a direction (empty, zero, not finite).
std::optional<std::vector<float>> unitVector(const std::vector<double>& vector);

/// Why there is no vector. `message` holds nothing of the text.
struct EmbeddingError {
    bool concernsText = false; ///< the server works but does not take this text; others may go through
    std::string message;
};

/// The first vector of a model server's answer, as it came.
std::expected<std::vector<double>, EmbeddingError> readVectorAnswer(const std::string& body);

/// Where a model server is: `http://host[:port][/prefix]`, or the same with https.
struct ModelServerAddress {
    std::string host;
    int port = 80;
    std::string prefix = {}; ///< without a trailing slash
    bool isSecure = false;   ///< over TLS, with a certificate that this machine trusts
};

/// Nothing for any other text.
std::optional<ModelServerAddress> parseModelServer(std::string_view url);

/// Asks a model server for vectors. One thread at a time, but for `cancel`.
class EmbeddingClient {
public:
    /// What an answer may take; beyond that it is given up.
    struct Limits {
        std::size_t bytes = std::size_t{16} * 1024 * 1024;         ///< of its body, unpacked
        std::chrono::milliseconds time = std::chrono::minutes(10); ///< from the call until all of it is there
    };

    EmbeddingClient(const ModelServerAddress& server, std::string model);
    EmbeddingClient(const ModelServerAddress& server, std::string model, const Limits& limits);
    ~EmbeddingClient();

    /// The server's vector as it came. Blocks until the server has answered or the time is over. Without the memory
    /// for it, or a thread, it throws.
    std::expected<std::vector<double>, EmbeddingError> embed(const std::string& text);

    /// Ends a call that runs, and every later one, at once. Any thread.
    void cancel();

private:
    class Connection;
    std::unique_ptr<Connection> m_connection;
    std::string m_path;
    std::string m_model;
    Limits m_limits;
};

} // namespace dorvantel::service
