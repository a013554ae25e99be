// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/WireTypes.h"

#include "tests/support/Print.h"

#include <QSet>

#include <limits>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using Kind = DecodeError::Kind;

/// The kind, subject and path of a failure; what it says in words is free.
template <typename Record>
void expectFailure(const Decoded<Record>& result, Kind kind, const QString& subject, const QStringList& path) {
    ASSERT_FALSE(result.has_value());
    EXPECT_EQ(result.error().kind, kind);
    EXPECT_EQ(result.error().subject, subject);
    EXPECT_EQ(result.error().path, path);
    EXPECT_EQ(result.error().context.isEmpty(), false);
}

TEST(ModelsResponse, ModelWithEveryFieldDecodes) {
    const auto response = decodeModelsResponse(R"({"models":[{"name":"qwen3:8b","model":"qwen3:8b",
        "modified_at":"2026-08-17T18:40:05+02:00","size":5225388164,"digest":"4efc",
        "details":{"family":"qwen3","families":["qwen3"],"format":"gguf","parameter_size":"8.2B"},
        "capabilities":["tools"]}]})");
    ASSERT_TRUE(response);
    ASSERT_EQ(response->models.size(), 1);
    const OllamaModel expected{.name = u"qwen3:8b"_s,
                               .modifiedAt = u"2026-08-17T18:40:05+02:00"_s,
                               .size = 5225388164,
                               .details = ModelDetails{u"qwen3"_s, u"gguf"_s, u"8.2B"_s},
                               .capabilities = {}};
    EXPECT_EQ(response->models[0], expected);
    EXPECT_EQ(response->models[0].id(), u"qwen3:8b"_s);
}

TEST(ModelsResponse, ModelsWithoutDateSizeAndDetailsDecodeWithoutCapabilities) {
    const auto response = decodeModelsResponse(R"({"models":[{"name":"a"},{"name":"b"}]})");
    ASSERT_TRUE(response);
    EXPECT_EQ(response->models, (QList<OllamaModel>{{u"a"_s, {}, {}, {}, {}}, {u"b"_s, {}, {}, {}, {}}}));
}

TEST(ModelsResponse, NullStandsForAbsent) {
    const auto response = decodeModelsResponse(
        R"({"models":[{"name":"a","modified_at":null,"size":null,"details":null},
                      {"name":"a","details":{"family":null,"format":null,"parameter_size":null}}]})");
    ASSERT_TRUE(response);
    EXPECT_EQ(response->models[0], (OllamaModel{u"a"_s, {}, {}, {}, {}}));
    EXPECT_EQ(response->models[1], (OllamaModel{u"a"_s, {}, {}, ModelDetails{}, {}}));
}

TEST(ModelsResponse, WithoutModelsFails) {
    expectFailure(decodeModelsResponse("{}"), Kind::KeyNotFound, u"models"_s, {});
}

TEST(ModelsResponse, NullModelsAreAMissingValue) {
    expectFailure(decodeModelsResponse(R"({"models":null})"), Kind::ValueNotFound, u"Array<Any>"_s, {u"models"_s});
}

TEST(ModelsResponse, EmptyListDecodes) {
    const auto response = decodeModelsResponse(R"({"models":[]})");
    ASSERT_TRUE(response);
    EXPECT_TRUE(response->models.isEmpty());
}

TEST(ModelsResponse, ModelWithoutNameFailsTheWholeBody) {
    expectFailure(decodeModelsResponse(R"({"models":[{"name":"a"},{"size":1}]})"), Kind::KeyNotFound, u"name"_s,
                  {u"models"_s, u"Index 1"_s});
}

TEST(ModelsResponse, NullNameIsAMissingValue) {
    expectFailure(decodeModelsResponse(R"({"models":[{"name":null}]})"), Kind::ValueNotFound, u"String"_s,
                  {u"models"_s, u"Index 0"_s, u"name"_s});
}

