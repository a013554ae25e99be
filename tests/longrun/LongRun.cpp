// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/LongRun.h"

#include "tests/longrun/HeldState.h"
#include "tests/longrun/Recruiter.h"
#include "tests/longrun/Usage.h"

#include <QApplication>
#include <QPixmapCache>

#include <algorithm>
#include <vector>

namespace dorvantel::test {

namespace {

using Steps = std::vector<Recruiter::Step>;

/// The one that so large a share of them is below.
double quantile(const Steps& steps, double share, double Recruiter::Step::* number) {
    if (steps.empty()) {
        return 0;
    }
    std::vector<double> numbers;
    for (const Recruiter::Step& step : steps) {
        numbers.push_back(step.*number);
    }
    std::ranges::sort(numbers);
    return numbers[static_cast<std::size_t>(share * static_cast<double>(numbers.size()))];
}

Spent spentOn(const Steps& steps) {
    return {.median = quantile(steps, 0.5, &Recruiter::Step::ms),
            .quick = quantile(steps, 0.1, &Recruiter::Step::ms),
            .work = quantile(steps, 0.5, &Recruiter::Step::workMs)};
}

struct Laps {
    Steps intakes;
    Steps searches;
    Steps deletions;
};

Sample takeSample(const Recruiter& recruiter, int rounds, const Laps& laps) {
    QPixmapCache::clear(); // has a bound of its own
    const ProcessUsage service = usageOf(recruiter.recordsProcess());
    const Held held = heldBy(recruiter.model());
    Sample sample{.rounds = rounds,
                  .candidates = std::ssize(recruiter.model().dbRecords()),
                  .held = held.reserved,
                  .filled = held.filled,
                  .objects = ObjectCount::living(),
                  .widgets = QApplication::allWidgets().size(),
                  .serviceMemory = service.memory,
                  .serviceDescriptors = service.descriptors,
                  .serviceThreads = service.threads,
                  .intake = spentOn(laps.intakes),
                  .search = spentOn(laps.searches),
                  .deletion = spentOn(laps.deletions)};
    sample.heap = heapInUse();
    const ProcessUsage own = ownUsage();
    sample.memory = own.memory;
    sample.descriptors = own.descriptors;
    sample.threads = own.threads;
    return sample;
}

/// "other" is what is not gathered: of the memory, then of the heap.
constexpr const char* head =
    "       candi- |------------------- program, MiB -------------------------------| records service |"
    "------ median ms, of it work ----------\n"
    "rounds  dates | memory  other   heap  other gathered objects widgets fds threads|   MiB fds threads|"
    "       intake       search     deletion\n";

void print(std::FILE* table, const Sample& s) {
    const auto mib = [](qint64 bytes) { return static_cast<double>(bytes) / (1024.0 * 1024); };
    std::fprintf(table, "%6d %6d | %6.2f %6.2f %6.2f %6.3f %8.2f %7d %7d %3d %7d| %5.2f %3d %7d|", s.rounds,
                 static_cast<int>(s.candidates), mib(s.memory), mib(s.memory - s.filled), mib(s.heap),
                 mib(s.heap - s.held), mib(s.held), static_cast<int>(s.objects), static_cast<int>(s.widgets),
                 s.descriptors, s.threads, mib(s.serviceMemory), s.serviceDescriptors, s.serviceThreads);
    for (const Spent& spent : {s.intake, s.search, s.deletion}) {
        std::fprintf(table, " %6.1f %5.1f", spent.median, spent.work);
    }
    std::fputc('\n', table);
    std::fflush(table);
}

void search(Recruiter& recruiter, int round, Laps& laps) {
    constexpr int kinds = 4;
    switch (round % kinds) {
    case 0:
        recruiter.searchBySkill();
        break;
    case 1:
        recruiter.searchForEverybody();
        break;
    default:
        laps.searches.push_back(recruiter.searchByDescription());
    }
}

} // namespace

QList<Sample> runLong(Recruiter& recruiter, const Length& length, std::FILE* table) {
    QList<Sample> samples;
    Laps laps;
    int deletions = 0;
    std::fputs(head, table);
    for (int round = 1; round <= length.rounds; ++round) {
        laps.intakes.push_back(recruiter.takeIn());
        search(recruiter, round, laps);
        if (round * length.deletions / length.rounds > deletions) {
            laps.deletions.push_back(recruiter.lookAtAndDelete());
            ++deletions;
        }
        if (round % length.roundsPerSample == 0) {
            recruiter.rest();
            samples.append(takeSample(recruiter, round, laps));
            print(table, samples.last());
            laps = {};
        }
    }
    return samples;
}

} // namespace dorvantel::test
