// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

/// The records service speaks UTF-8 on both of its sides, so its texts are UTF-8 in `std::string`, valid by the time
/// they are in one of these values. NUL and every other control character are ordinary content.
namespace dorvantel::service {

/// What a CV says that a search can ask for.
struct CVData {
    std::string gender; ///< "Masculino" or "Femenino" as the client writes it; any text is stored
    std::vector<std::string> softSkills;
    std::vector<std::string> techSkills;
    std::vector<std::string> languages;

    bool operator==(const CVData&) const = default;
};

/// One candidate as an insert brings it.
struct Record {
    std::string name;
    std::string profession;
    std::string email; ///< the key; never empty
    std::string summarizedText;
    std::string invitationMail;
    std::string jsonCVData;          ///< the text as it came, kept byte for byte
    CVData cvData;                   ///< what `jsonCVData` says
    std::optional<std::string> file; ///< the PDF's bytes

    bool operator==(const Record&) const = default;
};

} // namespace dorvantel::service
