// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModel.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace dorvantel {
namespace {

using nlohmann::json;

DemoReply get(const std::string& path) {
    return demoAnswer({"GET", path, "", "", ""});
}

DemoReply post(const std::string& path, const std::string& body) {
    return demoAnswer({"POST", path, body, "", ""});
}

json posted(const std::string& path, const json& body) {
    const DemoReply reply = post(path, body.dump());
    EXPECT_EQ(reply.status, 200) << reply.body;
    EXPECT_EQ(reply.contentType, "application/json; charset=utf-8");
    return json::parse(reply.body);
}

json chat(const json& more) {
    json body = {{"model", "demo-texto:latest"}, {"stream", false}, {"messages", json::array()}};
    body.update(more);
    return posted("/api/chat", body);
}

DemoReply error(int status, const std::string& text) {
    return {status, "application/json; charset=utf-8", json({{"error", text}}).dump(), false};
}

TEST(DemoModel, SaysEverywhereThatItIsNoLanguageModel) {
    EXPECT_EQ(get("/").body, demoNotice);
    EXPECT_THAT(get("/").body, testing::HasSubstr("no language model"));
    EXPECT_THAT(get("/api/tags").body, testing::HasSubstr("no es un modelo de lenguaje"));
    EXPECT_THAT(get("/api/version").body, testing::HasSubstr("dorvantel-demo"));
    EXPECT_THAT(post("/api/show", R"({"name":"demo-texto"})").body, testing::HasSubstr("no es un modelo de lenguaje"));
}

TEST(DemoModel, HeadIsAnsweredAsGetIs) {
    EXPECT_EQ(demoAnswer({"HEAD", "/", "", "", ""}).status, 200);
}

TEST(DemoModelTags, ListsATextModelAndAnEmbeddingModel) {
    const json models = json::parse(get("/api/tags").body)["models"];
    ASSERT_EQ(models.size(), 2U);
    EXPECT_EQ(models[0]["name"], "demo-vectores:latest");
    EXPECT_EQ(models[0]["capabilities"], json({"embedding"}));
    EXPECT_EQ(models[1]["name"], "demo-texto:latest");
    EXPECT_EQ(models[1]["capabilities"], json({"completion"}));
}

TEST(DemoModelTags, EntriesHaveTheTypesOfRealOnes) {
    const json models = json::parse(get("/api/tags").body)["models"];
    ASSERT_EQ(models.size(), 2U);
    for (const json& model : models) {
        EXPECT_EQ(model["model"], model["name"]);
        EXPECT_TRUE(model["modified_at"].is_string());
        EXPECT_TRUE(model["size"].is_number_integer());
        EXPECT_EQ(model["digest"].get<std::string>().size(), 64U);
        EXPECT_TRUE(model["details"]["family"].is_string());
        EXPECT_TRUE(model["details"]["families"].is_array());
        EXPECT_TRUE(model["details"]["format"].is_string());
        EXPECT_TRUE(model["details"]["parameter_size"].is_string());
        EXPECT_EQ(model["details"]["embedding_length"], 768);
    }
}

TEST(DemoModelShow, TellsTheCapabilityUnderBothKeysForTheName) {
    EXPECT_EQ(posted("/api/show", {{"name", "demo-texto:latest"}})["capabilities"], json({"completion"}));
    EXPECT_EQ(posted("/api/show", {{"model", "demo-vectores"}})["capabilities"], json({"embedding"}));
    EXPECT_EQ(posted("/api/show", {{"name", "DEMO-Texto"}})["capabilities"], json({"completion"}));
}

TEST(DemoModelShow, HasTheTypesOfRealOnes) {
    const json shown = posted("/api/show", {{"name", "demo-vectores"}});
    for (const char* key : {"license", "modelfile", "template", "modified_at"}) {
        EXPECT_TRUE(shown[key].is_string()) << key;
    }
    EXPECT_TRUE(shown["details"]["quantization_level"].is_string());
    EXPECT_TRUE(shown["model_info"].is_object());
    EXPECT_EQ(shown["model_info"]["dorvantel-demo.embedding_length"], 768);
}

TEST(DemoModelShow, AnUnknownModelIsNamedWithItsTag) {
    EXPECT_EQ(post("/api/show", R"({"name":"llama9"})"), error(404, "model 'llama9:latest' not found"));
    EXPECT_EQ(post("/api/show", "{}"), error(400, "model is required"));
}

TEST(DemoModelChat, AnswersInTheShapeOfARealServer) {
    const json answer = chat({{"messages", {{{"role", "user"}, {"content", "hola"}}}}});
    EXPECT_EQ(answer["model"], "demo-texto:latest");
    EXPECT_EQ(answer["message"]["role"], "assistant");
    EXPECT_FALSE(answer["message"]["content"].get<std::string>().empty());
    EXPECT_EQ(answer["done"], true);
    EXPECT_EQ(answer["done_reason"], "stop");
    EXPECT_TRUE(answer["created_at"].get<std::string>().ends_with('Z'));
    for (const char* key : {"total_duration", "load_duration", "prompt_eval_count", "eval_count", "eval_duration"}) {
        EXPECT_GT(answer[key].get<std::int64_t>(), 0) << key;
    }
}

TEST(DemoModelChat, TheLastUserMessageIsAnswered) {
    const json none = {{"role", "user"}, {"content", "hola"}};
    const json extraction = {{"role", "user"},
                             {"content", "recibir el siguiente curriculum:\nAna Ruiz Sanz\nContable\n"
                                         "Necesitas extraer la siguiente información del CV\n"}};
    const json system = {{"role", "system"}, {"content", "Sé breve"}};
    const json answer = chat({{"messages", {none, extraction, system}}});
    EXPECT_EQ(json::parse(answer["message"]["content"].get<std::string>())["profession"], "Contable");
}

TEST(DemoModelChat, WithoutMessagesLoadsAndUnloads) {
    EXPECT_EQ(chat(json::object())["done_reason"], "load");
    EXPECT_EQ(chat({{"keep_alive", 0}})["done_reason"], "unload");
    EXPECT_EQ(chat(json::object())["message"]["content"], "");
}

TEST(DemoModelChat, StreamsLinesUnlessToldNotTo) {
    const DemoReply reply =
        post("/api/chat", R"({"model":"demo-texto","messages":[{"role":"user","content":"¿qué hora es?"}]})");
    EXPECT_TRUE(reply.streamed);
    EXPECT_EQ(reply.contentType, "application/x-ndjson");
    std::string content;
    std::istringstream lines(reply.body);
    json last;
    for (std::string line; std::getline(lines, line);) {
        last = json::parse(line);
        content += last["message"]["content"].get<std::string>();
    }
    EXPECT_EQ(last["done"], true);
    EXPECT_THAT(content, testing::StartsWith("Este servidor no es un modelo de lenguaje"));
}

TEST(DemoModelChat, ErrorsAreWordedAsRealServersWordThem) {
    EXPECT_EQ(post("/api/chat", R"({"model":"llama9","messages":[]})"), error(404, "model 'llama9' not found"));
    EXPECT_EQ(post("/api/chat", R"({"messages":[]})"), error(400, "model is required"));
    EXPECT_EQ(post("/api/chat", R"({"model":"demo-vectores","messages":[]})"),
              error(400, "\"demo-vectores:latest\" does not support chat"));
    EXPECT_EQ(post("/api/chat", R"({"model":"demo-texto","think":true,"messages":[]})"),
              error(400, "\"demo-texto:latest\" does not support thinking"));
}

TEST(DemoModelEmbed, OneTextGivesAListOfOneUnitVector) {
    const json answer = posted("/api/embed", {{"model", "demo-vectores"}, {"input", "Contable"}});
    EXPECT_EQ(answer["model"], "demo-vectores");
    ASSERT_EQ(answer["embeddings"].size(), 1U);
    const auto vector = answer["embeddings"][0].get<std::vector<double>>();
    ASSERT_EQ(vector.size(), 768U);
    double squares = 0;
    for (const double value : vector) {
        squares += value * value;
    }
    EXPECT_NEAR(std::sqrt(squares), 1.0, 1e-6);
    EXPECT_GT(answer["prompt_eval_count"].get<int>(), 0);
}

TEST(DemoModelEmbed, VectorsFollowTheOrderOfTheInput) {
    const auto vectors = [](const json& input) {
        return posted("/api/embed", {{"model", "demo-vectores"}, {"input", input}})["embeddings"];
    };
    const json both = vectors({"Contable", "Enfermera"});
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0], vectors("Contable")[0]);
    EXPECT_EQ(both[1], vectors("Enfermera")[0]);
}

