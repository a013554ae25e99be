// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

namespace dorvantel {

/// Says what `widget` is to screen readers. For widgets that draw themselves: to a toolkit's control nobody needs to
/// say what it is. Called in the widget's constructor, before anyone can have asked.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace dorvantel
