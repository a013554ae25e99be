// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/Http.h"

#include <expected>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// Which of the operations a request asks for.
enum class Operation { List, Insert, Search, FetchPDF, Delete, Health };

struct Route {
    std::string_view method;
    std::string_view pattern; ///< KEY stands for an e-mail
    Operation operation;
};

/// All routes, for the documentation and its test.
std::span<const Route> routes();

struct RoutedOperation {
    Operation operation = Operation::List;
    std::string key = {}; ///< percent-decoded; with FetchPDF and Delete
};

/// Finds the operation of a method and a target; a refusal is 404 or 405. A key may hold slashes: clients leave them as
/// they are.
std::expected<RoutedOperation, HttpAnswer> route(std::string_view method, std::string_view target);

/// Answers the requests that the gate let through. Any thread.
class RecordsApi {
public:
    /// `inserted` is called after every insert.
    RecordsApi(Store& store, std::function<void()> inserted);

    /// `request` loses its body.
    HttpAnswer answer(const RoutedOperation& operation, HttpRequest& request) const;

private:
    HttpAnswer health() const;
    HttpAnswer list() const;
    HttpAnswer insert(std::string& body) const;
    HttpAnswer search(std::string& body) const;
    HttpAnswer fetchPDF(std::string_view key) const;
    HttpAnswer remove(std::string_view pathKey, HttpRequest& request) const;
    template <typename Read>
    auto inTurn(Read read, std::string& body) const -> decltype(read(body));

    Store& m_store;
    std::function<void()> m_inserted;
    mutable std::mutex m_largeBodies; ///< whoever holds it reads one
};

} // namespace dorvantel::service
