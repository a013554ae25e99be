// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModel.h"

#include "demo/ChatAnswer.h"
#include "demo/DemoModelList.h"
#include "demo/Embedding.h"

#include <nlohmann/json.hpp>

#include <QDateTime>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <variant>

namespace dorvantel {

namespace {

using Json = nlohmann::ordered_json;
using Clock = std::chrono::steady_clock;

std::string dumped(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

DemoReply jsonReply(const Json& value, int status = 200) {
    return {status, "application/json; charset=utf-8", dumped(value), false};
}

DemoReply errorReply(int status, const std::string& text) {
    return jsonReply({{"error", text}}, status);
}

DemoReply modelNotFound(const std::string& name) {
    return errorReply(404, "model '" + name + "' not found");
}

std::string now() {
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toStdString();
}

std::int64_t nanosecondsSince(Clock::time_point start) {
    return std::max<std::int64_t>(1, std::chrono::nanoseconds(Clock::now() - start).count());
}

// About as many as a language model would count.
std::size_t tokenCount(std::string_view text) {
    constexpr std::size_t bytesPerToken = 4;
    return text.size() / bytesPerToken + 1;
}

std::string parseErrorText(const std::string& body, std::size_t byte) {
    if (byte == 0 || byte > body.size()) {
        return "unexpected EOF";
    }
    return std::string("invalid character '") + body[byte - 1] + "' looking for beginning of value";
}

// The body as a JSON object, or the reply that says why it is none.
std::variant<Json, DemoReply> parsedBody(const std::string& body) {
    if (body.find_first_not_of(" \t\r\n") == std::string::npos) {
        return errorReply(400, "missing request body");
    }
    try {
        Json value = Json::parse(body);
        if (!value.is_object()) {
            return errorReply(400, "json: cannot unmarshal " + std::string(value.type_name()) +
                                       " into Go value of type api.Request");
        }
        return value;
    } catch (const Json::parse_error& error) {
        return errorReply(400, parseErrorText(body, error.byte));
    }
}

std::optional<std::string> textAt(const Json& object, const char* key) {
    const auto value = object.find(key);
    if (value == object.end() || value->is_null()) {
        return std::string();
    }
    return value->is_string() ? std::optional(value->get<std::string>()) : std::nullopt;
}

DemoReply wrongType(const char* field, const char* type) {
    return errorReply(400,
                      std::string("json: cannot unmarshal value into Go struct field ") + field + " of type " + type);
}

DemoReply showAnswer(const Json& request) {
    const std::optional<std::string> model = textAt(request, "model");
    const std::optional<std::string> name = textAt(request, "name");
    if (!model || !name) {
        return wrongType("ShowRequest.model", "string");
    }
    const std::string& wanted = model->empty() ? *name : *model;
    if (wanted.empty()) {
        return errorReply(400, "model is required");
    }
    const DemoModelEntry* entry = findDemoModel(wanted);
    return entry ? jsonReply(entry->show()) : modelNotFound(withTag(wanted));
}

// The text of the last thing the user said; nothing when a message is not as it should be.
std::optional<std::string> lastUserMessage(const Json& messages) {
    std::string last;
    for (const Json& message : messages) {
        const std::optional<std::string> role = message.is_object() ? textAt(message, "role") : std::nullopt;
        const std::optional<std::string> content = message.is_object() ? textAt(message, "content") : std::nullopt;
        if (!role || !content) {
            return std::nullopt;
        }
        if (*role == "user") {
            last = *content;
        }
    }
    return last;
}

Json chatHead(const std::string& model, const std::string& content) {
    return {{"model", model}, {"created_at", now()}, {"message", {{"role", "assistant"}, {"content", content}}}};
}

DemoReply loadAnswer(const Json& request, const std::string& model) {
    Json answer = chatHead(model, "");
    const auto keepAlive = request.find("keep_alive");
    const bool unload = keepAlive != request.end() && keepAlive->is_number() && keepAlive->get<double>() == 0;
    answer["done"] = true;
    answer["done_reason"] = unload ? "unload" : "load";
    return jsonReply(answer);
}

// The same content as a stream of lines: the text in pieces, then an empty piece with the figures.
DemoReply streamed(const std::string& model, const std::string& content, const Json& figures) {
    constexpr qsizetype pieceSize = 40;
    const QString text = QString::fromStdString(content);
    std::string lines;
    for (qsizetype i = 0; i < text.size();) {
        qsizetype size = std::min(pieceSize, text.size() - i);
        if (i + size < text.size() && text[i + size].isLowSurrogate()) {
            ++size;
        }
        Json piece = chatHead(model, text.mid(i, size).toStdString());
        piece["done"] = false;
        lines += dumped(piece) + "\n";
        i += size;
    }
    Json last = chatHead(model, "");
    last.update(figures);
    return {200, "application/x-ndjson", lines + dumped(last) + "\n", true};
}

DemoReply chatAnswerTo(const Json& request) {
    const Clock::time_point start = Clock::now();
    const std::optional<std::string> model = textAt(request, "model");
    if (!model) {
        return wrongType("ChatRequest.model", "string");
    }
    if (model->empty()) {
        return errorReply(400, "model is required");
    }
    const DemoModelEntry* entry = findDemoModel(*model);
    if (!entry) {
        return modelNotFound(*model);
    }
    if (entry->makesVectors) {
        return errorReply(400, "\"" + std::string(entry->name) + "\" does not support chat");
    }
    const auto think = request.find("think");
    if (think != request.end() && *think == true) {
        return errorReply(400, "\"" + std::string(entry->name) + "\" does not support thinking");
    }
    const auto messages = request.find("messages");
    if (messages == request.end() || messages->is_null() || (messages->is_array() && messages->empty())) {
        return loadAnswer(request, *model);
    }
    const std::optional<std::string> prompt = messages->is_array() ? lastUserMessage(*messages) : std::nullopt;
    if (!prompt) {
        return wrongType("ChatRequest.messages", "[]api.Message");
    }
    const std::string content = chatAnswer(QString::fromStdString(*prompt)).toStdString();
    const std::int64_t elapsed = nanosecondsSince(start);
    const Json figures = {{"done", true},
                          {"done_reason", "stop"},
                          {"total_duration", elapsed},
                          {"load_duration", 1},
                          {"prompt_eval_count", tokenCount(*prompt)},
                          {"prompt_eval_duration", std::max<std::int64_t>(1, elapsed / 2)},
                          {"eval_count", tokenCount(content)},
                          {"eval_duration", std::max<std::int64_t>(1, elapsed / 2)}};
    const auto stream = request.find("stream");
    if (stream == request.end() || *stream != false) {
        return streamed(*model, content, figures);
    }
    Json answer = chatHead(*model, content);
    answer.update(figures);
    return jsonReply(answer);
}

// The input as a list of texts; nothing when it is neither a text nor a list of texts.
std::optional<std::vector<std::string>> inputTexts(const Json& request) {
    const auto input = request.find("input");
    if (input == request.end() || input->is_null()) {
        return std::vector<std::string>();
    }
    if (input->is_string()) {
        const auto text = input->get<std::string>();
        return text.empty() ? std::vector<std::string>() : std::vector{text};
    }
    if (!input->is_array() || !std::ranges::all_of(*input, [](const Json& value) { return value.is_string(); })) {
        return std::nullopt;
    }
    return input->get<std::vector<std::string>>();
}

// The shortest digits that read back as the same 32-bit value, as real servers write them.
void appendVector(std::string& out, const std::vector<float>& values) {
    std::array<char, 32> digits{};
    out += '[';
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) {
            out += ',';
        }
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), values[i]).ptr;
        out.append(digits.data(), end);
    }
    out += ']';
}

