// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace dorvantel::test {

/// What one kind of step took between two samples, in milliseconds.
struct Spent {
    double median = 0;
    double quick = 0; ///< all but a tenth took longer: what a step takes when the machine has nothing else to do
    double work = 0;  ///< median of what the window's thread worked for it, whatever else the machine did meanwhile
};

/// What was seen at one moment of a long run, with nothing under way. Memory in bytes.
struct Sample {
    int rounds = 0;
    qsizetype candidates = 0;
    qint64 memory = 0; ///< of the program
    qint64 heap = 0;   ///< what it has from the allocator
    qint64 held = 0;   ///< how much of the heap holds what it is meant to gather
    qint64 filled = 0; ///< how much of the memory does: room that was not filled yet is none
    qint64 objects = 0;
    qint64 widgets = 0;
    int descriptors = 0;
    int threads = 0;
    qint64 serviceMemory = 0;
    int serviceDescriptors = 0;
    int serviceThreads = 0;
    Spent intake;
    Spent search; ///< by a description: the five best, however many candidates there are
    Spent deletion;
};

/// How much more there may be at the end of a run than when it had warmed up.
struct Bounds {
    double memoryShare = 0.05;  ///< of the memory there was then; what is gathered does not count
    qint64 heapPerRound = 0;    ///< bytes; what is gathered does not count
    qint64 servicePerRound = 0; ///< bytes; vectors among them, and pages of its store up to a limit of its own
    int descriptors = 0;        ///< connections come and go
    int threads = 0;
    int objects = 0;
    double slowness = 0;       ///< times of the last quarter over those of the first; 0 when times do not count
    double perCandidateMs = 0; ///< beside that: a rebuild of the catalogues walks through all candidates
};

/// One sentence for each thing that a run left behind, none when all is well. The first third of the samples is for
/// warming up; what was seen in the last third is held against the middle one, or against all of the warming up where
/// the bound is a share. The least counts, because what was needed for a moment is no leak. At least eight samples, in
/// order.
QStringList complaintsAbout(const QList<Sample>& samples, const Bounds& bounds);

} // namespace dorvantel::test
