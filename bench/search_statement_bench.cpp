// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "search/Query.h"
#include "search/VectorText.h"

#include <charconv>
#include <random>
#include <vector>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t dimensions = 4096;

/// Of unit length, as embedding models give them.
std::vector<double> embedding() {
    std::mt19937_64 random(4096);
    std::normal_distribution<double> normal(0, 1.0 / 64);
    std::vector<double> vector(dimensions);
    for (double& value : vector) {
        value = normal(random);
    }
    return vector;
}

/// The least that composing has to do: the digits of every number, each written over the one before.
std::size_t printNumbers(const std::vector<double>& vector) {
    char buffer[32];
    std::size_t length = 0;
    for (const double value : vector) {
        length += static_cast<std::size_t>(std::to_chars(buffer, buffer + sizeof buffer, value).ptr - buffer);
        benchmark::DoNotOptimize(buffer);
    }
    return length;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<double> vector = embedding();
    const QStringList clauses = clauseList({.genderRequired = Gender::female,
                                            .techSkillsRequiredTokens = {u"Excel"_s, u"Contabilidad"_s},
                                            .languagesRequiredTokens = {u"Inglés"_s}});

    bench::Report report(argc, argv);
    const auto bare = report.measure("print-4096-numbers", [&] { benchmark::DoNotOptimize(printNumbers(vector)); });
    const auto composed = report.measure("semantic-statement-4096",
                                         [&] { benchmark::DoNotOptimize(semanticStatement(vector, clauses).size()); });
    report.run();
    report.atMost("semantic statement of 4096 numbers / bare number printing", report.ratio(composed, bare), 1.5,
                  "times");
}