DemoReply embedAnswer(const Json& request) {
    const Clock::time_point start = Clock::now();
    const std::optional<std::string> model = textAt(request, "model");
    if (!model) {
        return wrongType("EmbedRequest.model", "string");
    }
    const std::optional<std::vector<std::string>> texts = inputTexts(request);
    if (!texts) {
        return errorReply(400, "invalid input type");
    }
    const DemoModelEntry* entry = findDemoModel(*model);
    if (!entry) {
        return modelNotFound(*model);
    }
    if (!entry->makesVectors) {
        return errorReply(501, "This server does not support embeddings. Start it with `--embeddings`");
    }
    if (texts->empty()) {
        return jsonReply({{"model", *model}, {"embeddings", Json::array()}});
    }
    std::string body = "{\"model\":" + dumped(*model) + ",\"embeddings\":[";
    std::size_t tokens = 0;
    for (const std::string& text : *texts) {
        body += tokens > 0 ? "," : "";
        appendVector(body, embedding(QString::fromStdString(text)));
        tokens += tokenCount(text);
    }
    body += "],\"total_duration\":" + std::to_string(nanosecondsSince(start)) +
            ",\"load_duration\":1,\"prompt_eval_count\":" + std::to_string(tokens) + "}";
    return {200, "application/json; charset=utf-8", body, false};
}