TEST(ModelsResponse, AnyValueOfAnotherTypeFailsTheWholeBody) {
    const QStringList first{u"models"_s, u"Index 0"_s};
    expectFailure(decodeModelsResponse(R"([])"), Kind::TypeMismatch, u"Dictionary<String, Any>"_s, {});
    expectFailure(decodeModelsResponse(R"({"models":{}})"), Kind::TypeMismatch, u"Array<Any>"_s, {u"models"_s});
    expectFailure(decodeModelsResponse(R"({"models":["a"]})"), Kind::TypeMismatch, u"Dictionary<String, Any>"_s, first);
    expectFailure(decodeModelsResponse(R"({"models":[{"name":7}]})"), Kind::TypeMismatch, u"String"_s,
                  first + QStringList{u"name"_s});
    expectFailure(decodeModelsResponse(R"({"models":[{"name":"a","modified_at":7}]})"), Kind::TypeMismatch, u"String"_s,
                  first + QStringList{u"modified_at"_s});
    expectFailure(decodeModelsResponse(R"({"models":[{"name":"a","size":"7"}]})"), Kind::TypeMismatch, u"Int64"_s,
                  first + QStringList{u"size"_s});
    expectFailure(decodeModelsResponse(R"({"models":[{"name":"a","size":true}]})"), Kind::TypeMismatch, u"Int64"_s,
                  first + QStringList{u"size"_s});
    expectFailure(decodeModelsResponse(R"({"models":[{"name":"a","details":"gguf"}]})"), Kind::TypeMismatch,
                  u"Dictionary<String, Any>"_s, first + QStringList{u"details"_s});
    for (const QString& key : {u"family"_s, u"format"_s, u"parameter_size"_s}) {
        expectFailure(decodeModelsResponse(R"({"models":[{"name":"a","details":{")" + key.toUtf8() + R"(":[]}}]})"),
                      Kind::TypeMismatch, u"String"_s, first + QStringList{u"details"_s, key});
    }
}

