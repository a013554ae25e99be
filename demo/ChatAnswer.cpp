// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/ChatAnswer.h"

#include "demo/Prompt.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

std::vector<std::string> utf8(const QStringList& values) {
    std::vector<std::string> out;
    std::ranges::transform(values, std::back_inserter(out), &QString::toStdString);
    return out;
}

QString salutation(const CvFacts& facts) {
    const QString surname = surnameOf(facts.name);
    const QString name = surname.isEmpty() ? QString() : u" "_s + surname;
    switch (facts.gender) {
    case NameGender::Feminine:
        return u"Estimada Sra."_s + name + u":"_s;
    case NameGender::Masculine:
        return u"Estimado Sr."_s + name + u":"_s;
    case NameGender::Unknown:
        break;
    }
    return u"Estimado Sr./Estimada Sra."_s + name + u":"_s;
}

QString praise(const CvFacts& facts) {
    const QString skills = enumeration(facts.techSkills, 2);
    if (skills.isEmpty()) {
        return u"Hemos leído su currículum con atención y su trayectoria nos parece de gran interés."_s;
    }
    return u"Hemos leído su currículum con atención y valoramos muy positivamente su trayectoria, en especial sus "
           "conocimientos de "_s +
           skills + u"."_s;
}

} // namespace

QString surnameOf(const QString& name) {
    const QStringList words = name.split(u' ', Qt::SkipEmptyParts);
    const auto isParticle = [](const QString& word) { return word.front().isLower(); };
    const auto isGiven = [](const QString& word) {
        return vocabulary().firstNames.contains(foldedKey(word)) || (word.size() <= 2 && word.front().isUpper());
    };
    const auto behindParticles = [&](qsizetype from) {
        while (from < words.size() && isParticle(words[from])) {
            ++from;
        }
        return from;
    };
    if (words.size() < 2) {
        return words.value(0);
    }
    // Given names: the first word, and further known ones ("José Luis", "María del Carmen") while a surname is left.
    qsizetype first = 1;
    for (qsizetype next = behindParticles(first); next + 1 < words.size() && isGiven(words[next]);
         next = behindParticles(first)) {
        first = next + 1;
    }
    return words.mid(first, behindParticles(first) - first + 1).join(u' ');
}

QString extractionAnswer(const CvFacts& facts) {
    nlohmann::ordered_json answer;
    answer["name"] = facts.name.toStdString();
    answer["profession"] = facts.profession.toStdString();
    answer["email"] = facts.email.toStdString();
    answer["summarizedText"] = facts.summary.toStdString();
    answer["softSkills"] = utf8(facts.softSkills);
    answer["techSkills"] = utf8(facts.techSkills);
    answer["languages"] = utf8(facts.languages);
    return QString::fromStdString(answer.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

QString mailAnswer(const CvFacts& facts, const QString& signature) {
    const QString pronoun = facts.gender == NameGender::Feminine ? u"invitarla"_s : u"invitarle"_s;
    const QString body =
        u"Le agradecemos sinceramente su participación en nuestro proceso de selección y el tiempo que le ha dedicado. "_s +
        praise(facts) + u"\n\nNos complace comunicarle que próximamente nos pondremos en contacto con usted para "_s +
        pronoun +
        u" a una entrevista de trabajo, en la que podremos conocer mejor su experiencia y resolver "
        "cualquier duda que tenga sobre el puesto.\n\nReciba un cordial saludo,\n\n"_s;
    return salutation(facts) + u"\n\n"_s + body + signature;
}

QString chatAnswer(const QString& prompt) {
    const Prompt request = readPrompt(prompt);
    switch (request.kind) {
    case Prompt::Kind::Extraction:
        return extractionAnswer(readCv(request.cvText));
    case Prompt::Kind::Mail:
        return mailAnswer(readCv(request.cvText), request.signature);
    case Prompt::Kind::Other:
        break;
    }
    return u"Este servidor no es un modelo de lenguaje: es el sustituto de demostración de Dorvantel. Solo sabe "
           "extraer los datos de un currículum y redactar el correo de agradecimiento."_s;
}

} // namespace dorvantel
