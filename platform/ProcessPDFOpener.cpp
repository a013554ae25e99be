// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/ProcessPDFOpener.h"

#include "platform/AbandonedProcess.h"
#include "platform/MainQueue.h"
#include "platform/PDFDocument.h"
#include "platform/PDFPageFrames.h"
#include "platform/ProcessPDFPageRenderer.h"

#include <QFileInfo>
#include <QProcess>
#include <QTimer>

namespace dorvantel {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The reader gives at most 64 MB of text; whatever sends more is no longer the reader.
constexpr qint64 mostOutput = 65'000'000;

/// One PDF being read. A child of its context; deletes itself after the completion.
class Reading final : public QObject {
public:
    Reading(QByteArray bytes, QObject* context, PDFOpener::Completion completion)
        : QObject(context)
        , m_bytes(std::move(bytes))
        , m_completion(std::move(completion)) {
        m_process->setStandardErrorFile(QProcess::nullDevice());
        connect(m_process.get(), &QProcess::finished, this, [this] { complete(result()); });
        connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                complete(nullptr);
            }
        });
        connect(m_process.get(), &QProcess::readyReadStandardOutput, this, [this] {
            if (m_process->bytesAvailable() > mostOutput) {
                m_process->kill();
            }
        });
        connect(&m_limit, &QTimer::timeout, m_process.get(), &QProcess::kill);
        m_limit.setSingleShot(true);
        m_limit.setTimerType(Qt::PreciseTimer);
    }

    ~Reading() override { abandonProcess(std::move(m_process)); }

    void start(const QString& program, std::chrono::milliseconds timeLimit) {
        m_limit.start(timeLimit);
        m_process->start(program, {});
        if (m_process->state() != QProcess::NotRunning) {
            m_process->write(m_bytes); // shares the bytes; they go out as the pipe takes them
            m_process->closeWriteChannel();
        }
    }

private:
    std::shared_ptr<PDFDocument> result() {
        if (m_process->exitStatus() != QProcess::NormalExit || m_process->exitCode() != 0) {
            return nullptr;
        }
        std::optional<QStringList> texts = decodePageFrames(m_process->readAllStandardOutput());
        return texts ? std::make_shared<PDFDocument>(m_bytes, std::move(*texts)) : nullptr;
    }

    /// Queued, because the completion may destroy the context and with it this object, whose process is still inside
    /// the signal that brought us here.
    void complete(std::shared_ptr<PDFDocument> document) {
        runOnMainQueueAfter(0ms, this, [this, document = std::move(document)]() mutable {
            deleteLater();
            const PDFOpener::Completion completion = std::move(m_completion);
            completion(std::move(document));
        });
    }

    QByteArray m_bytes;
    PDFOpener::Completion m_completion;
    std::unique_ptr<QProcess> m_process = std::make_unique<QProcess>();
    QTimer m_limit;
};

} // namespace

ProcessPDFOpener::ProcessPDFOpener(QString readerProgram, std::chrono::milliseconds timeLimit)
    : m_readerProgram(std::move(readerProgram))
    , m_timeLimit(timeLimit) {}

void ProcessPDFOpener::open(const QByteArray& bytes, QObject* context, Completion completion) {
    (new Reading(bytes, context, std::move(completion)))->start(m_readerProgram, m_timeLimit);
}

std::unique_ptr<PDFPageRenderer> ProcessPDFOpener::makeRenderer(std::shared_ptr<const PDFDocument> document) const {
    return std::make_unique<ProcessPDFPageRenderer>(m_readerProgram, std::move(document), m_timeLimit);
}

QString findPDFReader(const QString& programFolder) {
    for (const QString& folder : {programFolder, programFolder + QStringLiteral("/" DORVANTEL_LIBEXEC)}) {
        const QFileInfo reader(folder + "/dorvantel-pdf-reader"_L1);
        if (reader.isFile() && reader.isExecutable()) {
            return reader.canonicalFilePath();
        }
    }
    return {};
}

} // namespace dorvantel