TEST(ModelsResponse, SizeIsASigned64BitNumber) {
    const auto sizeOf = [](const QByteArray& number) -> Decoded<std::optional<qint64>> {
        const auto response = decodeModelsResponse(R"({"models":[{"name":"a","size":)" + number + "}]}");
        if (!response) {
            return std::unexpected(response.error());
        }
        return response->models[0].size;
    };
    EXPECT_EQ(sizeOf("9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(sizeOf("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(sizeOf("-9223372036854775808.0"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(sizeOf("3.0"), 3);
    EXPECT_EQ(sizeOf("1e3"), 1000);
    const QStringList path{u"models"_s, u"Index 0"_s, u"size"_s};
    expectFailure(sizeOf("9223372036854775808"), Kind::DataCorrupted, {}, path);
    expectFailure(sizeOf("9223372036854775808.0"), Kind::DataCorrupted, {}, path);
    expectFailure(sizeOf("1e19"), Kind::DataCorrupted, {}, path);
    expectFailure(sizeOf("1.5"), Kind::DataCorrupted, {}, path);
}

TEST(ModelsResponse, BodyThatIsNoJsonIsCorrupted) {
    for (const char* body : {"", " ", "<html></html>", "404 page not found", R"({"models":[])", R"({"models":[]}x)",
                             "{\"models\":[{\"name\":\"\xff\"}]}", "{'models':[]}"}) {
        expectFailure(decodeModelsResponse(body), Kind::DataCorrupted, {}, {});
    }
}

TEST(ShowResponse, EveryFieldIsOptional) {
    EXPECT_EQ(decodeShowResponse("{}"), OllamaShowResponse{});
    EXPECT_EQ(decodeShowResponse(R"({"modelfile":null,"parameters":null,"template":null,"details":null,
                                     "model_info":null,"capabilities":null})"),
              OllamaShowResponse{});
}

TEST(ShowResponse, FamiliesMayBeNull) {
    const auto response = decodeShowResponse(R"({"details":{"family":"llama","families":null}})");
    ASSERT_TRUE(response);
    ASSERT_TRUE(response->details);
    EXPECT_EQ(response->details->family, u"llama"_s);
    EXPECT_EQ(response->details->families, std::nullopt);
}

TEST(ShowResponse, EveryFieldDecodes) {
    const auto response = decodeShowResponse(R"({"modelfile":"FROM x","parameters":"num_ctx 8192","template":"{{ }}",
        "details":{"format":"gguf","family":"qwen2","families":["qwen2","clip"],"parameter_size":"7.6B",
        "quantization_level":"Q4_K_M"},"model_info":{"a":1},"capabilities":["completion","tools"]})");
    const OllamaShowResponse expected{
        .modelfile = u"FROM x"_s,
        .parameters = u"num_ctx 8192"_s,
        .templateText = u"{{ }}"_s,
        .details = ModelShowDetails{u"gguf"_s, u"qwen2"_s, QStringList{u"qwen2"_s, u"clip"_s}, u"7.6B"_s, u"Q4_K_M"_s},
        .modelInfo = ModelInfo{},
        .capabilities = QStringList{u"completion"_s, u"tools"_s}};
    EXPECT_EQ(response, expected);
}

TEST(ShowResponse, FieldsThatNobodyUsesStillHaveToHaveTheirType) {
    const auto mismatch = [](const QByteArray& body, const QString& type, const QStringList& path) {
        expectFailure(decodeShowResponse(body), Kind::TypeMismatch, type, path);
    };
    mismatch(R"({"modelfile":1})", u"String"_s, {u"modelfile"_s});
    mismatch(R"({"parameters":{}})", u"String"_s, {u"parameters"_s});
    mismatch(R"({"template":[]})", u"String"_s, {u"template"_s});
    mismatch(R"({"details":[]})", u"Dictionary<String, Any>"_s, {u"details"_s});
    mismatch(R"({"details":{"families":"bert"}})", u"Array<Any>"_s, {u"details"_s, u"families"_s});
    mismatch(R"({"details":{"families":[1]}})", u"String"_s, {u"details"_s, u"families"_s, u"Index 0"_s});
    for (const QString& key : {u"format"_s, u"family"_s, u"parameter_size"_s, u"quantization_level"_s}) {
        mismatch("{\"details\":{\"" + key.toUtf8() + "\":4}}", u"String"_s, {u"details"_s, key});
    }
    mismatch(R"({"model_info":[]})", u"Dictionary<String, Any>"_s, {u"model_info"_s});
    mismatch(R"({"model_info":"large"})", u"Dictionary<String, Any>"_s, {u"model_info"_s});
    mismatch(R"({"capabilities":"tools"})", u"Array<Any>"_s, {u"capabilities"_s});
    mismatch(R"({"capabilities":["tools",1]})", u"String"_s, {u"capabilities"_s, u"Index 1"_s});
}

TEST(ShowResponse, NullAmongTheCapabilitiesIsAMissingValue) {
    expectFailure(decodeShowResponse(R"({"capabilities":[null]})"), Kind::ValueNotFound, u"String"_s,
                  {u"capabilities"_s, u"Index 0"_s});
}

TEST(ShowResponse, NothingOfALargeModelInfoIsKept) {
    QByteArray tokens = "\"t\"";
    tokens = (tokens + ',').repeated(100'000) + tokens;
    const QByteArray body =
        R"({"model_info":{"tokens":[)" + tokens + R"(],"deep":{"er":[{}]},"big":1e300},"capabilities":["vision"]})";
    const auto response = decodeShowResponse(body);
    EXPECT_EQ(response, (OllamaShowResponse{{}, {}, {}, {}, ModelInfo{}, QStringList{u"vision"_s}}));
    EXPECT_EQ(encode(*response->modelInfo), "{}");
}

TEST(ShowResponse, DeepNestingEndsInAnAnswer) {
    const QByteArray body = R"({"model_info":)" + QByteArray(200'000, '[');
    expectFailure(decodeShowResponse(body), Kind::DataCorrupted, {}, {});
}

TEST(ChatResponse, EveryFieldDecodesAndUnknownKeysAreIgnored) {
    const auto response = decodeChatResponse(R"({"model":"m","created_at":"2026","done":true,"done_reason":"stop",
        "message":{"role":"assistant","content":"a \u0026 b ñ 😀","thinking":"…"}})");
    EXPECT_EQ(response, (OllamaChatResponse{u"m"_s, u"2026"_s, {u"assistant"_s, u"a & b ñ 😀"_s}, true}));
}

TEST(ChatResponse, OnlyTheDateIsOptional) {
    EXPECT_TRUE(decodeChatResponse(R"({"model":"m","message":{"role":"r","content":""},"done":false})"));
    expectFailure(decodeChatResponse(R"({"message":{"role":"r","content":""},"done":false})"), Kind::KeyNotFound,
                  u"model"_s, {});
    expectFailure(decodeChatResponse(R"({"model":"m","done":false})"), Kind::KeyNotFound, u"message"_s, {});
    expectFailure(decodeChatResponse(R"({"model":"m","message":{"role":"r","content":""}})"), Kind::KeyNotFound,
                  u"done"_s, {});
    expectFailure(decodeChatResponse(R"({"model":"m","message":{"content":""},"done":true})"), Kind::KeyNotFound,
                  u"role"_s, {u"message"_s});
    expectFailure(decodeChatResponse(R"({"model":"m","message":{"role":"r"},"done":true})"), Kind::KeyNotFound,
                  u"content"_s, {u"message"_s});
    expectFailure(decodeChatResponse(R"({"model":"m","message":{"role":"r","content":null},"done":true})"),
                  Kind::ValueNotFound, u"String"_s, {u"message"_s, u"content"_s});
    expectFailure(decodeChatResponse(R"({"model":"m","message":{"role":"r","content":""},"done":1})"),
                  Kind::TypeMismatch, u"Bool"_s, {u"done"_s});
}

TEST(ChatResponse, AnyValueOfAnotherTypeFailsTheWholeBody) {
    const auto mismatch = [](const QByteArray& body, const QString& type, const QStringList& path) {
        expectFailure(decodeChatResponse(body), Kind::TypeMismatch, type, path);
    };
    mismatch("[]", u"Dictionary<String, Any>"_s, {});
    mismatch(R"({"model":1,"message":{"role":"r","content":""},"done":true})", u"String"_s, {u"model"_s});
    mismatch(R"({"model":"m","created_at":1,"message":{"role":"r","content":""},"done":true})", u"String"_s,
             {u"created_at"_s});
    mismatch(R"({"model":"m","message":"hola","done":true})", u"Dictionary<String, Any>"_s, {u"message"_s});
    mismatch(R"({"model":"m","message":{"role":1,"content":""},"done":true})", u"String"_s, {u"message"_s, u"role"_s});
    mismatch(R"({"model":"m","message":{"role":"r","content":["hola"]},"done":true})", u"String"_s,
             {u"message"_s, u"content"_s});
    mismatch(R"({"model":"m","message":{"role":"r","content":""},"done":"true"})", u"Bool"_s, {u"done"_s});
}

TEST(EmbeddingResponse, NeedsItsModelAndItsVectors) {
    expectFailure(decodeEmbeddingResponse(R"({"embeddings":[]})"), Kind::KeyNotFound, u"model"_s, {});
    expectFailure(decodeEmbeddingResponse(R"({"model":"m"})"), Kind::KeyNotFound, u"embeddings"_s, {});
    expectFailure(decodeEmbeddingResponse(R"({"model":1,"embeddings":[]})"), Kind::TypeMismatch, u"String"_s,
                  {u"model"_s});
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":{}})"), Kind::TypeMismatch, u"Array<Any>"_s,
                  {u"embeddings"_s});
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":[["1"]]})"), Kind::TypeMismatch, u"Double"_s,
                  {u"embeddings"_s, u"Index 0"_s, u"Index 0"_s});
}

