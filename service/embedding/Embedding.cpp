// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/Embedding.h"

#include "service/candidates/JsonText.h"
#include "service/embedding/NameRemoval.h"
#include "service/http/Gate.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <httplib.h>
#include <simdjson.h>

namespace dorvantel::service {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A model that has to be loaded first may take minutes.
constexpr auto answerTime = 5min;
constexpr auto connectTime = 10s;

/// Ends with a whole word, so that no name is cut to something that is none; at least with a whole character.
std::string_view beginningOf(std::string_view text, std::size_t longest) {
    if (text.size() <= longest) {
        return text;
    }
    std::size_t end = text.find_last_of(" \t\r\n", longest);
    if (end == std::string_view::npos) {
        constexpr unsigned char continuationBits = 0xC0;
        constexpr unsigned char continuation = 0x80;
        end = longest;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & continuationBits) == continuation) {
            --end;
        }
    }
    return text.substr(0, end);
}

} // namespace

std::string embeddingText(const Unembedded& candidate) {
    const std::string_view summary = beginningOf(candidate.summarizedText, longestEmbeddedSummary);
    std::string text(beginningOf(candidate.profession, longestEmbeddedSummary));
    text += "\n" + withoutNameAndEmail(summary, candidate.name, candidate.email);
    for (const auto* const list : {&candidate.cvData.techSkills, &candidate.cvData.softSkills}) {
        for (const std::string& value : *list) {
            text += "\n" + value;
        }
    }
    return std::string(beginningOf(text, longestEmbeddedText));
}

std::expected<std::vector<double>, EmbeddingError> readVectorAnswer(const std::string& body) {
    const auto unusable = std::unexpected(EmbeddingError{true, "the model server's answer holds no vector"});
    simdjson::dom::parser parser;
    simdjson::dom::array numbers;
    if (parser.parse(body)["embeddings"].at(0).get(numbers) != simdjson::SUCCESS) {
        return unusable;
    }
    std::vector<double> vector;
    for (const simdjson::dom::element element : numbers) {
        double number = 0;
        if (element.get(number) != simdjson::SUCCESS) {
            return unusable;
        }
        vector.push_back(number);
    }
    return vector;
}

std::optional<std::vector<float>> unitVector(const std::vector<double>& vector) {
    double largest = 0;
    for (const double number : vector) {
        largest = std::max(largest, std::abs(number));
        if (!std::isfinite(number)) {
            return std::nullopt;
        }
    }
    if (largest == 0) {
        return std::nullopt;
    }
    // Scaled by the largest first, so that no square leaves the range of a double.
    double squares = 0;
    for (const double number : vector) {
        squares += (number / largest) * (number / largest);
    }
    const double length = std::sqrt(squares);
    std::vector<float> unit;
    unit.reserve(vector.size());
    for (const double number : vector) {
        unit.push_back(static_cast<float>(number / largest / length));
    }
    return unit;
}

std::optional<ModelServerAddress> parseModelServer(std::string_view url) {
    constexpr std::string_view plainScheme = "http://";
    constexpr std::string_view secureScheme = "https://";
    const bool isSecure = url.starts_with(secureScheme);
    if (!isSecure && !url.starts_with(plainScheme)) {
        return std::nullopt;
    }
    url.remove_prefix(isSecure ? secureScheme.size() : plainScheme.size());
    const std::size_t slash = std::min(url.find('/'), url.size());
    const auto server = parseHostAndPort(url.substr(0, slash));
    if (!server || server->host.find_first_of(" @?#") != std::string::npos) {
        return std::nullopt;
    }
    std::string prefix(url.substr(slash));
    while (prefix.ends_with('/')) {
        prefix.pop_back();
    }
    return ModelServerAddress{server->host, server->port.value_or(isSecure ? 443 : 80), prefix, isSecure};
}

class EmbeddingClient::Connection {
public:
    explicit Connection(const ModelServerAddress& server)
        : http(server.isSecure ? std::make_unique<httplib::SSLClient>(server.host, server.port)
                               : std::make_unique<httplib::ClientImpl>(server.host, server.port)) {
        http->set_connection_timeout(connectTime);
        http->set_read_timeout(answerTime);
        http->set_keep_alive(true);
    }

    /// Ends the call that is under way. Any thread.
    void stop() const { http->stop(); }

    /// The library bounds each wait for bytes and leaves the body to us, but takes a head without end as long as
    /// something comes. So whatever is under way at `end` is cut from outside.
    httplib::Result sendUntil(Clock::time_point end, const httplib::Request& request) const {
        const std::jthread watch([this, end](const std::stop_token& isOver) {
            std::mutex mutex;
            std::condition_variable_any woken;
            std::unique_lock lock(mutex);
            const auto never = [] { return false; };
            woken.wait_until(lock, isOver, end, never);
            // A call that is only about to connect does not notice that it was cut, so it is told until it has.
            while (!isOver.stop_requested()) {
                stop();
                woken.wait_for(lock, isOver, 20ms, never);
            }
        });
        return http->send(request);
    }

    std::unique_ptr<httplib::ClientImpl> http;
    std::atomic<bool> isCancelled = false;
};

EmbeddingClient::EmbeddingClient(const ModelServerAddress& server, std::string model)
    : EmbeddingClient(server, std::move(model), Limits{}) {}

EmbeddingClient::EmbeddingClient(const ModelServerAddress& server, std::string model, const Limits& limits)
    : m_connection(std::make_unique<Connection>(server))
    , m_path(server.prefix + "/api/embed")
    , m_model(std::move(model))
    , m_limits(limits) {}

EmbeddingClient::~EmbeddingClient() = default;

std::expected<std::vector<double>, EmbeddingError> EmbeddingClient::embed(const std::string& text) {
    httplib::Request request;
    request.method = "POST";
    request.path = m_path;
    request.set_header("Content-Type", "application/json");
    request.body = "{";
    appendJSONField(request.body, "model", m_model);
    request.body += ',';
    appendJSONField(request.body, "input", text);
    request.body += '}';

    std::string answer;
    bool isTooLarge = false;
    request.content_receiver = [&](const char* data, std::size_t size, std::uint64_t, std::uint64_t) {
        isTooLarge = answer.size() + size > m_limits.bytes;
        if (!isTooLarge) {
            answer.append(data, size);
        }
        return !isTooLarge;
    };
    if (m_connection->isCancelled) {
        return std::unexpected(EmbeddingError{false, "the service stops"});
    }
    const Clock::time_point end = Clock::now() + m_limits.time;
    const auto result = m_connection->sendUntil(end, request);
    if (isTooLarge) {
        return std::unexpected(EmbeddingError{true, "the model server's answer is too large"});
    }
    if (Clock::now() > end) {
        return std::unexpected(EmbeddingError{false, "the model server's answer takes too long"});
    }
    if (!result) {
        return std::unexpected(EmbeddingError{false, "the model server does not answer: " + to_string(result.error())});
    }
    if (result->status != 200) {
        const bool concernsText = result->status == 400 || result->status == 413 || result->status == 422;
        return std::unexpected(
            EmbeddingError{concernsText, "the model server answers with status " + std::to_string(result->status)});
    }
    return readVectorAnswer(answer);
}

void EmbeddingClient::cancel() {
    m_connection->isCancelled = true;
    m_connection->stop();
}

} // namespace dorvantel::service
