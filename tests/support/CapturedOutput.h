// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel::test {

/// Collects what the program writes to standard output while this object lives. One at a time.
class CapturedOutput {
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Everything so far, byte for byte. Ends the capture.
    QString text();
    /// The same, cut at its line feeds, without the empty rest after the last one. Ends the capture.
    QStringList lines();

private:
    bool m_running = true;
};

} // namespace dorvantel::test
