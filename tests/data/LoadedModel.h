// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/Model.h"

#include "tests/support/FakeRecordsService.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace dorvantel::test {

inline DBRecordPointer candidate(const QString& name, const JSONCVData& data = {}) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = name;
    record->jsonCVData = data;
    return record;
}

inline DBRecordPointer speaking(const QStringList& languages) {
    return candidate(QStringLiteral("Ana"), {.gender = {}, .softSkills = {}, .techSkills = {}, .languages = languages});
}

/// A model whose load was answered with `records`, and the service behind it.
struct LoadedModel {
    explicit LoadedModel(std::vector<DBRecordPointer> records) {
        bool rebuilt = false;
        const auto connection =
            QObject::connect(&model, &Model::cataloguesRebuilt, &model, [&rebuilt] { rebuilt = true; });
        service.answerFetchAll(std::move(records));
        EXPECT_TRUE(waitUntil([&rebuilt] { return rebuilt; }));
        QObject::disconnect(connection);
    }
    FakeRecordsService service;
    Model model{service};
};

} // namespace dorvantel::test
