// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace dorvantel::test {

inline HttpRequest requestTo(const QString& url) {
    HttpRequest request;
    request.url = QUrl(url);
    return request;
}

struct NetworkHttpSessionTest : testing::Test {
    NetworkHttpSession session;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    std::optional<HttpOutcome> outcome;

    void get(const QString& url) {
        session.send(requestTo(url), context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    }
    void post(const QString& url) {
        HttpRequest request = requestTo(url);
        request.method = HttpRequest::Method::Post;
        request.body = "{}";
        outcome.reset();
        session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    }
};

} // namespace dorvantel::test
