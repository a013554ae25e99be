// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaError.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

QString localizedDescription(const OllamaError& error) {
    switch (error.which) {
    case OllamaError::Case::networkError:
        return u"Error de red: "_s + error.underlying.description;
    case OllamaError::Case::decodingError:
        return u"Error decodificando respuesta: "_s + localizedDescription(error.decoding);
    case OllamaError::Case::invalidURL:
        return u"URL de Ollama inválida"_s;
    case OllamaError::Case::emptyResponse:
        return u"Respuesta vacía del modelo"_s;
    case OllamaError::Case::modelNotConfigured:
        break;
    }
    return u"Modelo LLM no configurado en Preferencias"_s;
}

} // namespace dorvantel
