// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/AbandonedProcess.h"

#include <QSet>

namespace dorvantel {

namespace {

/// Lives as long as the program: whatever is left in it then is ended by the system.
QSet<QProcess*>& endingProcesses() {
    static auto* const ending = new QSet<QProcess*>;
    return *ending;
}

} // namespace

void abandonProcess(std::unique_ptr<QProcess> process) {
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
        process.release()->deleteLater(); // this may be inside a signal of it
        return;
    }
    QProcess* ending = process.release();
    endingProcesses().insert(ending);
    QObject::connect(ending, &QProcess::stateChanged, ending, [ending](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning) {
            endingProcesses().remove(ending);
            ending->deleteLater();
        }
    });
    ending->closeReadChannel(QProcess::StandardOutput);
    ending->kill();
}

} // namespace dorvantel