TEST(DemoModelEmbed, EmptyInputGivesNoVectors) {
    for (const char* body : {R"({"model":"demo-vectores","input":""})", R"({"model":"demo-vectores","input":[]})",
                             R"({"model":"demo-vectores"})"}) {
        EXPECT_EQ(post("/api/embed", body).body, R"({"model":"demo-vectores","embeddings":[]})");
    }
}

TEST(DemoModelEmbed, ErrorsAreWordedAsRealServersWordThem) {
    EXPECT_EQ(post("/api/embed", R"({"model":"demo-vectores","input":5})"), error(400, "invalid input type"));
    EXPECT_EQ(post("/api/embed", R"({"model":"demo-vectores","input":["a",5]})"), error(400, "invalid input type"));
    EXPECT_EQ(post("/api/embed", R"({"model":"llama9","input":"a"})"), error(404, "model 'llama9' not found"));
    EXPECT_EQ(post("/api/embed", R"({"model":"demo-texto","input":"a"})"),
              error(501, "This server does not support embeddings. Start it with `--embeddings`"));
}

TEST(DemoModel, UnknownPathsAndMethodsAreRefusedInPlainText) {
    EXPECT_EQ(get("/api/nothing"), (DemoReply{404, "text/plain", "404 page not found", false}));
    EXPECT_EQ(get("/api/chat"), (DemoReply{405, "text/plain", "405 method not allowed", false}));
    EXPECT_EQ(post("/api/tags", "{}"), (DemoReply{405, "text/plain", "405 method not allowed", false}));
    EXPECT_EQ(demoAnswer({"DELETE", "/", "", "", ""}).status, 405);
}

