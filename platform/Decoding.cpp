// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Decoding.h"

#include "platform/ListLiteral.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

QString localizedDescription(const DecodeError& error) {
    switch (error.kind) {
    case DecodeError::Kind::KeyNotFound:
    case DecodeError::Kind::ValueNotFound:
        return u"No se han podido leer los datos porque faltan."_s;
    case DecodeError::Kind::TypeMismatch:
    case DecodeError::Kind::DataCorrupted:
        break;
    }
    return u"No se han podido leer los datos porque no tienen el formato correcto."_s;
}

QString debugText(const DecodeError& error) {
    const QString details = u"("_s + error.context + u" "_s + listLiteral(error.path) + u")"_s;
    switch (error.kind) {
    case DecodeError::Kind::KeyNotFound:
        return u"keyNotFound \""_s + error.subject + u"\" "_s + details;
    case DecodeError::Kind::TypeMismatch:
        return u"typeMismatch "_s + error.subject + u" "_s + details;
    case DecodeError::Kind::ValueNotFound:
        return u"valueNotFound "_s + error.subject + u" "_s + details;
    case DecodeError::Kind::DataCorrupted:
        break;
    }
    return u"dataCorrupted "_s + details;
}

} // namespace dorvantel
