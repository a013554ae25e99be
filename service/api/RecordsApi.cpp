// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/RecordsApi.h"

#include "service/api/Answers.h"
#include "service/api/RequestBodies.h"
#include "service/api/Statement.h"

#include <array>
#include <charconv>

namespace dorvantel::service {

namespace {

constexpr std::string_view collection = "/curriculums";
constexpr std::string_view healthPath = "/health";
constexpr std::string_view fileSuffix = "/file";

constexpr std::array<Route, 6> allRoutes{{
    {"GET", "/curriculums", Operation::List},
    {"POST", "/curriculums", Operation::Insert},
    {"POST", "/curriculums/search", Operation::Search},
    {"GET", "/curriculums/KEY/file", Operation::FetchPDF},
    {"DELETE", "/curriculums/KEY", Operation::Delete},
    {"GET", "/health", Operation::Health},
}};

std::string percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const std::string_view digits = text.substr(std::min(i + 1, text.size()), 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (text[i] == '%' && error == std::errc() && end == digits.data() + 2) {
            out += static_cast<char>(byte);
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

HttpAnswer wrongMethod(std::string allow) {
    HttpAnswer answer = errorAnswer(405, "this address does not take this method");
    answer.allow = std::move(allow);
    return answer;
}

HttpAnswer badBody(const BodyError& error) {
    return errorAnswer(error.kind == BodyError::Kind::NotJSON ? 400 : 422, error.message);
}

HttpAnswer unknownKey() {
    return errorAnswer(404, "there is no record with this e-mail");
}

} // namespace

std::span<const Route> routes() {
    return allRoutes;
}

std::expected<RoutedOperation, HttpAnswer> route(std::string_view method, std::string_view target) {
    const std::string_view path = target.substr(0, target.find('?'));
    if (path == collection) {
        if (method == "GET") {
            return RoutedOperation{Operation::List};
        }
        if (method == "POST") {
            return RoutedOperation{Operation::Insert};
        }
        return std::unexpected(wrongMethod("GET, POST"));
    }
    if (path == healthPath) {
        if (method == "GET") {
            return RoutedOperation{Operation::Health};
        }
        return std::unexpected(wrongMethod("GET"));
    }
    if (!path.starts_with(std::string(collection) + "/")) {
        return std::unexpected(errorAnswer(404, "there is nothing at this address"));
    }
    std::string_view key = path.substr(collection.size() + 1);
    const bool isSearch = key == "search";
    const bool isFile = key.ends_with(fileSuffix);
    if (method == "DELETE") {
        return RoutedOperation{Operation::Delete, percentDecoded(key)};
    }
    if (method == "POST" && isSearch) {
        return RoutedOperation{Operation::Search};
    }
    if (method == "GET" && isFile) {
        key.remove_suffix(fileSuffix.size());
        return RoutedOperation{Operation::FetchPDF, percentDecoded(key)};
    }
    return std::unexpected(wrongMethod(isSearch ? "POST, DELETE" : isFile ? "GET, DELETE" : "DELETE"));
}

RecordsApi::RecordsApi(Store& store, std::function<void()> inserted)
    : m_store(store)
    , m_inserted(std::move(inserted)) {}

HttpAnswer RecordsApi::answer(const RoutedOperation& operation, HttpRequest& request) const {
    switch (operation.operation) {
    case Operation::List:
        return list();
    case Operation::Insert:
        return insert(request.body);
    case Operation::Search:
        return search(request.body);
    case Operation::FetchPDF:
        return fetchPDF(operation.key);
    case Operation::Delete:
        return remove(operation.key, request);
    case Operation::Health:
        break;
    }
    return health();
}

HttpAnswer RecordsApi::health() const {
    const auto status = m_store.status();
    if (!status) {
        return errorAnswer(status.error());
    }
    return {.status = 200, .body = healthJSON(*status)};
}

/// Reads a body and lets it go. The parser may need fourteen times as much memory as what it reads, so it is given one
/// large body at a time.
template <typename Read>
auto RecordsApi::inTurn(Read read, std::string& body) const -> decltype(read(body)) {
    constexpr std::size_t large = std::size_t{64} * 1024;
    std::unique_lock turn(m_largeBodies, std::defer_lock);
    if (body.size() > large) {
        turn.lock();
    }
    auto result = read(body);
    body = std::string();
    return result;
}

HttpAnswer RecordsApi::list() const {
    auto rows = m_store.run({});
    if (!rows) {
        return errorAnswer(rows.error());
    }
    return {.status = 200, .stream = listAnswer(std::move(*rows))};
}

HttpAnswer RecordsApi::insert(std::string& body) const {
    const auto record = inTurn(readInsertBody, body);
    if (!record) {
        return badBody(record.error());
    }
    if (const auto stored = m_store.insert(*record); !stored) {
        return errorAnswer(stored.error());
    }
    m_inserted();
    return {.status = 201, .body = recordJSON(*record)};
}

HttpAnswer RecordsApi::search(std::string& body) const {
    const auto sql = inTurn(readSearchBody, body);
    if (!sql) {
        return badBody(sql.error());
    }
    const auto plan = parseStatement(*sql);
    if (!plan) {
        return errorAnswer(400, statementErrorText(plan.error()));
    }
    auto rows = m_store.run(*plan);
    if (!rows) {
        return errorAnswer(rows.error());
    }
    return {.status = 200, .stream = searchAnswer(*sql, std::move(*rows))};
}

HttpAnswer RecordsApi::fetchPDF(std::string_view key) const {
    auto pdf = m_store.pdf(key);
    if (!pdf) {
        return errorAnswer(pdf.error());
    }
    if (!*pdf) {
        return unknownKey();
    }
    if (!(*pdf)->size) {
        return {.status = 200, .body = "{}"};
    }
    return {.status = 200, .stream = fileAnswer(m_store, (*pdf)->version, *(*pdf)->size)};
}

HttpAnswer RecordsApi::remove(std::string_view pathKey, HttpRequest& request) const {
    std::string key(pathKey);
    // The client puts the key into the path as it is, where a '?' or '%' changes what it says; its body is exact.
    if (request.hasBody && !request.body.empty()) {
        auto bodyKey = inTurn(readKeyBody, request.body);
        if (!bodyKey) {
            return badBody(bodyKey.error());
        }
        key = std::move(*bodyKey);
    }
    const auto removed = m_store.remove(key);
    if (!removed) {
        return errorAnswer(removed.error());
    }
    return *removed ? HttpAnswer{.status = 204} : unknownKey();
}

} // namespace dorvantel::service