TEST(DemoModel, AnotherMachinesHostOrOriginGetsAnEmpty403) {
    EXPECT_EQ(demoAnswer({"GET", "/", "", "example.com", ""}), (DemoReply{403, "", "", false}));
    EXPECT_EQ(demoAnswer({"GET", "/", "", "localhost:11434", "http://example.com"}), (DemoReply{403, "", "", false}));
    for (const char* host : {"localhost:11434", "127.0.0.1:11434", "[::1]:11434", "192.168.1.4", "a.localhost"}) {
        EXPECT_EQ(demoAnswer({"GET", "/", "", host, ""}).status, 200) << host;
    }
    EXPECT_EQ(demoAnswer({"GET", "/", "", "", "http://localhost:3000"}).status, 200);
    EXPECT_EQ(demoAnswer({"GET", "/", "", "", "null"}).status, 200);
}

TEST(DemoModelBody, AnEmptyOneIsMissing) {
    for (const char* path : {"/api/show", "/api/chat", "/api/embed"}) {
        EXPECT_EQ(post(path, ""), error(400, "missing request body")) << path;
        EXPECT_EQ(post(path, " \r\n"), error(400, "missing request body")) << path;
    }
}

TEST(DemoModelBody, ABrokenOneIsA400) {
    EXPECT_EQ(post("/api/chat", "{"), error(400, "unexpected EOF"));
    EXPECT_EQ(post("/api/chat", "{x}"), error(400, "invalid character 'x' looking for beginning of value"));
    for (const char* body :
         {"[]", "null", "5", "\"a\"", "{\"model\":5}", "{\"model\":[\"a\"],\"messages\":[]}",
          "{\"model\":\"demo-texto\",\"messages\":5}", "{\"model\":\"demo-texto\",\"messages\":[5]}",
          "{\"model\":\"demo-texto\",\"messages\":[{\"role\":5}]}", "{\"model\":\"demo-texto\",\"messages\":{\"a\":1}}",
          "{\"model\":\"a\xff\"}", "\xef\xbb\xbf{", "{\"model\":\"\\ud800\"}"}) {
        const DemoReply reply = post("/api/chat", body);
        EXPECT_EQ(reply.status, 400) << body;
        EXPECT_TRUE(json::parse(reply.body)["error"].is_string()) << body;
    }
}

TEST(DemoModelBody, DeepNestingIsSurvived) {
    std::string deep = "{\"model\":\"demo-texto\",\"x\":";
    deep += std::string(100'000, '[');
    EXPECT_EQ(post("/api/chat", deep).status, 400);
}

} // namespace
} // namespace dorvantel
