// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "fuzz/PlainBody.h"
#include "platform/Utf8.h"
#include "service/api/RequestBodies.h"
#include "service/candidates/CVText.h"

#include <QByteArray>

#include <algorithm>
#include <array>

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

namespace {

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
    require(!plain.value.is_discarded(), "what is taken is JSON");
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
               const PlainBody& plain) {
    const bool isComparable = plain.isComparable;
    require(!read || !plain.value.is_discarded(), "what is taken is JSON");
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
    checkText(readSearchBody(once), plain.text("sql"), plain);
    once = body;
    checkText(readKeyBody(once), plain.value.is_string() ? std::optional(plain.value.get<std::string>()) : std::nullopt,
              plain);
    return 0;
}
