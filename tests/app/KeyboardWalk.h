// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

class QWidget;

namespace dorvantel::test {

using Complaints = std::vector<std::string>;

/// What someone without eyes or without a mouse would complain about in this window, which must be the active one;
/// empty when there is nothing. The walk presses Tab all the way round, and the arrow keys among those that share a
/// parent.
///
/// - "no name": a control that screen readers cannot call anything;
/// - "role": one that they take for something else;
/// - "not reached": one that neither Tab nor the arrow keys lead to;
/// - "out of order": a Tab stop that the eye has passed already, being above or left of the one before.
Complaints complaintsAbout(QWidget& window);

} // namespace dorvantel::test