TEST(EmbeddingResponse, VectorsOfWholeAndBrokenNumbersDecode) {
    const auto response = decodeEmbeddingResponse(R"({"model":"m","embeddings":[[1,-0.5,1.5e-05],[]],"x":0})");
    EXPECT_EQ(response, (OllamaEmbeddingResponse{u"m"_s, {{1.0, -0.5, 1.5e-05}, {}}}));
}

TEST(EmbeddingResponse, NoVectorsDecode) {
    EXPECT_EQ(decodeEmbeddingResponse(R"({"model":"m","embeddings":[]})"), (OllamaEmbeddingResponse{u"m"_s, {}}));
}

TEST(EmbeddingResponse, NullVectorIsAMissingValue) {
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":[null]})"), Kind::ValueNotFound, u"Array<Any>"_s,
                  {u"embeddings"_s, u"Index 0"_s});
}

TEST(EmbeddingResponse, NullElementIsAMissingValue) {
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":[[0.5,null]]})"), Kind::ValueNotFound,
                  u"Double"_s, {u"embeddings"_s, u"Index 0"_s, u"Index 1"_s});
}

TEST(EmbeddingResponse, FlatVectorIsAnotherType) {
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":[0.5]})"), Kind::TypeMismatch, u"Array<Any>"_s,
                  {u"embeddings"_s, u"Index 0"_s});
}

