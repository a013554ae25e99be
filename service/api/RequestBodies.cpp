// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/RequestBodies.h"

#include "service/api/Base64.h"
#include "service/candidates/CVText.h"
#include "service/candidates/JsonText.h"

#include <algorithm>
#include <array>
#include <optional>

#include <simdjson.h>

namespace dorvantel::service {

namespace {

/// The texts of a record with their keys.
constexpr std::array<std::pair<std::string_view, std::string Record::*>, 6> recordTexts{{
    {"name", &Record::name},
    {"profession", &Record::profession},
    {"email", &Record::email},
    {"summarizedText", &Record::summarizedText},
    {"invitationMail", &Record::invitationMail},
    {"jsonCVData", &Record::jsonCVData},
}};

constexpr std::string_view fileKey = "file";
constexpr std::string_view sqlKey = "sql";

BodyError notText(std::string_view key) {
    return {BodyError::Kind::NotValid, "\"" + std::string(key) + "\" must be a text"};
}

/// Parses the whole body, which must be a value of type `Value`.
template <typename Value>
std::expected<Value, BodyError> parse(simdjson::dom::parser& parser, std::string& body, const char* what) {
    body.reserve(body.size() + simdjson::SIMDJSON_PADDING); // or the parser would copy it
    simdjson::dom::element document;
    if (const auto error = parser.parse(body).get(document); error != simdjson::SUCCESS) {
        return std::unexpected(BodyError{BodyError::Kind::NotJSON,
                                         std::string("the body is not JSON: ") + simdjson::error_message(error)});
    }
    Value value;
    if (document.get(value) != simdjson::SUCCESS) {
        return std::unexpected(BodyError{BodyError::Kind::NotValid, std::string("the body must be ") + what});
    }
    return value;
}

/// Sets `text` from a member; null leaves it as it is.
std::expected<void, BodyError> readText(const simdjson::dom::key_value_pair& member,
                                        std::optional<std::string_view>& text) {
    std::string_view found;
    if (member.value.is_null()) {
        return {};
    }
    if (member.value.get(found) != simdjson::SUCCESS) {
        return std::unexpected(notText(member.key));
    }
    text = found;
    return {};
}

std::expected<Record, BodyError> checked(Record record) {
    if (record.email.empty()) {
        return std::unexpected(
            BodyError{BodyError::Kind::NotValid, "\"email\" is the record's key and must not be empty"});
    }
    auto cvData = readCVText(record.jsonCVData);
    if (!cvData) {
        return std::unexpected(
            BodyError{BodyError::Kind::NotValid, "\"jsonCVData\" cannot be read: " + cvData.error()});
    }
    record.cvData = std::move(*cvData);
    return record;
}

} // namespace

std::expected<Record, BodyError> readInsertBody(std::string& body) {
    simdjson::dom::parser parser;
    const auto object = parse<simdjson::dom::object>(parser, body, "a JSON object");
    if (!object) {
        return std::unexpected(object.error());
    }
    std::array<std::optional<std::string_view>, recordTexts.size()> texts;
    std::optional<std::string_view> file;
    for (const simdjson::dom::key_value_pair member : *object) {
        const auto known = std::ranges::find(recordTexts, member.key, [](const auto& text) { return text.first; });
        const auto index = static_cast<std::size_t>(known - recordTexts.begin());
        if (index == texts.size() && member.key != fileKey) {
            continue;
        }
        if (const auto read = readText(member, index < texts.size() ? texts[index] : file); !read) {
            return std::unexpected(read.error());
        }
    }
    Record record;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!texts[i]) {
            return std::unexpected(notText(recordTexts[i].first));
        }
        record.*recordTexts[i].second = *texts[i];
    }
    if (file) {
        record.file = decodedBase64(*file);
        if (!record.file) {
            return std::unexpected(BodyError{BodyError::Kind::NotValid, "\"file\" is not base64"});
        }
    }
    return checked(std::move(record));
}

std::expected<std::string, BodyError> readSearchBody(std::string& body) {
    simdjson::dom::parser parser;
    const auto object = parse<simdjson::dom::object>(parser, body, "a JSON object");
    if (!object) {
        return std::unexpected(object.error());
    }
    std::optional<std::string_view> sql;
    for (const simdjson::dom::key_value_pair member : *object) {
        if (member.key != sqlKey) {
            continue;
        }
        if (const auto read = readText(member, sql); !read) {
            return std::unexpected(read.error());
        }
    }
    if (!sql) {
        return std::unexpected(notText(sqlKey));
    }
    return std::string(*sql);
}

std::expected<std::string, BodyError> readKeyBody(std::string& body) {
    simdjson::dom::parser parser;
    const auto key = parse<std::string_view>(parser, body, "the e-mail as a JSON string");
    if (!key) {
        return std::unexpected(key.error());
    }
    return std::string(*key);
}

std::string recordJSON(const Record& record) {
    std::string out = "{";
    for (const auto& [key, text] : recordTexts) {
        appendJSONField(out, key, record.*text);
        out += ',';
    }
    if (record.file) {
        out += "\"file\":\"";
        appendBase64(out, *record.file);
        out += '"';
    } else {
        out.pop_back();
    }
    return out + "}";
}

} // namespace dorvantel::service
