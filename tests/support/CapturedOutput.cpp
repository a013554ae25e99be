// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

namespace dorvantel::test {

CapturedOutput::CapturedOutput() {
    testing::internal::CaptureStdout();
}

CapturedOutput::~CapturedOutput() {
    if (m_running) {
        testing::internal::GetCapturedStdout();
    }
}

QString CapturedOutput::text() {
    m_running = false;
    return QString::fromStdString(testing::internal::GetCapturedStdout());
}

QStringList CapturedOutput::lines() {
    QStringList lines = text().split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

} // namespace dorvantel::test
