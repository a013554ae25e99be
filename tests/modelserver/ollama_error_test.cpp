// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaError.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(OllamaError, NetworkErrorSaysWhatLiesBeneath) {
    const UnderlyingError refused{{}, 0, u"Connection refused"_s};
    EXPECT_EQ(localizedDescription(OllamaError::networkError(refused)), u"Error de red: Connection refused"_s);
}

TEST(OllamaError, DecodingErrorSaysWhatLiesBeneath) {
    const DecodeError missing{DecodeError::Kind::KeyNotFound, u"models"_s, {}, {}};
    EXPECT_EQ(localizedDescription(OllamaError::decodingError(missing)),
              u"Error decodificando respuesta: No se han podido leer los datos porque faltan."_s);
}

TEST(OllamaError, InvalidURLHasAFixedText) {
    EXPECT_EQ(localizedDescription(OllamaError::invalidURL()), u"URL de Ollama inválida"_s);
}

TEST(OllamaError, EmptyResponseHasAFixedText) {
    EXPECT_EQ(localizedDescription(OllamaError::emptyResponse()), u"Respuesta vacía del modelo"_s);
}

TEST(OllamaError, ModelNotConfiguredHasAFixedText) {
    EXPECT_EQ(localizedDescription(OllamaError::modelNotConfigured()), u"Modelo LLM no configurado en Preferencias"_s);
}

TEST(OllamaError, ErrorsAreEqualWhenCaseAndPayloadAre) {
    EXPECT_EQ(OllamaError::emptyResponse(), OllamaError::emptyResponse());
    EXPECT_NE(OllamaError::emptyResponse(), OllamaError::invalidURL());
    EXPECT_NE(OllamaError::networkError({u"OllamaService"_s, 500, u"HTTP 500"_s}),
              OllamaError::networkError({u"OllamaService"_s, 503, u"HTTP 503"_s}));
}

} // namespace
} // namespace dorvantel
