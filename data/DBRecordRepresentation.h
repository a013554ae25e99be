// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecord.h"
#include "data/JSONCVData.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace dorvantel {

class PDFDocument;

/// A candidate as the user interface holds it: listed, selected, edited and deleted as one shared object. Lives on the
/// UI thread; owned by whoever holds a pointer, the application state first of all. Two objects are the same candidate
/// exactly when their `id` is the same, whatever their fields say.
///
/// `Model` announces what happens to the records it holds; a record announces nothing by itself.
struct DBRecordRepresentation {
    using PDFCallback = std::function<void(std::shared_ptr<PDFDocument>)>;

    QUuid id = QUuid::createUuid(); ///< never leaves the program
    QString name;
    QString profession;
    QString email; ///< the record's key in the records service
    std::optional<QString> summarizedText;
    std::optional<QString> invitationMail;
    JSONCVData jsonCVData;
    std::optional<QByteArray> file;              ///< the PDF; absent until it was loaded or supplied by intake
    std::vector<PDFCallback> pdfLoadCallbacks{}; ///< who waits for the PDF; empty unless it is being loaded
    std::unique_ptr<QObject> pdfOpening;         ///< bounds the opening of `file`: it is given up with the record

    DBRecordRepresentation() = default;
    /// The candidate of that identity, for who reads a stored one or makes so many that fresh ones have to be cheap.
    explicit DBRecordRepresentation(const QUuid& identity)
        : id(identity) {}
    // A candidate has an identity: it is shared, never copied.
    DBRecordRepresentation(const DBRecordRepresentation&) = delete;
    DBRecordRepresentation& operator=(const DBRecordRepresentation&) = delete;

    /// `file` as a document. Null until it was opened, and for good when it does not open. Never loads anything.
    std::shared_ptr<PDFDocument> pdfDocument() const { return m_opened.value_or(nullptr); }
    /// Whether it is known what `file` is as a document.
    bool isPDFOpened() const { return m_opened.has_value(); }
    /// Keeps what opening `file` gave, null when it is no PDF, so that it is opened once in the record's life.
    void keepDocument(std::shared_ptr<PDFDocument> document) { m_opened = std::move(document); }

    /// The record to insert. Stops the program when the summary or the mail is absent: intake fills both.
    DBRecord toDBRecord() const;

    bool operator==(const DBRecordRepresentation& other) const { return id == other.id; }

private:
    std::optional<std::shared_ptr<PDFDocument>> m_opened;
};

inline std::size_t qHash(const DBRecordRepresentation& record, std::size_t seed = 0) {
    return qHash(record.id, seed);
}

using DBRecordPointer = std::shared_ptr<DBRecordRepresentation>;

} // namespace dorvantel
