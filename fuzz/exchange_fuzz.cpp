// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/JSONCVData.h"
#include "fuzz/Fuzz.h"
#include "records/WireRecords.h"
#include "service/api/Answers.h"
#include "service/api/RequestBodies.h"
#include "service/candidates/JsonText.h"

#include <array>
#include <cmath>
#include <cstring>

using namespace dorvantel;
using namespace dorvantel::fuzz;

namespace {

struct Candidate {
    DBRecord record;
    JSONCVData cvData;
    float score = 0;
};

QString qText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// The six texts, the PDF, the score's bytes, and skills for as long as there are parts.
Candidate candidateOf(std::string_view input) {
    Candidate candidate;
    DBRecord& record = candidate.record;
    JSONCVData& cvData = candidate.cvData;
    const std::array texts{&record.name,           &record.profession,     &record.email,
                           &record.summarizedText, &record.invitationMail, &cvData.gender};
    const std::array lists{&cvData.softSkills, &cvData.techSkills, &cvData.languages};
    const std::vector<std::string_view> parts = partsOf(input);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i < texts.size()) {
            *texts[i] = qText(parts[i]);
        } else if (i == texts.size()) {
            record.file = QByteArray(parts[i].data(), static_cast<qsizetype>(parts[i].size()));
        } else if (i == texts.size() + 1) {
            std::memcpy(&candidate.score, parts[i].data(), std::min(parts[i].size(), sizeof(float)));
        } else {
            lists[i % lists.size()]->append(qText(parts[i]));
        }
    }
    if (!std::isfinite(candidate.score)) {
        candidate.score = 0;
    }
    record.jsonCVData = cvData.jsonString();
    cvData.gender = isMasculine(cvData.gender) ? QStringLiteral("Masculino") : QStringLiteral("Femenino");
    return candidate;
}

/// The one candidate of a store, as often as it is told, as the store gives it to an answer.
class SameRows final : public service::Rows {
public:
    SameRows(const service::Record& record, float score, int count)
        : m_record(record)
        , m_cvData(service::cvDataJSON(record.cvData))
        , m_score(score)
        , m_left(count) {}

    service::Stored<bool> next(service::Row& row) override {
        row = {m_record.name,
               m_record.profession,
               m_record.email,
               m_record.summarizedText,
               m_record.invitationMail,
               m_cvData,
               m_score};
        return m_left-- > 0;
    }

private:
    const service::Record& m_record;
    std::string m_cvData;
    float m_score;
    int m_left;
};

QByteArray whole(service::AnswerBody& answer) {
    std::string all;
    for (bool more = true; more;) {
        std::string block;
        const auto next = answer.next(block);
        require(next.has_value(), "nothing can fail");
        all += block;
        more = *next;
    }
    return QByteArray::fromStdString(all);
}

void requireListed(const Candidate& sent, const service::Record& stored) {
    const auto list =
        decodeQueryResponse(whole(*service::listAnswer(std::make_unique<SameRows>(stored, sent.score, 2))));
    require(list && list->size() == 2, "the client reads the service's list");
    const DBRecordRepresentation& listed = *list->back();
    const DBRecord& record = sent.record;
    require(listed.name == record.name && listed.profession == record.profession && listed.email == record.email &&
                listed.summarizedText == record.summarizedText && listed.invitationMail == record.invitationMail,
            "the texts come through a list");
    require(listed.jsonCVData == sent.cvData, "the CV data comes through a list");
}

void requireFound(const Candidate& sent, const service::Record& stored) {
    const DBRecord& record = sent.record;
    const auto answer = decodeSearchResponse(
        whole(*service::searchAnswer(stored.name, std::make_unique<SameRows>(stored, sent.score, 1))));
    require(answer && answer->result.size() == 1, "the client reads the service's search answer");
    require(answer->sql == record.name, "the statement comes through a search");
    const QueryResult& row = answer->result.back();
    require(row.name == record.name && row.profession == record.profession && row.email == record.email &&
                row.summarizedText == record.summarizedText && row.invitationMail == record.invitationMail,
            "the texts come through a search");
    require(row.jsonCVData == sent.cvData && row.score == sent.score,
            "the CV data and the score come through a search");
}

void requireDownloaded(const Candidate& sent, const service::Record& stored) {
    std::string body = R"({"file":[)";
    service::appendByteNumbers(body, stored.file.value_or(std::string()));
    const auto answer = decodeFileResponse(QByteArray::fromStdString(body + "]}"));
    require(answer && answer->file.value_or(QByteArray()) == sent.record.file.value_or(QByteArray()),
            "the PDF comes through a download");
}

} // namespace

/// A candidate that the client sends: the service reads it, and the client finds it unchanged in all answers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Candidate sent = candidateOf(textOf(data, size));
    const std::optional<QByteArray> encoded = encodeDBRecord(sent.record);
    require(encoded.has_value(), "every text has a UTF-8 form");
    std::string body = encoded->toStdString();
    const auto stored = service::readInsertBody(body);
    require(stored.has_value() == !sent.record.email.isEmpty(), "a record with a key is taken");
    if (stored) {
        const auto answered = decodeDBRecord(QByteArray::fromStdString(service::recordJSON(*stored)));
        require(answered == sent.record, "an insert is answered with what was inserted");
        requireListed(sent, *stored);
        requireFound(sent, *stored);
        requireDownloaded(sent, *stored);
    }
    return 0;
}
