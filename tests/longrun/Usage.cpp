// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/Usage.h"

#include <QDir>
#include <QFile>

#include <atomic>
#include <malloc.h>
#include <stdexcept>

// What Qt tells tools that look into a program calls these for every object; the header is one of its private ones.
QT_BEGIN_NAMESPACE
extern Q_CORE_EXPORT quintptr qtHookData[];
QT_END_NAMESPACE

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

std::atomic<qint64> livingObjects = 0;

void objectMade(QObject*) {
    ++livingObjects;
}

void objectGone(QObject*) {
    --livingObjects;
}

enum Hook { SizeOfHooks = 1, AddQObject = 3, RemoveQObject = 4 };

QByteArray contents(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read " + path.toStdString());
    }
    return file.readAll();
}

/// The number behind `name` in a file of lines like "Threads:  5" or "Anonymous:   1234 kB".
qint64 field(const QByteArray& text, const QByteArray& name) {
    const qsizetype at = text.indexOf('\n' + name + ':');
    if (at < 0) {
        throw std::runtime_error("there is no " + name.toStdString());
    }
    const qsizetype begin = at + name.size() + 2;
    return text.mid(begin, text.indexOf('\n', begin) - begin).trimmed().split(' ').first().toLongLong();
}

ProcessUsage usageIn(const QString& folder) {
    constexpr qint64 kilobyte = 1024;
    const QByteArray memory = contents(folder + u"/smaps_rollup"_s);
    return {.memory = (field(memory, "Anonymous") + field(memory, "Swap")) * kilobyte,
            .descriptors = static_cast<int>(
                QDir(folder + u"/fd"_s).entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot).size()),
            .threads = static_cast<int>(field(contents(folder + u"/status"_s), "Threads"))};
}

} // namespace

ProcessUsage usageOf(qint64 process) {
    return usageIn(u"/proc/%1"_s.arg(process));
}

ProcessUsage ownUsage() {
    return usageIn(u"/proc/self"_s);
}

void keepNoFreeMemory() {
    constexpr int threshold = 128 * 1024; // the allocator's own, before it learns
    mallopt(M_TRIM_THRESHOLD, threshold);
}

qint64 heapInUse() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks + info.hblkhd);
}

int childProcesses() {
    int count = 0;
    const QDir threads(u"/proc/self/task"_s);
    for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/children"_s));
        if (file.open(QIODevice::ReadOnly)) { // a thread may have ended meanwhile
            count += static_cast<int>(file.readAll().count(' '));
        }
    }
    return count;
}

ObjectCount::ObjectCount() {
    if (qtHookData[SizeOfHooks] <= RemoveQObject) {
        throw std::runtime_error("this Qt does not tell of its objects");
    }
    livingObjects = 0;
    qtHookData[AddQObject] = reinterpret_cast<quintptr>(&objectMade);
    qtHookData[RemoveQObject] = reinterpret_cast<quintptr>(&objectGone);
}

ObjectCount::~ObjectCount() {
    qtHookData[AddQObject] = 0;
    qtHookData[RemoveQObject] = 0;
}

qint64 ObjectCount::living() {
    return livingObjects;
}

} // namespace dorvantel::test
