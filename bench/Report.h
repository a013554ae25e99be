// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace dorvantel::bench {

/// The middle value, or the mean of the two middle ones; not a number without values.
double median(std::vector<double> values);

/// The figures of one benchmark program. Everything to be timed is given to `measure` first, `run` times it all in one
/// run, and the figures are printed after that, one line each on standard output, tab separated:
///
///     name    value    target    ok|short
///
/// The repetitions of all measurements are shuffled into each other, so that a machine that slows down for a while
/// slows down both sides of a ratio. Google Benchmark does the timing and its table goes to standard error; its flags
/// are understood and come after ours, so `--benchmark_repetitions=15` holds.
class Report {
public:
    /// Handle of one measurement, as `measure` gave it.
    using Measurement = std::size_t;

    Report(int argc, char** argv);
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    /// Registers `work`, a callable without arguments. What it returns is kept from being optimised away and is
    /// destroyed outside the measured time; give back nothing where an iteration takes only microseconds.
    template <typename Work>
    Measurement measure(const std::string& name, Work work) {
        return add(name, [work](benchmark::State& state) {
            for ([[maybe_unused]] auto _ : state) {
                if constexpr (std::is_void_v<std::invoke_result_t<const Work&>>) {
                    work();
                } else {
                    auto result = work();
                    benchmark::DoNotOptimize(result);
                    state.PauseTiming();
                    {
                        [[maybe_unused]] const auto discarded = std::move(result);
                    }
                    state.ResumeTiming();
                }
            }
        });
    }

    /// Times everything registered so far. Once.
    void run();

    /// Processor time of one iteration in seconds: the median of the repetitions (seven unless a flag says otherwise).
    double seconds(Measurement measurement) const;
    /// How many times as long `measured` takes as `reference`.
    double ratio(Measurement measured, Measurement reference) const;

    /// Prints a figure. `unit` follows the value and the target, for example "times" or "MB/s".
    void atMost(std::string_view name, double value, double target, std::string_view unit) const;
    void atLeast(std::string_view name, double value, double target, std::string_view unit) const;

private:
    Measurement add(const std::string& name, const std::function<void(benchmark::State&)>& body);

    std::deque<std::string> m_flags;
    std::vector<std::string> m_names;
    std::vector<std::vector<double>> m_seconds; ///< of each measurement, one value per repetition
};

} // namespace dorvantel::bench
