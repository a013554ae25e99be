// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/records/PlainDecoder.h"

#include <QStringDecoder>

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace dorvantel::test {

namespace {

using nlohmann::json;
using Kind = DecodeError::Kind;

/// A value and the way to it; reading what is not there throws the error.
class Place {
public:
    Place(const json& value, QStringList path)
        : m_value(value)
        , m_path(std::move(path)) {}

    Place member(const char* key) const {
        expect(m_value.is_object(), "Dictionary<String, Any>");
        if (!m_value.contains(key)) {
            throw DecodeError{Kind::KeyNotFound, QString::fromUtf8(key), {}, m_path};
        }
        return {m_value[key], m_path + QStringList{QString::fromUtf8(key)}};
    }
    std::optional<Place> optionalMember(const char* key) const {
        expect(m_value.is_object(), "Dictionary<String, Any>");
        if (!m_value.contains(key) || m_value[key].is_null()) {
            return std::nullopt;
        }
        return member(key);
    }
    std::vector<Place> elements() const {
        expect(m_value.is_array(), "Array<Any>");
        std::vector<Place> places;
        for (const json& element : m_value) {
            places.emplace_back(element, m_path + QStringList{QStringLiteral("Index %1").arg(places.size())});
        }
        return places;
    }
    QString text() const {
        expect(m_value.is_string(), "String");
        // Unlike QString::fromUtf8, which takes a U+FEFF in front for a mark of the encoding.
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        return decoder.decode(QByteArrayView(m_value.get_ref<const std::string&>()));
    }
    QStringList texts() const {
        QStringList texts;
        for (const Place& element : elements()) {
            texts.append(element.text());
        }
        return texts;
    }
    float number() const {
        expect(m_value.is_number(), "Float");
        const double value = m_value.get<double>();
        if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
            throw DecodeError{Kind::DataCorrupted, {}, {}, m_path};
        }
        return static_cast<float>(value);
    }
    QByteArray bytes() const {
        QByteArray bytes;
        for (const Place& element : elements()) {
            element.expect(element.m_value.is_number(), "UInt8");
            const double value = element.m_value.get<double>();
            if (value < 0 || value > 255 || value != std::floor(value)) {
                throw DecodeError{Kind::DataCorrupted, {}, {}, element.m_path};
            }
            bytes.append(static_cast<char>(static_cast<unsigned char>(value)));
        }
        return bytes;
    }
    QByteArray base64() const {
        const QByteArray encoded = text().toUtf8();
        const auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded || encoded.size() % 4 != 0) {
            throw DecodeError{Kind::DataCorrupted, {}, {}, m_path};
        }
        return *decoded;
    }
    JSONCVData cvData() const {
        return {member("gender").text(), member("softSkills").texts(), member("techSkills").texts(),
                member("languages").texts()};
    }

private:
    void expect(bool isType, const char* type) const {
        if (!isType) {
            const Kind kind = m_value.is_null() ? Kind::ValueNotFound : Kind::TypeMismatch;
            throw DecodeError{kind, QString::fromUtf8(type), {}, m_path};
        }
    }

    const json& m_value;
    QStringList m_path;
};

template <typename Read>
auto decode(const QByteArray& body, Read read) -> PlainlyDecoded<decltype(read(std::declval<const Place&>()))> {
    using Decoded = std::expected<decltype(read(std::declval<const Place&>())), DecodeError>;
    json document;
    try {
        document = json::parse(body.begin(), body.end());
    } catch (const json::out_of_range&) {
        return std::nullopt;
    } catch (const json::exception&) {
        return Decoded(std::unexpected(DecodeError{Kind::DataCorrupted, {}, {}, {}}));
    }
    try {
        return Decoded(read(Place(document, {})));
    } catch (const DecodeError& error) {
        return Decoded(std::unexpected(error));
    }
}

} // namespace

PlainlyDecoded<std::vector<DBRecordResponse>> plainQueryResponse(const QByteArray& body) {
    return decode(body, [](const Place& root) {
        std::vector<DBRecordResponse> records;
        for (const Place& place : root.member("response").elements()) {
            DBRecordResponse record;
            record.name = place.member("name").text();
            record.profession = place.member("profession").text();
            record.email = place.member("email").text();
            record.summarizedText = place.member("summarizedText").text();
            if (const auto mail = place.optionalMember("invitationMail")) {
                record.invitationMail = mail->text();
            }
            record.jsonCVData = place.member("jsonCVData").cvData();
            if (const auto file = place.optionalMember("file")) {
                file->bytes();
            }
            records.push_back(std::move(record));
        }
        return records;
    });
}

PlainlyDecoded<FileResponse> plainFileResponse(const QByteArray& body) {
    return decode(body, [](const Place& root) {
        FileResponse response;
        if (const auto file = root.optionalMember("file")) {
            response.file = file->bytes();
        }
        return response;
    });
}

PlainlyDecoded<SearchResponse> plainSearchResponse(const QByteArray& body) {
    return decode(body, [](const Place& root) {
        SearchResponse response;
        response.sql = root.member("sql").text();
        for (const Place& place : root.member("result").elements()) {
            QueryResult row;
            row.name = place.member("name").text();
            row.profession = place.member("profession").text();
            row.email = place.member("email").text();
            row.summarizedText = place.member("summarizedText").text();
            row.invitationMail = place.member("invitationMail").text();
            row.jsonCVData = place.member("jsonCVData").cvData();
            row.score = place.member("score").number();
            if (const auto file = place.optionalMember("file")) {
                row.file = file->bytes();
            }
            response.result.push_back(std::move(row));
        }
        return response;
    });
}

PlainlyDecoded<DBRecord> plainDBRecord(const QByteArray& body) {
    return decode(body, [](const Place& root) {
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

} // namespace dorvantel::test
