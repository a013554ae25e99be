// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace dorvantel {

/// Appends `text` as a JSON string, quotes included: only what JSON demands is escaped, everything else is UTF-8 as it
/// is. False, with nothing appended, for a text that has no UTF-8 form (half a surrogate pair). Any thread.
[[nodiscard]] bool appendJsonString(QByteArray& out, QStringView text);

/// Writes a JSON object member by member, in the order of the calls.
class JsonObjectWriter {
public:
    JsonObjectWriter& add(const char* key, const QString& text);
    JsonObjectWriter& add(const char* key, const QStringList& texts);
    JsonObjectWriter& add(const char* key, const std::optional<QString>& text);     ///< no key when absent
    JsonObjectWriter& add(const char* key, const std::optional<QByteArray>& bytes); ///< as base64; no key when absent
    JsonObjectWriter& add(const char* key, JsonObjectWriter object);

    /// The object; none when one of the texts has no UTF-8 form. Once.
    std::optional<QByteArray> take();

private:
    void begin(const char* key);

    QByteArray m_out;
    bool m_ok = true;
};

} // namespace dorvantel
