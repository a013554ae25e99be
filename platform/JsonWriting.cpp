// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonWriting.h"

namespace dorvantel {

namespace {

void appendEscaped(QByteArray& out, char c) {
    switch (c) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        break;
    }
    if (static_cast<unsigned char>(c) < 0x20) {
        out += "\\u" + QByteArray::number(static_cast<int>(c), 16).rightJustified(4, '0');
    } else {
        out += c;
    }
}

} // namespace

bool appendJsonString(QByteArray& out, QStringView text) {
    if (!text.isValidUtf16()) {
        return false;
    }
    out += '"';
    for (const char c : text.toUtf8()) {
        appendEscaped(out, c);
    }
    out += '"';
    return true;
}

} // namespace dorvantel
