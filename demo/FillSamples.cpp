// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/FillSamples.h"

#include "data/JSONCVData.h"
#include "demo/ChatAnswer.h"
#include "demo/CvReader.h"
#include "demo/SampleCv.h"
#include "demo/SamplePdf.h"
#include "platform/Fatal.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <QUrl>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QString signature = u"Marta Salinas, Senior Recruiter, Ostrel de México"_s;

DBRecord candidateFrom(const SampleCv& cv) {
    const CvFacts facts = readCv(plainText(cv));
    const JSONCVData data{cv.gender, facts.softSkills, facts.techSkills, facts.languages};
    return {facts.name,        facts.profession, facts.email, facts.summary, mailAnswer(facts, signature),
            data.jsonString(), samplePdf(cv)};
}

QString failure(const QString& what, const httplib::Result& result) {
    if (!result) {
        return u"%1: %2"_s.arg(what, QString::fromStdString(httplib::to_string(result.error())));
    }
    return u"%1: HTTP %2 %3"_s.arg(what).arg(result->status).arg(QString::fromStdString(result->body).left(200));
}

// How many records the service lists already.
std::expected<std::size_t, QString> listedRecords(httplib::Client& client, const std::string& path) {
    const httplib::Result result = client.Get(path);
    if (!result || result->status != 200) {
        return std::unexpected(failure(u"the list of records"_s, result));
    }
    const nlohmann::json answer = nlohmann::json::parse(result->body, nullptr, false);
    if (!answer.is_object() || !answer.contains("response") || !answer["response"].is_array()) {
        return std::unexpected(u"the list of records: not the answer of a records service"_s);
    }
    return answer["response"].size();
}

} // namespace

std::vector<DBRecord> sampleCandidates() {
    std::vector<DBRecord> candidates;
    for (const QString& folder : {u"src"_s, u"more"_s}) {
        for (const auto& [name, source] : sampleSources(folder)) {
            const std::expected<SampleCv, QString> cv = parseSampleCv(source);
            if (!cv) {
                fatalError(name + u".md: "_s + cv.error());
            }
            candidates.push_back(candidateFrom(*cv));
        }
    }
    return candidates;
}

std::string insertBody(const DBRecord& record) {
    nlohmann::ordered_json body = {{"name", record.name.toStdString()},
                                   {"profession", record.profession.toStdString()},
                                   {"email", record.email.toStdString()},
                                   {"summarizedText", record.summarizedText.toStdString()},
                                   {"invitationMail", record.invitationMail.toStdString()},
                                   {"jsonCVData", record.jsonCVData.toStdString()}};
    if (record.file) {
        body["file"] = record.file->toBase64().toStdString();
    }
    return body.dump();
}

std::expected<int, QString> fillRecords(const QString& baseUrl, const std::vector<DBRecord>& candidates) {
    const QUrl url(baseUrl);
    if (!url.isValid() || url.scheme() != "http"_L1 || url.host().isEmpty()) {
        return std::unexpected(u"%1 is no http:// address"_s.arg(baseUrl));
    }
    httplib::Client client(url.host().toStdString(), url.port(80));
    client.set_read_timeout(60);
    const httplib::Headers headers = {{"Content-Type", "application/json"}};
    client.set_default_headers(headers);
    const std::string path = url.path().isEmpty() ? "/" : url.path().toStdString();
    const std::expected<std::size_t, QString> listed = listedRecords(client, path);
    if (!listed) {
        return std::unexpected(listed.error());
    }
    if (*listed > 0) {
        return 0;
    }
    for (const DBRecord& candidate : candidates) {
        const httplib::Result result = client.Post(path, insertBody(candidate), "application/json");
        if (!result || result->status != 201) {
            return std::unexpected(failure(candidate.email, result));
        }
    }
    return static_cast<int>(candidates.size());
}

} // namespace dorvantel
