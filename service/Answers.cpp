// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/Answers.h"

#include "platform/JsonEscaping.h"
#include "service/JsonText.h"

#include <utility>

namespace dorvantel::service {

namespace {

/// Large enough that the cost of a block does not count, small enough that many answers at once cost nothing.
constexpr std::size_t blockSize = std::size_t{64} * 1024;

void appendRow(std::string& out, const Row& row, bool withScore) {
    out += '{';
    appendJSONField(out, "name", row.name);
    out += ',';
    appendJSONField(out, "profession", row.profession);
    out += ',';
    appendJSONField(out, "email", row.email);
    out += ',';
    appendJSONField(out, "summarizedText", row.summarizedText);
    out += ',';
    appendJSONField(out, "invitationMail", row.invitationMail);
    out += ",\"jsonCVData\":";
    out += row.cvDataJSON;
    if (withScore) {
        out += ",\"score\":";
        appendNumber(out, row.score);
    }
    out += '}';
}

/// An opening text, the rows with commas between them, and "]}".
class RowsAnswer final : public AnswerBody {
public:
    RowsAnswer(std::string opening, std::unique_ptr<Rows> rows, bool withScore)
        : m_opening(std::move(opening))
        , m_rows(std::move(rows))
        , m_withScore(withScore) {}

    Stored<bool> next(std::string& block) override {
        block += m_opening;
        m_opening.clear();
        while (block.size() < blockSize) {
            Row row;
            const auto found = m_rows->next(row);
            if (!found) {
                return found;
            }
            if (!*found) {
                block += "]}";
                return false;
            }
            if (!std::exchange(m_isFirst, false)) {
                block += ',';
            }
            appendRow(block, row, m_withScore);
        }
        return true;
    }

private:
    std::string m_opening;
    std::unique_ptr<Rows> m_rows;
    bool m_withScore;
    bool m_isFirst = true;
};

class FileAnswer final : public AnswerBody {
public:
    explicit FileAnswer(std::string bytes)
        : m_bytes(std::move(bytes)) {}

    Stored<bool> next(std::string& block) override {
        block += m_at == 0 ? "{\"file\":[" : ",";
        const std::string_view piece = std::string_view(m_bytes).substr(m_at, blockSize / 4);
        appendByteNumbers(block, piece);
        m_at += piece.size();
        if (m_at < m_bytes.size()) {
            return true;
        }
        block += "]}";
        return false;
    }

private:
    std::string m_bytes;
    std::size_t m_at = 0;
};

} // namespace

std::unique_ptr<AnswerBody> listAnswer(std::unique_ptr<Rows> rows) {
    return std::make_unique<RowsAnswer>("{\"response\":[", std::move(rows), false);
}

std::unique_ptr<AnswerBody> searchAnswer(std::string_view sql, std::unique_ptr<Rows> rows) {
    std::string opening = "{";
    appendJSONField(opening, "sql", sql);
    return std::make_unique<RowsAnswer>(opening + ",\"result\":[", std::move(rows), true);
}

std::string healthJSON(const StoreStatus& status) {
    std::string out = R"({"status":"ok","records":)" + std::to_string(status.records) + R"(,"vectorsPending":)" +
                      std::to_string(status.vectorsPending) + R"(,"embeddingModel":)";
    if (status.embeddingModel.empty()) {
        out += "null";
    } else {
        appendJsonString(out, status.embeddingModel);
    }
    return out + R"(,"storeBytes":)" + std::to_string(status.bytes) + "}";
}

std::unique_ptr<AnswerBody> fileAnswer(std::string bytes) {
    return std::make_unique<FileAnswer>(std::move(bytes));
}

} // namespace dorvantel::service
