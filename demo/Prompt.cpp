// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Prompt.h"

#include <QRegularExpression>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

// The CV stands behind the first of these and in front of one of the others.
const QString opening = u"acabas de recibir el siguiente curriculum:\n"_s;
const QString extractionRequest = u"\nNecesitas extraer la siguiente información del CV\n"_s;
const QString mailRequest = u"\nQuiero que generes un texto agradeciéndole al candidato"_s;

QString between(const QString& text, qsizetype requestAt) {
    const qsizetype open = text.indexOf(opening);
    const qsizetype begin = open < 0 ? 0 : open + opening.size();
    return begin >= requestAt ? QString() : text.mid(begin, requestAt - begin);
}

QString signatureIn(const QString& request) {
    static const QRegularExpression pattern(u"firma con el nombre \"([^\"]+)\""_s);
    return pattern.match(request).captured(1);
}

} // namespace

Prompt readPrompt(const QString& text) {
    const qsizetype extraction = text.lastIndexOf(extractionRequest);
    const qsizetype mail = text.lastIndexOf(mailRequest);
    if (extraction < 0 && mail < 0) {
        return {};
    }
    if (mail > extraction) {
        return {Prompt::Kind::Mail, between(text, mail), signatureIn(text.mid(mail))};
    }
    return {Prompt::Kind::Extraction, between(text, extraction), {}};
}

} // namespace dorvantel
