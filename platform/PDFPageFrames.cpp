// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageFrames.h"

#include <cstdint>
#include <cstring>

namespace dorvantel {

namespace {

constexpr QByteArrayView magic = "DVPAGES1";

void appendNumber(QByteArray& bytes, qsizetype value) {
    const auto number = static_cast<std::uint32_t>(value);
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

/// Takes a number off the front of `rest`.
std::optional<qsizetype> takeNumber(QByteArrayView& rest) {
    std::uint32_t number = 0;
    if (rest.size() < qsizetype(sizeof number)) {
        return std::nullopt;
    }
    std::memcpy(&number, rest.data(), sizeof number);
    rest = rest.sliced(sizeof number);
    return number;
}

std::optional<QString> takeText(QByteArrayView& rest) {
    const std::optional<qsizetype> length = takeNumber(rest);
    if (!length || *length > rest.size() / qsizetype(sizeof(char16_t))) {
        return std::nullopt;
    }
    const qsizetype size = *length * qsizetype(sizeof(char16_t));
    QString text(*length, Qt::Uninitialized);
    std::memcpy(text.data(), rest.data(), static_cast<std::size_t>(size));
    rest = rest.sliced(size);
    return text;
}

} // namespace

QByteArray encodePageFrames(const QStringList& pageTexts) {
    QByteArray frames = magic.toByteArray();
    appendNumber(frames, pageTexts.size());
    for (const QString& text : pageTexts) {
        appendNumber(frames, text.size());
        frames.append(reinterpret_cast<const char*>(text.utf16()), text.size() * qsizetype(sizeof(char16_t)));
    }
    return frames;
}

std::optional<QStringList> decodePageFrames(const QByteArray& frames) {
    if (!frames.startsWith(magic)) {
        return std::nullopt;
    }
    QByteArrayView rest = QByteArrayView(frames).sliced(magic.size());
    const std::optional<qsizetype> count = takeNumber(rest);
    if (!count) {
        return std::nullopt;
    }
    QStringList texts;
    for (qsizetype i = 0; i < *count; ++i) {
        std::optional<QString> text = takeText(rest);
        if (!text) {
            return std::nullopt;
        }
        texts.append(std::move(*text));
    }
    return rest.isEmpty() ? std::optional(texts) : std::nullopt;
}

} // namespace dorvantel
