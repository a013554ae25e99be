// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/Versions.h"

#include "service/store/StoreCheck.h"
#include "tests/service/ServiceSupport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>

#include <gmock/gmock.h>

namespace dorvantel::test {

using namespace service;

namespace {

constexpr std::string_view professionMark = "Profession of version ";

} // namespace

Record Versions::record(const std::string& email, int version) const {
    Record record = makeRecord(email, {"Femenino", {}, {"Excel"}, {}});
    record.name = std::to_string(version);
    record.profession = std::string(professionMark) + record.name;
    record.file = pdf(version);
    return record;
}

std::string Versions::pdf(int version) const {
    std::mt19937_64 random(static_cast<unsigned>(version));
    const std::size_t size = random() % m_largestPDF;
    std::string bytes;
    while (bytes.size() < size) {
        const std::uint64_t some = random();
        bytes.append(reinterpret_cast<const char*>(&some), std::min(sizeof some, size - bytes.size()));
    }
    return bytes;
}

std::vector<float> Versions::vector(int version) {
    const auto angle = static_cast<float>(version);
    return {std::cos(angle), std::sin(angle)};
}

int Versions::versionIn(const std::string& text) {
    const std::size_t at = text.find(professionMark);
    int version = 0;
    if (at != std::string::npos) {
        std::from_chars(text.data() + at + professionMark.size(), text.data() + text.size(), version);
    }
    return version;
}

std::size_t Versions::expectSound(const std::filesystem::path& store) const {
    const SqliteDatabase database = openForReading(store.string());
    EXPECT_THAT(checkStore(database).problems, testing::IsEmpty());
    SqliteStatement read(database, "SELECT name, email, profession, bytes, floats FROM record "
                                   "LEFT JOIN pdf ON pdf.record = id LEFT JOIN vector ON vector.record = id");
    std::size_t vectors = 0;
    while (read.step()) {
        const int version = std::stoi(std::string(read.text(0)));
        const Record expected = record(std::string(read.text(1)), version);
        EXPECT_EQ(read.text(2), expected.profession);
        EXPECT_TRUE(read.blob(3) == expected.file) << "the PDF of version " << version;
        const std::string_view floats = read.blob(4);
        if (floats.empty()) {
            continue;
        }
        ++vectors;
        const std::vector<float> expectedVector = vector(version);
        std::vector<float> numbers(floats.size() / sizeof(float));
        std::memcpy(numbers.data(), floats.data(), numbers.size() * sizeof(float));
        EXPECT_THAT(numbers, testing::Pointwise(testing::FloatNear(1e-6F), expectedVector)) << "version " << version;
    }
    return vectors;
}

void Versions::expectKept(const std::filesystem::path& store,
                          const std::vector<std::pair<std::string, int>>& emailsAndVersions) const {
    const SqliteDatabase database = openForReading(store.string());
    SqliteStatement find(database, "SELECT bytes FROM (SELECT id, email, name FROM record UNION ALL "
                                   "SELECT id, email, name FROM history) JOIN pdf ON record = id "
                                   "WHERE email = ? AND name = ?");
    for (const auto& [email, version] : emailsAndVersions) {
        const std::string name = std::to_string(version);
        find.bind(0, std::string_view(email));
        find.bind(1, std::string_view(name));
        ASSERT_TRUE(find.step()) << email << " " << version;
        ASSERT_TRUE(find.blob(0) == pdf(version)) << email << " " << version;
        find.reset();
    }
}

void PossibleVersions::expect(std::map<std::string, int> current) {
    for (auto& [email, possible] : m_possible) {
        const auto found = current.find(email);
        const Version version = found == current.end() ? std::nullopt : Version(found->second);
        EXPECT_TRUE(possible.contains(version)) << email << " is " << version.value_or(0);
        possible = {version};
        current.erase(email);
    }
    EXPECT_THAT(current, testing::IsEmpty()) << "candidates that nobody inserted";
}

} // namespace dorvantel::test
