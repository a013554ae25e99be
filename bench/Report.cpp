// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>

namespace dorvantel::bench {

namespace {

/// Google Benchmark's table on standard error, and the times of every repetition kept.
class Collector final : public benchmark::ConsoleReporter {
public:
    Collector(const std::vector<std::string>& names, std::vector<std::vector<double>>& seconds)
        : ConsoleReporter(OO_Tabular)
        , m_names(names)
        , m_seconds(seconds) {
        SetOutputStream(&std::cerr);
        SetErrorStream(&std::cerr);
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations == 0) {
                continue;
            }
            const auto found = std::ranges::find(m_names, run.run_name.function_name);
            m_seconds[static_cast<std::size_t>(found - m_names.begin())].push_back(run.cpu_accumulated_time /
                                                                                   static_cast<double>(run.iterations));
        }
    }

private:
    const std::vector<std::string>& m_names;
    std::vector<std::vector<double>>& m_seconds;
};

void print(std::string_view name, double value, const char* sign, double target, std::string_view unit, bool reached) {
    if (std::isnan(value)) {
        return; // a flag kept what it is made of from being measured
    }
    std::printf("%.*s\t%.4g %.*s\t%s %.4g %.*s\t%s\n", static_cast<int>(name.size()), name.data(), value,
                static_cast<int>(unit.size()), unit.data(), sign, target, static_cast<int>(unit.size()), unit.data(),
                reached ? "ok" : "short");
    std::fflush(stdout);
}

} // namespace

double median(std::vector<double> values) {
    if (values.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    if (values.size() % 2 == 1) {
        return *middle;
    }
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

Report::Report(int argc, char** argv) {
    m_flags = {argv[0], "--benchmark_repetitions=7", "--benchmark_min_time=0.1",
               "--benchmark_enable_random_interleaving=true"};
    m_flags.insert(m_flags.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    for (std::string& flag : m_flags) {
        arguments.push_back(flag.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
}

Report::Measurement Report::add(const std::string& name, const std::function<void(benchmark::State&)>& body) {
    m_names.push_back(name);
    m_seconds.emplace_back();
    benchmark::RegisterBenchmark(name.c_str(), body)->Unit(benchmark::kMillisecond);
    return m_names.size() - 1;
}

void Report::run() {
    Collector collector(m_names, m_seconds);
    benchmark::RunSpecifiedBenchmarks(&collector);
}

double Report::seconds(Measurement measurement) const {
    return median(m_seconds.at(measurement));
}

double Report::ratio(Measurement measured, Measurement reference) const {
    return seconds(measured) / seconds(reference);
}

void Report::atMost(std::string_view name, double value, double target, std::string_view unit) const {
    print(name, value, "<=", target, unit, value <= target);
}

void Report::atLeast(std::string_view name, double value, double target, std::string_view unit) const {
    print(name, value, ">=", target, unit, value >= target);
}

} // namespace dorvantel::bench
