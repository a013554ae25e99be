// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace dorvantel {

/// The flat record of an insert and of its answer. A plain value. On the wire `jsonCVData` is a JSON text inside a
/// string and `file` is base64, left out when absent.
struct DBRecord {
    QString name;
    QString profession;
    QString email; ///< the record's key in the records service
    QString summarizedText;
    QString invitationMail;
    QString jsonCVData;             ///< made by `JSONCVData::jsonString()`
    std::optional<QByteArray> file; ///< the PDF

    bool operator==(const DBRecord&) const = default;
};

} // namespace dorvantel
