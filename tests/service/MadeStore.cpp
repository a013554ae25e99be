// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/MadeStore.h"

#include <algorithm>

namespace dorvantel::test {

void MadeStoreTest::SetUp() {
    service::SqliteStore store(folder.store(), "m");
    const auto insert = [&store](const std::string& email, const std::string& version) {
        service::Record record = makeRecord(email, {"Femenino", {"Orden"}, {"Excel"}, {"Español"}});
        record.name = "Name " + version;
        record.file = pdfText(version);
        ASSERT_TRUE(store.insert(record));
    };
    insert("ana@x", "ana-1");
    ASSERT_TRUE(store.remove("ana@x"));
    insert("carla@x", "carla-1");
    ASSERT_TRUE(store.remove("carla@x"));
    insert("ana@x", "ana-2");
    insert("ana@x", "ana-3");
    ASSERT_TRUE(store.insert(makeRecord("bea@x")));
    ASSERT_EQ(store.putVector(queuedId(store, "ana@x"), {0.6F, 0.8F}), true);
    ASSERT_EQ(store.putVector(queuedId(store, "bea@x"), {1, 0}), true);
}

std::string MadeStoreTest::pdfText(const std::string& version) {
    std::string text = "%PDF of " + version + "\n";
    for (int line = 0; line < 500; ++line) {
        text += version + "/" + std::to_string(line) + "\n";
    }
    return text;
}

std::vector<std::filesystem::path> MadeStoreTest::files() const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        found.push_back(entry.path());
    }
    std::ranges::sort(found);
    return found;
}

void MadeStoreTest::change(const char* sql) const {
    service::SqliteDatabase(folder.store().string(), service::SqliteDatabase::Access::ReadWriteCreate).execute(sql);
}

} // namespace dorvantel::test
