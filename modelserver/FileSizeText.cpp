// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/FileSizeText.h"

#include <array>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

struct Unit {
    QLatin1StringView name;
    quint64 bytes;
    int decimals;
};

constexpr std::array units{
    Unit{"KB"_L1, 1'000, 0},
    Unit{"MB"_L1, 1'000'000, 1},
    Unit{"GB"_L1, 1'000'000'000, 2},
    Unit{"TB"_L1, 1'000'000'000'000, 2},
    Unit{"PB"_L1, 1'000'000'000'000'000, 2},
    Unit{"EB"_L1, 1'000'000'000'000'000'000, 2},
};

/// Without zeros at the end of the decimals.
QString decimalText(quint64 steps, int decimals) {
    QString text = QString::number(steps);
    if (decimals == 0) {
        return text;
    }
    text.insert(text.size() - decimals, u'.');
    while (text.endsWith(u'0')) {
        text.chop(1);
    }
    if (text.endsWith(u'.')) {
        text.chop(1);
    }
    return text;
}

QString magnitudeText(quint64 bytes) {
    if (bytes < units.front().bytes) {
        return bytes == 1 ? u"1 byte"_s : QString::number(bytes) + u" bytes"_s;
    }
    for (const Unit& unit : units) {
        const quint64 stepsInOne = unit.decimals == 0 ? 1 : unit.decimals == 1 ? 10 : 100;
        const quint64 step = unit.bytes / stepsInOne;
        const quint64 steps = (bytes + step / 2) / step;
        // What rounds up to a thousand of a unit is one of the next.
        if (steps < 1000 * stepsInOne || unit.bytes == units.back().bytes) {
            return decimalText(steps, unit.decimals) + u' ' + unit.name;
        }
    }
    Q_UNREACHABLE();
}

} // namespace

QString fileSizeText(qint64 bytes) {
    if (bytes == 0) {
        return u"Zero KB"_s;
    }
    return bytes < 0 ? u'-' + magnitudeText(quint64(0) - quint64(bytes)) : magnitudeText(quint64(bytes));
}

} // namespace dorvantel
