// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/Judgement.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

using Samples = QList<Sample>;
using Number = std::function<double(const Sample&)>;

double least(const Samples& samples, const Number& number) {
    return number(*std::ranges::min_element(samples, {}, number));
}

double most(const Samples& samples, const Number& number) {
    return number(*std::ranges::max_element(samples, {}, number));
}

class Judge {
public:
    explicit Judge(const Samples& samples)
        : m_warmingUp(samples.first(samples.size() / 3))
        , m_middle(samples.mid(samples.size() / 3, samples.size() / 3))
        , m_end(samples.mid(samples.size() / 3 * 2))
        , m_firstQuarter(samples.first(samples.size() / 4))
        , m_lastQuarter(samples.last(samples.size() / 4)) {}

    void count(const QString& what, const Number& number, int spare) {
        const double before = least(m_middle, number);
        const double after = least(m_end, number);
        complainUnless(after <= before + spare, u"%1: %2 at the end, %3 before."_s.arg(what).arg(after).arg(before));
    }

    void share(const QString& what, const Number& bytes, double share) {
        const double before = most(m_warmingUp, bytes);
        const double after = least(m_end, bytes);
        complainUnless(after <= before * (1 + share), u"%1: %2 KiB at the end, %3 KiB after warming up."_s.arg(
                                                          what, kibibytes(after), kibibytes(before)));
    }

    /// From the middle of the run to its end.
    void growth(const QString& what, const Number& bytes, qint64 perRound) {
        const int rounds = m_end.first().rounds - m_middle.first().rounds;
        const double growth = (least(m_end, bytes) - least(m_middle, bytes)) / rounds;
        complainUnless(growth <= static_cast<double>(perRound),
                       u"%1: %2 bytes more with every round."_s.arg(what).arg(growth, 0, 'f', 0));
    }

    void time(const QString& what, const Number& milliseconds, const Bounds& bounds) {
        const Number candidates = [](const Sample& s) { return static_cast<double>(s.candidates); };
        const double before = mean(m_firstQuarter, milliseconds);
        const double after = mean(m_lastQuarter, milliseconds);
        const double more = mean(m_lastQuarter, candidates) - mean(m_firstQuarter, candidates);
        complainUnless(after <= before * bounds.slowness + more * bounds.perCandidateMs,
                       u"%1: %2 ms in the last quarter, %3 ms in the first."_s.arg(what)
                           .arg(after, 0, 'f', 1)
                           .arg(before, 0, 'f', 1));
    }

    QStringList complaints() const { return m_complaints; }

private:
    static QString kibibytes(double bytes) { return QString::number(bytes / 1024, 'f', 0); }
    static double mean(const Samples& samples, const Number& number) {
        double sum = 0;
        for (const Sample& sample : samples) {
            sum += number(sample);
        }
        return sum / static_cast<double>(samples.size());
    }
    void complainUnless(bool isWell, const QString& complaint) {
        if (!isWell) {
            m_complaints.append(complaint);
        }
    }

    Samples m_warmingUp;
    Samples m_middle;
    Samples m_end;
    Samples m_firstQuarter;
    Samples m_lastQuarter;
    QStringList m_complaints;
};

void judgeTimes(Judge& judge, const Bounds& bounds) {
    const auto kinds = {std::pair(u"An intake"_s, &Sample::intake), std::pair(u"A search"_s, &Sample::search),
                        std::pair(u"A deletion"_s, &Sample::deletion)};
    for (const auto& [what, spent] : kinds) {
        judge.time(what, [member = spent](const Sample& s) { return (s.*member).quick; }, bounds);
        judge.time(
            what + u", work of the window's thread"_s, [member = spent](const Sample& s) { return (s.*member).work; },
            bounds);
    }
}

} // namespace

QStringList complaintsAbout(const QList<Sample>& samples, const Bounds& bounds) {
    constexpr qsizetype fewest = 8;
    if (samples.size() < fewest) {
        throw std::invalid_argument("too few samples to judge a run");
    }
    const Number otherHeap = [](const Sample& s) { return static_cast<double>(s.heap - s.held); };
    Judge judge(samples);
    judge.share(
        u"Memory of the program"_s, [](const Sample& s) { return static_cast<double>(s.memory - s.filled); },
        bounds.memoryShare);
    judge.share(u"Heap of the program"_s, otherHeap, bounds.memoryShare);
    judge.growth(u"Heap of the program"_s, otherHeap, bounds.heapPerRound);
    judge.growth(
        u"Memory of the records service"_s, [](const Sample& s) { return static_cast<double>(s.serviceMemory); },
        bounds.servicePerRound);
    judge.count(u"Widgets"_s, [](const Sample& s) { return static_cast<double>(s.widgets); }, 0);
    judge.count(u"Objects"_s, [](const Sample& s) { return static_cast<double>(s.objects); }, bounds.objects);
    judge.count(u"Descriptors of the program"_s, [](const Sample& s) { return s.descriptors; }, bounds.descriptors);
    judge.count(u"Threads of the program"_s, [](const Sample& s) { return s.threads; }, bounds.threads);
    judge.count(
        u"Descriptors of the records service"_s, [](const Sample& s) { return s.serviceDescriptors; },
        bounds.descriptors);
    judge.count(u"Threads of the records service"_s, [](const Sample& s) { return s.serviceThreads; }, bounds.threads);
    if (bounds.slowness > 0) {
        judgeTimes(judge, bounds);
    }
    return judge.complaints();
}

} // namespace dorvantel::test
