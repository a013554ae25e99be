// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "platform/JsonEscaping.h"
#include "platform/JsonWriting.h"
#include "service/api/RequestBodies.h"

#include <QString>

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// A text that the client writes as a JSON string is the text that the service reads.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = unitsOf(data, size);
    QByteArray written;
    const bool isWritten = appendJsonString(written, text);
    require(isWritten == text.isValidUtf16(), "every text with a UTF-8 form is written");
    if (!isWritten) {
        require(written.isEmpty(), "nothing is left of a text without one");
        return 0;
    }
    const std::string utf8 = text.toStdString();
    std::string direct;
    appendJsonString(direct, utf8);
    require(direct == written.toStdString(), "both ways of writing agree");
    std::string body = direct;
    const auto read = service::readKeyBody(body);
    require(read ? *read == utf8 : utf8.empty(), "the service reads what was written");
    return 0;
}