// Without the port; "[::1]" keeps its brackets.
std::string_view hostName(std::string_view host) {
    const std::size_t colon = host.rfind(':');
    const std::size_t bracket = host.rfind(']');
    return colon == host.npos || (bracket != host.npos && colon < bracket) ? host : host.substr(0, colon);
}

bool isOwnHost(std::string_view host) {
    const std::string_view name = hostName(host);
    const bool digitsOnly = !name.empty() && name.find_first_not_of("0123456789.") == name.npos;
    return name.empty() || name == "localhost" || name.ends_with(".localhost") || name.starts_with('[') || digitsOnly;
}

bool isForeign(const DemoRequest& request) {
    if (!isOwnHost(request.host)) {
        return true;
    }
    const std::size_t scheme = request.origin.find("://");
    if (request.origin.empty() || scheme == std::string::npos) {
        return false;
    }
    const std::string_view host = hostName(std::string_view(request.origin).substr(scheme + 3));
    return host != "localhost" && host != "127.0.0.1" && host != "[::1]" && host != "0.0.0.0";
}

struct Route {
    std::string_view method;
    std::string_view path;
    DemoReply (*answer)(const DemoRequest&);
};

template <DemoReply (*answer)(const Json&)>
DemoReply withBody(const DemoRequest& request) {
    const std::variant<Json, DemoReply> body = parsedBody(request.body);
    return std::holds_alternative<DemoReply>(body) ? std::get<DemoReply>(body) : answer(std::get<Json>(body));
}

DemoReply rootAnswer(const DemoRequest&) {
    return {200, "text/plain; charset=utf-8", demoNotice, false};
}

DemoReply tagsAnswer(const DemoRequest&) {
    return jsonReply(demoTags());
}

DemoReply versionAnswer(const DemoRequest&) {
    return jsonReply({{"version", "0.0.0-dorvantel-demo"}});
}

constexpr std::array<Route, 6> routes = {{
    {"GET", "/", rootAnswer},
    {"GET", "/api/tags", tagsAnswer},
    {"GET", "/api/version", versionAnswer},
    {"POST", "/api/show", withBody<showAnswer>},
    {"POST", "/api/chat", withBody<chatAnswerTo>},
    {"POST", "/api/embed", withBody<embedAnswer>},
}};

} // namespace

DemoReply demoAnswer(const DemoRequest& request) {
    if (isForeign(request)) {
        return {403, "", "", false};
    }
    const std::string_view method = request.method == "HEAD" ? "GET" : std::string_view(request.method);
    const auto route = std::ranges::find(routes, std::string_view(request.path), &Route::path);
    if (route == routes.end()) {
        return {404, "text/plain", "404 page not found", false};
    }
    if (route->method != method) {
        return {405, "text/plain", "405 method not allowed", false};
    }
    return route->answer(request);
}

} // namespace dorvantel
