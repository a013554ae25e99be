// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/tour/Companions.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <stdexcept>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int startLimitMs = 20'000;

QString program(const QString& name) {
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

[[noreturn]] void fail(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

struct Started {
    std::unique_ptr<QProcess> process;
    QString url;
};

/// Starts a server on a free port and reads its address from the line that it prints when it is ready.
Started start(const QString& name, const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->start(program(name), QStringList{u"--listen"_s, u"127.0.0.1:0"_s} + arguments);
    static const QRegularExpression address(u"http://127\\.0\\.0\\.1:[1-9][0-9]*"_s);
    QString output;
    while (process->waitForReadyRead(startLimitMs)) {
        output += QString::fromUtf8(process->readAll());
        if (const auto match = address.match(output); match.hasMatch()) {
            // Nobody reads on, and it would be kept for whoever does.
            QObject::connect(process.get(), &QProcess::readyRead, [server = process.get()] { server->readAll(); });
            return {std::move(process), match.captured()};
        }
    }
    fail(name + u" does not start: "_s + (output.isEmpty() ? process->errorString() : output));
}

void stop(std::unique_ptr<QProcess>& process) {
    if (process) {
        process->terminate();
        if (!process->waitForFinished(5'000)) {
            process->kill();
            process->waitForFinished();
        }
        process.reset();
    }
}

} // namespace

Companions::Companions() {
    Started models = start(u"dorvantel-demo-model"_s, {});
    m_modelServer = std::move(models.process);
    m_modelServerUrl = models.url;
    Started records =
        start(u"dorvantel-records"_s, {u"--store"_s, m_folder.filePath(u"records.sqlite"_s), u"--model-server"_s,
                                       m_modelServerUrl, u"--embedding-model"_s, u"demo-vectores:latest"_s});
    m_records = std::move(records.process);
    m_recordsUrl = records.url + u"/curriculums"_s;
}

Companions::~Companions() {
    stop(m_records);
    stop(m_modelServer);
}

void Companions::fillStore() {
    QProcess filler;
    filler.setProcessChannelMode(QProcess::MergedChannels);
    filler.start(program(u"dorvantel-fill-samples"_s), {m_recordsUrl});
    if (!filler.waitForFinished(startLimitMs) || filler.exitCode() != 0) {
        fail(u"dorvantel-fill-samples failed: "_s + QString::fromUtf8(filler.readAll()));
    }
}

void Companions::stopModelServer() {
    stop(m_modelServer);
}

} // namespace dorvantel
