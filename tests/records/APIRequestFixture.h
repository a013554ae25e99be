// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "records/APIRequest.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Wait.h"

#include <expected>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

inline const QString base = u"http://records.test/curriculums"_s;

/// What one call came to: its result and the lines it wrote.
template <typename Value>
struct Outcome {
    std::optional<std::expected<Value, APIError>> result;
    int completions = 0;
    QStringList lines;

    auto completion() {
        return [this](std::expected<Value, APIError> received) {
            result = std::move(received);
            ++completions;
        };
    }
};

inline const std::unexpected<TransportError> noNetwork{TransportError{u"Connection refused"_s}};

struct APIRequestTest : testing::Test {
    FakeHttpSession session;
    std::unique_ptr<APIRequest> api = std::make_unique<APIRequest>(session, base);

    template <typename Value, typename Call>
    Outcome<Value> run(Call call, HttpOutcome answer) {
        Outcome<Value> outcome;
        CapturedOutput output;
        call(outcome.completion());
        EXPECT_EQ(outcome.completions, 0) << "completed inside the call";
        session.answer(std::move(answer));
        EXPECT_TRUE(waitUntil([&] { return outcome.completions > 0; }));
        outcome.lines = output.lines();
        EXPECT_EQ(outcome.completions, 1);
        return outcome;
    }

    auto fetchAll(HttpOutcome answer) {
        return run<std::vector<DBRecordPointer>>([this](auto done) { api->fetchAll(done); }, std::move(answer));
    }
    auto fetchPDF(const QString& key, HttpOutcome answer) {
        return run<std::optional<QByteArray>>([&](auto done) { api->fetchPDF(key, done); }, std::move(answer));
    }
    auto insert(const DBRecordRepresentation& record, HttpOutcome answer) {
        return run<DBRecord>([&](auto done) { api->insertResume(record, done); }, std::move(answer));
    }
    auto search(const QString& sql, HttpOutcome answer) {
        return run<std::shared_ptr<IdentifiableSearchResponse>>([&](auto done) { api->search(sql, done); },
                                                                std::move(answer));
    }
    QStringList deleted(const QString& key, HttpOutcome answer) {
        CapturedOutput output;
        api->deleteResume(key);
        session.answer(std::move(answer));
        return output.lines();
    }
};

inline HttpOutcome reply(int status, const QByteArray& body) {
    return HttpResponse{status, body};
}

inline HttpOutcome notHttp() {
    return HttpResponse{std::nullopt, "text"};
}

inline const QByteArray listedRecord = R"({"name":"Ana","profession":"Contable","email":"ana@example.com",)"
                                       R"("summarizedText":"Resumen","invitationMail":"Estimada Ana",)"
                                       R"("jsonCVData":{"gender":"Femenino","softSkills":["A"],"techSkills":["X"],)"
                                       R"("languages":["Español"]}})";

inline QByteArray listOf(const QByteArray& record) {
    return "{\"response\":[" + record + "]}";
}

inline QByteArray without(QByteArray record, const QByteArray& member) {
    EXPECT_TRUE(record.contains(member));
    return record.replace(member, "");
}

} // namespace dorvantel::test
