// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QMimeData;

namespace dorvantel {

/// The first PDF of a drag, drop or file choice: a file on this machine, or the bytes themselves when the source of the
/// drag carries them (a mail program's attachment, say). A plain value.
struct DroppedPDF {
    QString path; ///< empty when `bytes` holds the document
    QByteArray bytes;
};

/// Whether `path` is a file of the PDF type. A folder is not, whatever its name; a file named .pdf is, whatever it
/// holds.
bool isPDFFile(const QString& path);

/// The first PDF among what is dragged; none refuses the drag. Further PDFs are ignored.
std::optional<DroppedPDF> firstPDF(const QMimeData& data);

/// Loads the bytes off the UI thread and hands them to `receive` on the thread of `context`. A file that cannot be
/// read hands nothing to anyone: `receive` is not called, nor when `context` is gone by then.
void loadBytes(const DroppedPDF& dropped, QObject* context, std::function<void(QByteArray)> receive);

} // namespace dorvantel
