// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "platform/Utf8.h"
#include "service/CVText.h"
#include "service/RequestBodies.h"

#include <QByteArray>

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

using namespace dorvantel::fuzz;
using namespace dorvantel::service;
using nlohmann::json;

namespace {

/// A body read the plain way. Where both readers may well differ there is none: on numbers that are too long for one of
/// them, on a mark of the encoding, and on a key that comes twice.
struct PlainBody {
    json value;
    bool isComparable = true;

    explicit PlainBody(std::string_view body) {
        std::size_t keys = 0;
        const auto countKeys = [&keys](int depth, json::parse_event_t event, json&) {
            keys += depth == 1 && event == json::parse_event_t::key ? 1 : 0;
            return true;
        };
        // The library takes a NUL for the end of the text. JSON has none anywhere.
        value = body.find('\0') == body.npos ? json::parse(body, countKeys, false) : json(json::value_t::discarded);
        std::size_t run = 0;
        std::size_t longest = 0;
        for (const char c : body) {
            run = c >= '0' && c <= '9' ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        isComparable = longest < 19 && !body.starts_with("\xEF\xBB\xBF") &&
                       !(value.is_discarded() && body.find_first_of("eE") != body.npos) &&
                       !(value.is_object() && value.size() != keys);
    }

    /// A member's text, or none.
    std::optional<std::string> text(const char* key) const {
        const auto found = value.find(key);
        return found != value.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
    }
};

constexpr std::array<const char*, 6> textKeys{"name",           "profession",     "email",
                                              "summarizedText", "invitationMail", "jsonCVData"};

bool isPlainRecord(const PlainBody& plain) {
    const auto file = plain.value.find("file");
    const bool hasFile = file != plain.value.end() && !file->is_null();
    const QByteArray encoded = QByteArray::fromStdString(plain.text("file").value_or("?"));
    const bool isFile =
        encoded.size() % 4 == 0 && QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    return std::ranges::all_of(textKeys, [&plain](const char* key) { return plain.text(key).has_value(); }) &&
           plain.text("email") != "" && readCVText(*plain.text("jsonCVData")) && (!hasFile || isFile);
}

void checkRecord(std::string body, const PlainBody& plain) {
    const auto record = readInsertBody(body);
    require(!plain.isComparable || record.has_value() == isPlainRecord(plain), "a record is taken by what it says");
    if (!record) {
        require(!record.error().message.empty(), "a refusal says why");
        require(!plain.isComparable || (record.error().kind == BodyError::Kind::NotJSON) == plain.value.is_discarded(),
                "a refusal says whether it was JSON");
        return;
    }
    require(!record->email.empty(), "a record has a key");
    require(!plain.isComparable ||
                (record->name == plain.text("name") && record->email == plain.text("email") &&
                 record->invitationMail == plain.text("invitationMail") &&
                 record->summarizedText == plain.text("summarizedText") &&
                 record->profession == plain.text("profession") && record->jsonCVData == plain.text("jsonCVData")),
            "a record holds what the body says");
    std::string again = recordJSON(*record);
    const auto second = readInsertBody(again);
    require(second && *second == *record, "a record reads back as it was");
}

/// A text that was read is the one that stands in the body, and UTF-8.
void checkText(const std::expected<std::string, BodyError>& read, const std::optional<std::string>& expected,
               bool isComparable) {
    require(!isComparable || read.has_value() == expected.has_value(), "a text is taken where one stands");
    require(!isComparable || !read || *read == *expected, "a text is taken as it stands");
    require(!read || dorvantel::isUtf8(QByteArrayView(*read)), "a text is UTF-8");
}

} // namespace

/// The bodies of all routes, held against another reader of JSON.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string body(textOf(data, size));
    const PlainBody plain(body);
    checkRecord(body, plain);
    std::string once = body;
    checkText(readSearchBody(once), plain.text("sql"), plain.isComparable);
    once = body;
    checkText(readKeyBody(once), plain.value.is_string() ? std::optional(plain.value.get<std::string>()) : std::nullopt,
              plain.isComparable);
    return 0;
}
