// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/records/PlainDecoder.h"

#include <algorithm>

namespace dorvantel::test {

namespace {

JSONCVData cvData(const Place& place) {
    JSONCVData data;
    data.gender = place.member("gender").text();
    data.softSkills = place.member("softSkills").texts();
    data.techSkills = place.member("techSkills").texts();
    data.languages = place.member("languages").texts();
    return data;
}

} // namespace

PlainlyDecoded<std::vector<DBRecordResponse>> plainQueryResponse(const PlainDocument& body) {
    return plainlyDecoded(body, [](const Place& root) {
        std::vector<DBRecordResponse> records;
        for (const Place& place : root.member("response").elements()) {
            DBRecordResponse record;
            record.name = place.member("name").text();
            record.profession = place.member("profession").text();
            record.email = place.member("email").text();
            record.summarizedText = place.member("summarizedText").text();
            record.invitationMail = place.optionalText("invitationMail");
            record.jsonCVData = cvData(place.member("jsonCVData"));
            if (const auto file = place.optionalMember("file")) {
                file->bytes();
            }
            records.push_back(std::move(record));
        }
        return records;
    });
}

PlainlyDecoded<FileResponse> plainFileResponse(const PlainDocument& body) {
    return plainlyDecoded(body, [](const Place& root) {
        FileResponse response;
        if (const auto file = root.optionalMember("file")) {
            response.file = file->bytes();
        }
        return response;
    });
}

PlainlyDecoded<SearchResponse> plainSearchResponse(const PlainDocument& body) {
    return plainlyDecoded(body, [](const Place& root) {
        SearchResponse response;
        response.sql = root.member("sql").text();
        for (const Place& place : root.member("result").elements()) {
            QueryResult row;
            row.name = place.member("name").text();
            row.profession = place.member("profession").text();
            row.email = place.member("email").text();
            row.summarizedText = place.member("summarizedText").text();
            row.invitationMail = place.member("invitationMail").text();
            row.jsonCVData = cvData(place.member("jsonCVData"));
            row.score = place.member("score").smallNumber();
            if (const auto file = place.optionalMember("file")) {
                row.file = file->bytes();
            }
            response.result.push_back(std::move(row));
        }
        return response;
    });
}

PlainlyDecoded<DBRecord> plainDBRecord(const PlainDocument& body) {
    return plainlyDecoded(body, [](const Place& root) {
        DBRecord record;
        record.name = root.member("name").text();
        record.profession = root.member("profession").text();
        record.email = root.member("email").text();
        record.summarizedText = root.member("summarizedText").text();
        record.invitationMail = root.member("invitationMail").text();
        record.jsonCVData = root.member("jsonCVData").text();
        if (const auto file = root.optionalMember("file")) {
            record.file = file->base64();
        }
        return record;
    });
}

bool isSame(const std::vector<DBRecordResponse>& plain, const std::vector<DBRecordPointer>& real) {
    return std::ranges::equal(plain, real, [](const DBRecordResponse& a, const DBRecordPointer& b) {
        return a.name == b->name && a.profession == b->profession && a.email == b->email &&
               a.summarizedText == b->summarizedText && a.invitationMail == b->invitationMail &&
               a.jsonCVData == b->jsonCVData && !b->file;
    });
}

bool isSame(const FileResponse& plain, const FileResponse& real) {
    return plain.file == real.file;
}

bool isSame(const SearchResponse& plain, const SearchResponse& real) {
    return plain.sql == real.sql &&
           std::ranges::equal(plain.result, real.result, [](const QueryResult& a, const QueryResult& b) {
               return a.name == b.name && a.profession == b.profession && a.email == b.email &&
                      a.summarizedText == b.summarizedText && a.invitationMail == b.invitationMail &&
                      a.jsonCVData == b.jsonCVData && a.score == b.score && a.file == b.file;
           });
}

bool isSame(const DBRecord& plain, const DBRecord& real) {
    return plain == real;
}

} // namespace dorvantel::test
