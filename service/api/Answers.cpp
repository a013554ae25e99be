// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Answers.h"

#include "platform/JsonEscaping.h"
#include "service/candidates/JsonText.h"

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

/// Holds a piece of the PDF at a time and nothing of the store in between: whoever takes it slowly hinders nobody.
class FileAnswer final : public AnswerBody {
public:
    FileAnswer(Store& store, std::int64_t version, std::size_t size)
        : m_store(store)
        , m_version(version)
        , m_size(size) {}

    Stored<bool> next(std::string& block) override {
        if (m_at == m_piece.size() && m_begin + m_at < m_size) {
            m_begin += m_at;
            m_at = 0;
            auto piece = m_store.pdfPiece(m_version, m_begin, pieceSize);
            if (!piece) {
                return std::unexpected(piece.error());
            }
            m_piece = std::move(*piece);
        }
        block += m_begin + m_at == 0 ? "{\"file\":[" : ",";
        const std::string_view part = std::string_view(m_piece).substr(m_at, blockSize / 4);
        appendByteNumbers(block, part);
        m_at += part.size();
        if (m_begin + m_at < m_size) {
            return true;
        }
        block += "]}";
        return false;
    }

private:
    /// To find the place of a piece, the store walks over all before it.
    static constexpr std::size_t pieceSize = std::size_t{512} * 1024;

    Store& m_store;
    std::int64_t m_version;
    std::size_t m_size;
    std::string m_piece;
    std::size_t m_begin = 0; ///< of the piece in the PDF
    std::size_t m_at = 0;    ///< in the piece
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

std::unique_ptr<AnswerBody> fileAnswer(Store& store, std::int64_t version, std::size_t size) {
    return std::make_unique<FileAnswer>(store, version, size);
}

} // namespace dorvantel::service