TEST(EmbeddingResponse, NumberBeyondADoubleIsCorrupted) {
    expectFailure(decodeEmbeddingResponse(R"({"model":"m","embeddings":[[0.5,1e999]]})"), Kind::DataCorrupted, {},
                  {u"embeddings"_s, u"Index 0"_s, u"Index 1"_s});
}

TEST(EmbeddingResponse, NumberTooSmallForADoubleIsZero) {
    const auto response = decodeEmbeddingResponse(R"({"model":"m","embeddings":[[1e-400,-2E-99999,0.5]]})");
    EXPECT_EQ(response, (OllamaEmbeddingResponse{u"m"_s, {{0.0, 0.0, 0.5}}}));
}

TEST(Requests, AreComparedByAllTheirFields) {
    const OllamaChatRequest chat{u"m"_s, {{u"user"_s, u"hola"_s}}, false, OllamaOptions{0.3, {}, {}}};
    OllamaChatRequest other = chat;
    EXPECT_EQ(other, chat);
    other.options->temperature = 0.7;
    EXPECT_NE(other, chat);
    EXPECT_NE((OllamaShowRequest{u"a"_s}), (OllamaShowRequest{u"b"_s}));
    EXPECT_NE((OllamaEmbeddingRequest{u"m"_s, u"a"_s}), (OllamaEmbeddingRequest{u"m"_s, u"b"_s}));
}

TEST(ShowRequest, HoldsTheNameAlone) {
    EXPECT_EQ(encode(OllamaShowRequest{u"dorvantel/selección:7b"_s}), R"({"name":"dorvantel/selección:7b"})");
}

TEST(ChatRequest, WithoutTemperatureStillSendsStreamAndEmptyOptions) {
    const OllamaChatRequest request{u"m"_s, {{u"user"_s, u"hola"_s}}, false, OllamaOptions{}};
    EXPECT_EQ(encode(request),
              R"({"model":"m","messages":[{"role":"user","content":"hola"}],"stream":false,"options":{}})");
}

TEST(ChatRequest, OptionsHoldWhatIsPresent) {
    OllamaChatRequest request{u"m"_s, {}, false, OllamaOptions{.temperature = 0.3, .topP = {}, .topK = {}}};
    EXPECT_EQ(encode(request), R"({"model":"m","messages":[],"stream":false,"options":{"temperature":0.3}})");
    request.options = OllamaOptions{.temperature = {}, .topP = 0.9, .topK = 40};
    EXPECT_EQ(encode(request), R"({"model":"m","messages":[],"stream":false,"options":{"top_p":0.9,"top_k":40}})");
    request.options.reset();
    EXPECT_EQ(encode(request), R"({"model":"m","messages":[],"stream":false})");
}

TEST(ChatRequest, MessagesKeepTheirOrderAndTheirText) {
    const OllamaChatRequest request{
        u"m"_s, {{u"system"_s, u"\"\\\n\t"_s}, {u"user"_s, u"ñ 😀"_s}, {u"user"_s, u"a\0b"_s}}, false, std::nullopt};
    EXPECT_EQ(encode(request), R"({"model":"m","messages":[{"role":"system","content":"\"\\\n\t"},)"
                               R"({"role":"user","content":"ñ 😀"},{"role":"user","content":"a\u0000b"}],)"
                               R"("stream":false})");
}

