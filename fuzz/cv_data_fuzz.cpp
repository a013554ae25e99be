// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/JSONCVData.h"
#include "fuzz/Fuzz.h"
#include "service/candidates/CVText.h"

#include <QList>

#include <array>

using namespace dorvantel;
using namespace dorvantel::fuzz;

namespace {

/// The lists of the input's code units: U+FFFE ends a list, U+FFFF an element.
JSONCVData cvDataOf(const QString& input) {
    JSONCVData data;
    const QStringList parts = input.split(QChar(0xFFFE));
    data.gender = parts[0];
    const std::array lists{&data.softSkills, &data.techSkills, &data.languages};
    for (qsizetype i = 1; i < parts.size(); ++i) {
        lists[static_cast<std::size_t>(i) % lists.size()]->append(parts[i].split(QChar(0xFFFF)));
    }
    return data;
}

/// As UTF-8, in which half a surrogate pair is U+FFFD.
std::vector<std::string> utf8(const QStringList& texts) {
    std::vector<std::string> all;
    for (const QString& text : texts) {
        QString whole;
        for (const char32_t codePoint : text.toUcs4()) {
            whole += QChar::fromUcs4(codePoint);
        }
        all.push_back(whole.toStdString());
    }
    return all;
}

} // namespace

/// The text that the client builds by hand for the service, with the escapes of a list that is shown: what goes in
/// comes out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const JSONCVData written = cvDataOf(unitsOf(data, size));
    const auto read = service::readCVText(written.jsonString().toStdString());
    require(read.has_value(), "the service reads what the client writes");
    require(read->gender == (written.gender == QStringLiteral("Masculino") ? "Masculino" : "Femenino"),
            "there are two genders");
    require(read->softSkills == utf8(written.softSkills), "the soft skills come through");
    require(read->techSkills == utf8(written.techSkills), "the technical skills come through");
    require(read->languages == utf8(written.languages), "the languages come through");
    return 0;
}
