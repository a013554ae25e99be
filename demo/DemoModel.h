// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace dorvantel {

struct DemoRequest {
    std::string method; ///< "GET", "POST", …
    std::string path;   ///< without the query
    std::string body;
    std::string host;   ///< the header, empty when it was not sent
    std::string origin; ///< the header, empty when it was not sent
};

struct DemoReply {
    int status = 200;
    std::string contentType;
    std::string body;
    bool streamed = false; ///< sent in chunks, one JSON object a line

    bool operator==(const DemoReply&) const = default;
};

inline constexpr const char* demoTextModel = "demo-texto:latest";
inline constexpr const char* demoEmbeddingModel = "demo-vectores:latest";
inline constexpr const char* demoNotice =
    "dorvantel-demo-model is running. It is a stand-in for trying out and testing "
    "Dorvantel and no language model: it answers by rules and word lists.";

/// The answer to a request, in the shapes and error texts of a real model server. Never throws, whatever the request
/// holds; keeps no state; any thread. A Host or Origin header of another machine gets an empty 403.
DemoReply demoAnswer(const DemoRequest& request);

} // namespace dorvantel
