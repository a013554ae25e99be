// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Plan.h"
#include "service/store/SqliteStore.h"
#include "tests/service/ServiceSupport.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace dorvantel::test {

class SqliteStoreTest : public testing::Test {
protected:
    /// A look into the file beside the store.
    std::string value(const std::string& sql) const {
        return service::SqliteDatabase(folder.store().string(), service::SqliteDatabase::Access::ReadOnly).text(sql);
    }

    static service::Plan having(std::vector<service::Predicate> predicates) {
        return {std::move(predicates), std::nullopt, std::nullopt};
    }
    static service::Plan similarTo(std::vector<float> vector, std::vector<service::Predicate> predicates = {}) {
        return {std::move(predicates), std::move(vector), 5};
    }
    static std::string pdfOf(service::Store& store, std::string_view email) {
        const auto pdf = store.pdf(email);
        if (!*pdf) {
            return "unknown";
        }
        return (*pdf)->size ? *store.pdfPiece((*pdf)->version, 0, *(*pdf)->size) : "none";
    }

    StoreFolder folder;
};

} // namespace dorvantel::test
