// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/DroppedPDF.h"

#include "platform/WhenFinished.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>
#include <QtConcurrentRun>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QString pdfType = u"application/pdf"_s;

std::optional<QByteArray> contents(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace

bool isPDFFile(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && (info.suffix().compare("pdf"_L1, Qt::CaseInsensitive) == 0 ||
                             QMimeDatabase().mimeTypeForFile(info).inherits(pdfType));
}

std::optional<DroppedPDF> firstPDF(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile() && isPDFFile(url.toLocalFile())) {
            return DroppedPDF{url.toLocalFile(), {}};
        }
    }
    if (const QByteArray bytes = data.data(pdfType); !bytes.isEmpty()) {
        return DroppedPDF{{}, bytes};
    }
    return std::nullopt;
}

void loadBytes(const DroppedPDF& dropped, QObject* context, std::function<void(QByteArray)> receive) {
    auto loading = QtConcurrent::run([dropped]() -> std::optional<QByteArray> {
        return dropped.path.isEmpty() ? dropped.bytes : contents(dropped.path);
    });
    whenFinished(loading, context, [receive = std::move(receive)](std::optional<QByteArray> bytes) {
        if (bytes) {
            receive(std::move(*bytes));
        }
    });
}

} // namespace dorvantel
