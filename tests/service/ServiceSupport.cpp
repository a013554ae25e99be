// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/ServiceSupport.h"

#include "service/api/RequestBodies.h"
#include "service/candidates/JsonText.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace dorvantel::test {

service::Record makeRecord(const std::string& email, service::CVData cvData) {
    service::Record record;
    record.name = "Name of " + email;
    record.profession = "Profession of " + email;
    record.email = email;
    record.summarizedText = "Summary of " + email;
    record.invitationMail = "Mail to " + email;
    record.cvData = std::move(cvData);
    record.jsonCVData = service::cvDataJSON(record.cvData);
    return record;
}

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string insertBody(const service::Record& record) {
    return service::recordJSON(record);
}

std::vector<FoundRow> rowsOf(service::Store& store, const service::Plan& plan) {
    std::vector<FoundRow> found;
    const auto rows = store.run(plan);
    if (!rows) {
        ADD_FAILURE() << rows.error().message;
        return found;
    }
    service::Row row;
    for (;;) {
        const auto next = (*rows)->next(row);
        EXPECT_TRUE(next) << next.error().message;
        if (!next.value_or(false)) {
            return found;
        }
        found.push_back({std::string(row.name), std::string(row.profession), std::string(row.email),
                         std::string(row.summarizedText), std::string(row.invitationMail), std::string(row.cvDataJSON),
                         row.score});
    }
}

std::vector<std::string> emailsOf(service::Store& store, const service::Plan& plan) {
    std::vector<std::string> emails;
    for (const FoundRow& row : rowsOf(store, plan)) {
        emails.push_back(row.email);
    }
    return emails;
}

std::int64_t queuedId(service::Store& store, const std::string& email) {
    std::int64_t id = 0;
    while (const auto waiting = *store.nextUnembedded(id)) {
        id = *waiting;
        const auto candidate = *store.unembedded(id); // nothing when it has got its vector meanwhile
        if (candidate && candidate->profession == "Profession of " + email) {
            return id;
        }
    }
    return 0;
}

} // namespace dorvantel::test
