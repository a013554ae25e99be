// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"
#include "service/candidates/Store.h"

#include <QTemporaryDir>

#include <filesystem>
#include <string>
#include <vector>

namespace dorvantel::test {

/// A folder of a test's own with the place for a store in it.
class StoreFolder {
public:
    std::filesystem::path path() const { return m_folder.path().toStdString(); }
    std::filesystem::path store() const { return path() / "records.sqlite"; }

private:
    QTemporaryDir m_folder;
};

std::string fileBytes(const std::filesystem::path& path);

/// A row of an answer with texts of its own.
struct FoundRow {
    std::string name;
    std::string profession;
    std::string email;
    std::string summarizedText;
    std::string invitationMail;
    std::string cvDataJSON;
    float score = 0;

    bool operator==(const FoundRow&) const = default;
};

/// A record whose fields all differ from each other and from those of other e-mails.
service::Record makeRecord(const std::string& email, service::CVData cvData = {"Femenino", {}, {}, {}});

/// What an insert of `record` carries: the body of a POST.
std::string insertBody(const service::Record& record);

/// All rows of the plan's answer; a test failure when there is none.
std::vector<FoundRow> rowsOf(service::Store& store, const service::Plan& plan = {});
std::vector<std::string> emailsOf(service::Store& store, const service::Plan& plan = {});

/// The id under which the store has the candidate's version, by way of the queue for vectors; 0 when it is not queued.
std::int64_t queuedId(service::Store& store, const std::string& email);

} // namespace dorvantel::test
