// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Answers.h"

#include "data/ExtractedInfoRepresentation.h"
#include "platform/JsonDocument.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <algorithm>
#include <optional>

namespace dorvantel {

using namespace Qt::StringLiterals;
using nlohmann::json;

namespace {

QString withoutFences(const QString& answer) {
    QString text = trimmed(answer);
    if (text.startsWith("```json"_L1)) {
        text.remove(0, 7);
    }
    if (text.startsWith("```"_L1)) {
        text.remove(0, 3);
    }
    if (text.endsWith("```"_L1)) {
        text.chop(3);
    }
    return trimmed(text);
}

/// The text under `key`; `otherwise` when there is none, or `value` is no object at all.
QString textAt(const json& value, const char* key, const QString& otherwise = {}) {
    const auto found = value.find(key);
    return found != value.end() && found->is_string() ? QString::fromStdString(found->get_ref<const std::string&>())
                                                      : otherwise;
}

/// All or nothing: one element that is no text, and the list is not believed.
QStringList textsAt(const json& object, const char* key) {
    const auto found = object.find(key);
    const auto isText = [](const json& element) { return element.is_string(); };
    if (found == object.end() || !found->is_array() || !std::ranges::all_of(*found, isText)) {
        return {};
    }
    QStringList texts;
    for (const json& element : *found) {
        texts.append(QString::fromStdString(element.get_ref<const std::string&>()));
    }
    return texts;
}

std::optional<ExtractedFields> directFields(const QString& text) {
    const std::expected<json, QString> document = parseJson(text);
    if (!document) {
        logLine(u"Direct JSON parsing failed: "_s + document.error());
        return std::nullopt;
    }
    if (!document->is_object()) {
        return std::nullopt;
    }
    return ExtractedFields{.name = textAt(*document, "name"),
                           .profession = textAt(*document, "profession"),
                           .email = textAt(*document, "email"),
                           .summarizedText = textAt(*document, "summarizedText"),
                           .techSkills = textsAt(*document, "techSkills"),
                           .softSkills = textsAt(*document, "softSkills"),
                           .languages = textsAt(*document, "languages")};
}

ExtractedFields lenientFields(const QString& text) {
    logLine(u"Falling back to ExtractedInfoRepresentation parsing"_s);
    const ExtractedInfoRepresentation info(text, {});
    return {.name = info.name.value_or(QString()),
            .profession = info.profession.value_or(QString()),
            .email = info.email.value_or(QString()),
            .summarizedText = info.summarizedText.value_or(QString()),
            .techSkills = info.techSkills,
            .softSkills = info.softSkills,
            .languages = info.languages};
}

/// Everything after the first double quote; nothing when there is none.
QString afterFirstQuote(const QString& text) {
    const qsizetype quote = text.indexOf(u'"');
    return quote < 0 ? QString() : text.sliced(quote + 1);
}

/// Everything before the last double quote; nothing when there is none.
QString beforeLastQuote(const QString& text) {
    return text.left(std::max(text.lastIndexOf(u'"'), qsizetype{0}));
}

} // namespace

ExtractedFields parseExtractionAnswer(const QString& answer) {
    const QString cleaned = withoutFences(answer);
    if (isJson(answer)) {
        logLine(u"Data extraction response (valid JSON): "_s + cleaned);
    }
    if (std::optional<ExtractedFields> fields = directFields(cleaned)) {
        return *std::move(fields);
    }
    return lenientFields(cleaned);
}

QString parseMailAnswer(const QString& answer) {
    if (const std::expected<json, QString> document = parseJson(answer)) {
        return textAt(*document, "email", answer);
    }
    const QString text = withoutFences(answer);
    if (!text.contains("\"email\""_L1)) {
        return text;
    }
    // {"email":"…"} that is not quite JSON, with line breaks in the text for the most part: the mail lies between
    // the third quote and the last.
    return beforeLastQuote(afterFirstQuote(afterFirstQuote(afterFirstQuote(text))));
}

} // namespace dorvantel
