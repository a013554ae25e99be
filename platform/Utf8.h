// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace dorvantel {

/// Whether the bytes are UTF-8 throughout. Any thread.
bool isUtf8(QByteArrayView bytes);

/// The first `count` characters of a UTF-8 text, as people count them (grapheme clusters), or all when there are fewer.
/// What follows them is not looked at. Any thread.
QString firstCharacters(QByteArrayView utf8, int count);

} // namespace dorvantel
