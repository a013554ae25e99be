// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecord.h"

#include <QString>

#include <expected>
#include <vector>

namespace dorvantel {

/// The invented candidates of the demo profile, each with its PDF: as the application would have stored them, had
/// their CVs been dropped one by one and answered by the stand-in. Needs a QGuiApplication; on the main thread.
std::vector<DBRecord> sampleCandidates();

/// The JSON body that inserts a record.
std::string insertBody(const DBRecord& record);

/// Inserts `candidates` into the records service at `baseUrl` ("http://127.0.0.1:8765/curriculums") unless it lists
/// records already. Gives how many were inserted; the error says what went wrong with which. Blocks.
std::expected<int, QString> fillRecords(const QString& baseUrl, const std::vector<DBRecord>& candidates);

} // namespace dorvantel
