// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

namespace dorvantel {

/// Drawn with emojiFont(). Written as code points because an editor may lose the joiner, which cannot be seen.
inline constexpr QStringView manFigure = u"\U0001F468\u200D\U0001F4BB";
inline constexpr QStringView womanFigure = u"\U0001F469\u200D\U0001F4BB";
inline constexpr QStringView pairFigure = u"\U0001F46B";

/// The figure of a candidate: the man for exactly "Masculino", the woman for everything else.
inline QString candidateFigure(QStringView gender) {
    return (gender == u"Masculino" ? manFigure : womanFigure).toString();
}

} // namespace dorvantel
