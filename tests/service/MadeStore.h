// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/service/SqliteStoreFixture.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dorvantel::test {

/// A closed store: Ana with two earlier versions (replaced, and deleted before), Bea, and Carla, who was deleted. Every
/// version has a PDF of its own but Bea's, which has none; Ana and Bea have vectors of the model "m".
class MadeStoreTest : public SqliteStoreTest {
protected:
    void SetUp() override;

    /// What is in the PDF of a version and in nothing else.
    static std::string pdfText(const std::string& version);
    /// All files below the test's folder, by name.
    std::vector<std::filesystem::path> files() const;
    void change(const char* sql) const;
};

} // namespace dorvantel::test
