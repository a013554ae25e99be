// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dorvantel::test {

/// Candidates everything of which follows from the number of the version, so that nothing half, mixed or lost can look
/// whole.
class Versions {
public:
    explicit Versions(std::size_t largestPDF)
        : m_largestPDF(largestPDF) {}

    service::Record record(const std::string& email, int version) const;
    /// Bytes that no compression or repetition makes alike.
    std::string pdf(int version) const;
    /// Of unit length.
    static std::vector<float> vector(int version);
    /// Of the text that a candidate's vector is made of; 0 when it holds none.
    static int versionIn(const std::string& text);

    /// The store is in order by its own check, its candidates are whole, and its vectors are theirs. Returns how many
    /// vectors it has.
    std::size_t expectSound(const std::filesystem::path& store) const;
    /// These versions are in the store, current or earlier, with their PDFs.
    void expectKept(const std::filesystem::path& store,
                    const std::vector<std::pair<std::string, int>>& emailsAndVersions) const;

private:
    std::size_t m_largestPDF;
};

/// What may be current under each e-mail: a version, or none; more than one where it is not known what became of a
/// change.
class PossibleVersions {
public:
    using Version = std::optional<int>;

    /// A change was asked for; then it was done.
    void mayBecome(const std::string& email, Version version) { of(email).insert(version); }
    void became(const std::string& email, Version version) { of(email) = {version}; }

    /// Each of these is possible and no other candidate is there. From now on it is known what is current.
    void expect(std::map<std::string, int> current);

private:
    std::set<Version>& of(const std::string& email) {
        return m_possible.try_emplace(email, std::set<Version>{std::nullopt}).first->second;
    }

    std::map<std::string, std::set<Version>> m_possible;
};

} // namespace dorvantel::test
