// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

#include <functional>

namespace dorvantel {

/// An icon that is made when something of it is first asked for.
QIcon deferredIcon(std::function<QIcon()> make);

} // namespace dorvantel
