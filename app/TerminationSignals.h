// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace dorvantel {

/// Says when the system asks the process to end (SIGTERM, SIGINT, SIGHUP: a logout, Ctrl+C, a terminal that goes), so
/// that it can end in order. Only the first of each: the second ends the process at once. One object at a time, on the
/// UI thread; when it goes, the signals do again what they did before.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();
};

} // namespace dorvantel
