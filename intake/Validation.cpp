// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Validation.h"

#include "platform/Text.h"

namespace dorvantel {

DBRecordPointer validatedRecord(const SheetValues& values, std::optional<QByteArray> file) {
    for (const QString* field :
         {&values.name, &values.profession, &values.email, &values.summarizedText, &values.invitationMail}) {
        if (trimmed(*field).isEmpty()) {
            return nullptr;
        }
    }
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = capitalized(trimmed(values.name));
    record->profession = values.profession;
    record->email = trimmed(values.email).toLower();
    record->summarizedText = values.summarizedText;
    record->invitationMail = values.invitationMail;
    record->jsonCVData = {values.gender, values.softSkills.all(), values.techSkills.all(), values.languages.all()};
    record->file = std::move(file);
    return record;
}

} // namespace dorvantel
