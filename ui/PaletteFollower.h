// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QWidget;

namespace dorvantel {

/// Calls `takeColours` now, and again whenever the palette of `widget` changes: when it finds its place in a window,
/// and when the desktop goes from light to dark. For what keeps a colour that was worked out from the palette: icons,
/// and palettes of its own. `takeColours` may set the palette of `widget`, unless it is a window: the toolkit then
/// leaves it alone. Ends with the widget.
void followPalette(QWidget& widget, std::function<void()> takeColours);

} // namespace dorvantel
