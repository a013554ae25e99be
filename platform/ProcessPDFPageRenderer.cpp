// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/ProcessPDFPageRenderer.h"

#include "platform/AbandonedProcess.h"
#include "platform/PDFDocument.h"

#include <cstring>
#include <utility>
#include <vector>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QList<QSizeF> pageSizes(QByteArrayView frames) {
    std::vector<RenderPageSize> read(static_cast<std::size_t>(frames.size()) / sizeof(RenderPageSize));
    std::memcpy(read.data(), frames.data(), read.size() * sizeof(RenderPageSize));
    QList<QSizeF> sizes;
    sizes.reserve(frames.size() / qsizetype(sizeof(RenderPageSize)));
    for (const RenderPageSize& page : read) {
        sizes.append(QSizeF(static_cast<double>(page.width), static_cast<double>(page.height)));
    }
    return sizes;
}

template <typename Frame>
QByteArray bytesOf(const Frame& frame) {
    return {reinterpret_cast<const char*>(&frame), sizeof frame};
}

} // namespace

ProcessPDFPageRenderer::ProcessPDFPageRenderer(QString readerProgram, std::shared_ptr<const PDFDocument> document,
                                               std::chrono::milliseconds timeLimit)
    : m_readerProgram(std::move(readerProgram))
    , m_document(std::move(document)) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(timeLimit);
    m_limit.setTimerType(Qt::PreciseTimer);
    connect(&m_limit, &QTimer::timeout, this, &ProcessPDFPageRenderer::fail);
}

ProcessPDFPageRenderer::~ProcessPDFPageRenderer() {
    end();
}

void ProcessPDFPageRenderer::open() {
    m_isOpening = true;
    start();
}

void ProcessPDFPageRenderer::render(int page, QSize pixels) {
    m_request = {static_cast<std::uint32_t>(page), static_cast<std::uint32_t>(pixels.width()),
                 static_cast<std::uint32_t>(pixels.height())};
    if (m_isReady) {
        sendRequest();
    } else if (!m_process) {
        start();
    }
}

void ProcessPDFPageRenderer::giveUp() {
    if (m_request) {
        m_request.reset();
        end();
    }
}

void ProcessPDFPageRenderer::start() {
    m_process = std::make_unique<QProcess>();
    QProcess* process = m_process.get();
    process->setStandardErrorFile(QProcess::nullDevice());
    connect(process, &QProcess::readyReadStandardOutput, this, &ProcessPDFPageRenderer::read);
    // Queued, because a program that cannot be started is reported from inside the start. By then it may be another's.
    const auto ended = [this, process] {
        if (m_process.get() == process && process->state() == QProcess::NotRunning) {
            fail();
        }
    };
    connect(process, &QProcess::finished, this, ended, Qt::QueuedConnection);
    connect(process, &QProcess::errorOccurred, this, ended, Qt::QueuedConnection);
    m_limit.start();
    process->start(m_readerProgram, {u"--render"_s});
    if (process->state() != QProcess::NotRunning) {
        const QByteArray& bytes = m_document->dataRepresentation();
        process->write(bytesOf(RenderDocument{static_cast<std::uint64_t>(bytes.size()),
                                              static_cast<std::uint32_t>(m_document->pageCount()), 0}));
        process->write(bytes); // shares the bytes; they go out as the pipe takes them
    }
}

void ProcessPDFPageRenderer::sendRequest() {
    m_limit.start();
    m_process->write(bytesOf(*m_request));
}

void ProcessPDFPageRenderer::end() {
    m_limit.stop();
    m_isReady = false;
    m_image = QImage();
    m_received = 0;
    if (m_process) {
        abandonProcess(std::move(m_process));
    }
}

void ProcessPDFPageRenderer::fail() {
    end();
    if (std::exchange(m_isOpening, false)) {
        Q_EMIT opened({});
    } else if (m_request) {
        report(QImage());
    }
}

void ProcessPDFPageRenderer::report(const QImage& image) {
    const auto page = static_cast<int>(m_request->page);
    m_request.reset();
    m_limit.stop();
    Q_EMIT rendered(page, image);
}

void ProcessPDFPageRenderer::read() {
    if (!m_isReady) {
        readPageSizes();
    } else if (!m_request) {
        fail(); // it speaks without being asked
    } else if (!m_image.isNull() || readAnswer()) {
        readPixels();
    }
}

void ProcessPDFPageRenderer::readPageSizes() {
    const qsizetype count = m_document->pageCount();
    const qsizetype size = qsizetype(sizeof(RenderOpened)) + count * qsizetype(sizeof(RenderPageSize));
    if (m_process->bytesAvailable() < size) {
        return;
    }
    const QByteArray bytes = m_process->read(size);
    if (std::memcmp(bytes.constData(), RenderOpened::signature.data(), sizeof(RenderOpened)) != 0 ||
        m_process->bytesAvailable() > 0) {
        fail();
        return;
    }
    m_isReady = true;
    m_limit.stop();
    if (m_request) {
        sendRequest();
    }
    if (std::exchange(m_isOpening, false)) {
        Q_EMIT opened(pageSizes(QByteArrayView(bytes).sliced(sizeof(RenderOpened))));
    }
}

/// The head of an answer. True when pixels follow.
bool ProcessPDFPageRenderer::readAnswer() {
    RenderAnswer answer{};
    if (m_process->bytesAvailable() < qint64(sizeof answer)) {
        return false;
    }
    m_process->read(reinterpret_cast<char*>(&answer), sizeof answer);
    if (answer.request != *m_request || answer.isDrawn > 1) {
        fail();
        return false;
    }
    if (answer.isDrawn == 0) {
        report(QImage());
        return false;
    }
    m_image = QImage(static_cast<int>(m_request->width), static_cast<int>(m_request->height), QImage::Format_RGB32);
    m_received = 0;
    if (m_image.isNull()) {
        fail();
    }
    return !m_image.isNull();
}

void ProcessPDFPageRenderer::readPixels() {
    m_received +=
        m_process->read(reinterpret_cast<char*>(m_image.bits()) + m_received, m_image.sizeInBytes() - m_received);
    if (m_received < m_image.sizeInBytes()) {
        return;
    }
    if (m_process->bytesAvailable() > 0) {
        fail();
        return;
    }
    report(std::exchange(m_image, QImage()));
}

} // namespace dorvantel