TEST(ChatRequest, NumberThatIsNotFiniteCannotBeEncoded) {
    const EncodeError error{u"No se han podido escribir los datos porque no tienen el formato correcto."_s};
    OllamaChatRequest request{u"m"_s, {}, false, OllamaOptions{}};
    request.options->temperature = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(encode(request), std::unexpected(error));
    request.options = OllamaOptions{.temperature = {}, .topP = std::numeric_limits<double>::infinity(), .topK = {}};
    EXPECT_EQ(encode(request), std::unexpected(error));
}

TEST(ChatRequest, HalfASurrogatePairIsReplacedAndSent) {
    const OllamaChatRequest request{u"m"_s, {{u"user"_s, QString(QChar(0xd83d))}}, false, std::nullopt};
    const auto body = encode(request);
    ASSERT_TRUE(body);
    EXPECT_TRUE(body->isValidUtf8());
}

TEST(EmbeddingRequest, InputIsOneText) {
    EXPECT_EQ(encode(OllamaEmbeddingRequest{u"m"_s, u" contable "_s}), R"({"model":"m","input":" contable "})");
}

TEST(OllamaModel, CapabilitiesAreNeverWritten) {
    const ModelCapabilities all{true, true, true, true};
    EXPECT_EQ(encode(OllamaModel{u"a"_s, {}, {}, {}, all}), R"({"name":"a"})");
    EXPECT_EQ(encode(OllamaModel{u"a"_s, u"2026"_s, 7, ModelDetails{u"f"_s, {}, u"8B"_s}, all}),
              R"({"name":"a","modified_at":"2026","size":7,"details":{"family":"f","parameter_size":"8B"}})");
}

TEST(OllamaModel, EqualityAndHashCoverEveryField) {
    const OllamaModel model{u"a"_s, u"2026"_s, 7, ModelDetails{u"f"_s, u"gguf"_s, u"8B"_s}, {}};
    QSet<OllamaModel> models{model, model};
    EXPECT_EQ(models.size(), 1);
    const auto addChanged = [&](const auto& change) {
        OllamaModel changed = model;
        change(changed);
        EXPECT_NE(changed, model);
        EXPECT_NE(qHash(changed), qHash(model));
        models.insert(changed);
    };
    addChanged([](OllamaModel& m) { m.name = u"b"_s; });
    addChanged([](OllamaModel& m) { m.modifiedAt.reset(); });
    addChanged([](OllamaModel& m) { m.size = 8; });
    addChanged([](OllamaModel& m) { m.details.reset(); });
    addChanged([](OllamaModel& m) { m.details->family = u"g"_s; });
    addChanged([](OllamaModel& m) { m.details->format.reset(); });
    addChanged([](OllamaModel& m) { m.details->parameterSize = u"9B"_s; });
    addChanged([](OllamaModel& m) { m.capabilities.supportsTools = true; });
    addChanged([](OllamaModel& m) { m.capabilities.supportsVision = true; });
    addChanged([](OllamaModel& m) { m.capabilities.supportsThinking = true; });
    addChanged([](OllamaModel& m) { m.capabilities.supportsEmbedding = true; });
    EXPECT_EQ(models.size(), 12);
}

TEST(ModelCapabilities, AreCodableOnTheirOwn) {
    const ModelCapabilities capabilities{true, false, true, false};
    const QByteArray body =
        R"({"supportsTools":true,"supportsVision":false,"supportsThinking":true,"supportsEmbedding":false})";
    EXPECT_EQ(encode(capabilities), body);
    EXPECT_EQ(decodeModelCapabilities(body), capabilities);
}

TEST(ModelCapabilities, NeedEveryKey) {
    const QByteArray body = encode(ModelCapabilities{});
    for (const QString& key :
         {u"supportsTools"_s, u"supportsVision"_s, u"supportsThinking"_s, u"supportsEmbedding"_s}) {
        expectFailure(decodeModelCapabilities(QByteArray(body).replace(key.toUtf8(), "other")), Kind::KeyNotFound, key,
                      {});
    }
}

} // namespace
} // namespace dorvantel
