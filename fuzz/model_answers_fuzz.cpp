// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/ExtractedInfoRepresentation.h"
#include "fuzz/Fuzz.h"
#include "intake/Answers.h"

#include <algorithm>

#include <nlohmann/json.hpp>

using namespace dorvantel;
using namespace dorvantel::fuzz;
using nlohmann::json;

namespace {

/// The member's text, or `otherwise`.
QString textAt(const json& document, const char* key, const QString& otherwise = {}) {
    const auto found = document.find(key);
    return found != document.end() && found->is_string() ? QString::fromStdString(found->get<std::string>())
                                                         : otherwise;
}

QStringList textsAt(const json& document, const char* key) {
    const auto found = document.find(key);
    QStringList texts;
    for (const json& element : found != document.end() && found->is_array() ? *found : json::array()) {
        if (!element.is_string()) {
            return {};
        }
        texts.append(QString::fromStdString(element.get<std::string>()));
    }
    return texts;
}

/// Of an answer that is the object that was asked for: every field is what its member says.
void requireFields(const ExtractedFields& fields, const json& object) {
    require(fields.name == textAt(object, "name") && fields.profession == textAt(object, "profession") &&
                fields.email == textAt(object, "email") && fields.summarizedText == textAt(object, "summarizedText"),
            "the texts are the object's");
    require(fields.techSkills == textsAt(object, "techSkills") && fields.softSkills == textsAt(object, "softSkills") &&
                fields.languages == textsAt(object, "languages"),
            "the lists are the object's");
}

void requireInfo(const ExtractedInfoRepresentation& info, const json& document, const QString& mail) {
    require(info.invitationMail == mail, "the mail is kept as it is");
    require(!info.gender || *info.gender == QStringLiteral("Masculino") || *info.gender == QStringLiteral("Femenino"),
            "there are two genders");
    require(!info.languages.isEmpty() && info.languages.front() == QStringLiteral("Español"),
            "the languages begin with Spanish");
    require(!info.description().isEmpty(), "it can be described");
    const bool isEmpty = !info.name && !info.profession && !info.email && !info.summarizedText &&
                         info.softSkills.isEmpty() && info.techSkills.isEmpty() && info.languages.size() == 1;
    require(document.is_object() || isEmpty, "nothing is taken from what is no object");
    if (document.is_object()) {
        const QString profession = textAt(document, "profesion", QStringLiteral("-"));
        require(profession == QStringLiteral("-") || info.profession == profession, "a text is taken as it is");
        require(info.summarizedText.has_value() == (document.contains("resumen") && !document["resumen"].is_null()),
                "null counts as not there");
    }
}

} // namespace

/// What a language model answers: anything. Run it with -close_fd_mask=1, the readers say on standard output how it
/// went.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString answer = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // The library takes a NUL for the end of the text.
    const json document =
        answer.contains(QChar(0)) ? json(json::value_t::discarded) : json::parse(answer.toStdString(), nullptr, false);
    requireInfo(ExtractedInfoRepresentation(answer, answer), document, answer);

    const ExtractedFields fields = parseExtractionAnswer(answer);
    if (document.is_object()) {
        requireFields(fields, document);
    }
    const QString mail = parseMailAnswer(answer);
    if (document.is_discarded()) {
        require(answer.contains(mail), "a mail is taken out of its answer, not made up");
    } else {
        require(mail == textAt(document, "email", answer), "the mail is the object's, or the whole answer");
    }
    return 0;
}
