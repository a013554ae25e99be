// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Store.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the service sees of HTTP. Only HttpServer and its ClientStream know the library that speaks it.
namespace dorvantel::service {

struct HttpRequest {
    std::string method;               ///< "GET" where the client sent "HEAD"
    std::string target;               ///< path and query as sent, still percent-encoded
    std::vector<std::string> hosts;   ///< the values of every Host header
    std::vector<std::string> origins; ///< the values of every Origin header
    std::optional<std::string> contentType;
    bool isEncoded = false; ///< a Content-Encoding header came
    bool hasBody = false;   ///< the headers announce one
    std::string body;       ///< empty while the headers are judged
};

/// An answer's body that is made while it is sent, so that its size costs no memory. One thread at a time.
class AnswerBody {
public:
    AnswerBody() = default;
    AnswerBody(const AnswerBody&) = delete;
    AnswerBody& operator=(const AnswerBody&) = delete;
    virtual ~AnswerBody() = default;

    /// Appends the next piece to `block`, which is empty; false when it was the last. An error cuts the connection:
    /// the status is long gone, and half an answer must not look whole.
    virtual Stored<bool> next(std::string& block) = 0;
};

struct HttpAnswer {
    int status = 200;
    std::string body = {};  ///< JSON; empty where `stream` is set or the status allows none
    std::string error = {}; ///< of an error: the sentence that its body carries
    std::shared_ptr<AnswerBody> stream = nullptr;
    std::string allow = {}; ///< the methods of the route, with 405
};

/// The answer of every error: `{"error": message}`.
HttpAnswer errorAnswer(int status, std::string_view message);

/// The same for what the store reports.
HttpAnswer errorAnswer(const StoreError& error);

} // namespace dorvantel::service
