// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/ExtractedInfoRepresentation.h"

#include "platform/JsonDocument.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <QRegularExpression>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;
using nlohmann::json;

namespace {

std::optional<QString> genderFromSalutation(const QString& mail) {
    if (mail.startsWith("Estimado/a"_L1)) {
        return std::nullopt;
    }
    return mail.startsWith("Estimado"_L1) ? u"Masculino"_s : u"Femenino"_s;
}

QString textOf(const json& value) {
    if (value.is_string()) {
        return QString::fromStdString(value.get_ref<const std::string&>());
    }
    const std::expected<QString, QString> text = compactJsonText(value);
    if (!text) {
        logLine(u"Could not serialize object to JSON because: "_s + text.error());
        return u"unknown"_s;
    }
    return *text;
}

QStringList textsOf(const json& array) {
    QStringList texts;
    for (const json& element : array) {
        if (!element.is_null()) {
            texts.append(textOf(element));
        }
    }
    return texts;
}

QString withoutQuotes(const QString& text) {
    const bool quoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == u'\'' || text.front() == u'"');
    return quoted ? text.sliced(1, text.size() - 2) : text;
}

/// The values of a list that was written as a text: a JSON array, or values between commas, semicolons, line breaks
/// and bullets. Brackets and quotes of an array that is not quite JSON are no part of its values.
QStringList textsOfListText(const QString& listText) {
    QString text = trimmed(listText);
    if (text.startsWith(u'[')) {
        if (const std::expected<json, QString> array = parseJson(text)) {
            QStringList values;
            for (const QString& value : textsOf(*array)) {
                values.append(trimmed(value));
            }
            values.removeAll(QString());
            return values;
        }
        text.remove(0, 1);
        if (text.endsWith(u']')) {
            text.chop(1);
        }
    }
    // A hyphen or an asterisk is a bullet only where a line begins, a raised dot only outside a word
    // ("intel·ligència").
    static const QRegularExpression separator(u"[,;\\v•◦‣▪●]|(?<!\\w)·|·(?!\\w)|^\\s*[-*–]"_s,
                                              QRegularExpression::MultilineOption |
                                                  QRegularExpression::UseUnicodePropertiesOption);
    QStringList values;
    for (const QString& piece : text.split(separator)) {
        const QString value = withoutQuotes(trimmed(piece));
        if (!value.isEmpty()) {
            values.append(value);
        }
    }
    return values;
}

bool containsIgnoringCase(const QStringList& list, const QString& value) {
    return std::ranges::any_of(
        list, [key = caselessForm(value)](const QString& other) { return caselessForm(other) == key; });
}

/// Adds the values of one list member. `adopt` gives the form in which a value is kept, or nothing to pass it over.
template <typename Adopt>
void appendValues(QStringList& list, const json& value, Adopt adopt) {
    if (value.is_array()) {
        for (const QString& text : textsOf(value)) {
            if (const std::optional<QString> adopted = adopt(text)) {
                list.append(*adopted);
            }
        }
        return;
    }
    const QStringList texts = value.is_string() ? textsOfListText(textOf(value)) : QStringList{textOf(value)};
    for (const QString& text : texts) {
        const std::optional<QString> adopted = adopt(text);
        if (adopted && !containsIgnoringCase(list, *adopted)) {
            list.append(*adopted);
        }
    }
}

std::optional<QString> asWritten(const QString& value) {
    return value;
}

std::optional<QString> asLanguage(const QString& value) {
    if (value.toUpper().normalized(QString::NormalizationForm_C) == u"ESPAÑOL") {
        return std::nullopt; // every candidate's list begins with it
    }
    return capitalized(value);
}

void readMember(ExtractedInfoRepresentation& info, const std::string& key, const json& value) {
    if (value.is_null()) {
        return;
    }
    if (key == "nombre") {
        info.name = capitalized(textOf(value));
    } else if (key == "profesion") {
        info.profession = textOf(value);
    } else if (key == "email" || key == "correo" || key == "correo_electronico") {
        info.email = textOf(value).toLower();
    } else if (key == "resumen") {
        info.summarizedText = textOf(value);
    } else if (key == "habilidades_personales") {
        appendValues(info.softSkills, value, asWritten);
    } else if (key == "habilidades_tecnicas") {
        appendValues(info.techSkills, value, asWritten);
    } else if (key == "idiomas") {
        appendValues(info.languages, value, asLanguage);
    }
}

QString quotedOrNil(const std::optional<QString>& text) {
    return text ? u'"' + *text + u'"' : u"nil"_s;
}

QString quotedList(const QStringList& values) {
    return values.isEmpty() ? u"[]"_s : u"[\""_s + values.join(u"\",\""_s) + u"\"]"_s;
}

} // namespace

ExtractedInfoRepresentation::ExtractedInfoRepresentation(const QString& answer, const QString& mail)
    : invitationMail(mail)
    , gender(genderFromSalutation(mail))
    , languages{u"Español"_s} {
    const std::expected<json, QString> document = parseJson(answer);
    if (!document) {
        logLine(u"*** Illegal JSON string\n"_s);
        logLine(u"JSON = "_s + answer);
        return;
    }
    if (document->is_object()) {
        for (const auto& [key, value] : document->items()) {
            readMember(*this, key, value);
        }
    }
}

QString ExtractedInfoRepresentation::description() const {
    return u"name: "_s + quotedOrNil(name) + u"\nprofession: "_s + quotedOrNil(profession) + u"\nemail: "_s +
           quotedOrNil(email) + u"\nsummarizedText: \""_s + summarizedText.value_or(u"nil"_s) +
           u"\"\ninvitationMail: \""_s + invitationMail.value_or(u"nil"_s) + u"\"\nsoftSkills: "_s +
           quotedList(softSkills) + u"\ntechSkills: "_s + quotedList(techSkills) + u"\nlanguages: "_s +
           quotedList(languages) + u"\n"_s;
}

} // namespace dorvantel
