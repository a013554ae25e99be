// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/faults/FaultTable.h"

#include <QStringList>

namespace dorvantel::test {

// What the clients write about an answer, line by line, and behind "= " what their caller gets. Callers of the records
// client get the name of the error, callers of the model client its text.

QStringList expectedOfList(const Reading& reading, qsizetype healthyBytes);
QStringList expectedOfPDF(const Reading& reading, const QString& key);
QStringList expectedOfInsert(const Reading& reading, const QString& key, const QString& baseUrl);
QStringList expectedOfDelete(const Reading& reading);
QStringList expectedOfSearch(const Reading& reading);

QStringList expectedOfTags(const Reading& reading);
QStringList expectedOfShow(const Reading& reading);
/// Of a chat and of an embedding.
QStringList expectedOfModel(const Reading& reading);

} // namespace dorvantel::test
