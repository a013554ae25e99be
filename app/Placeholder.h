// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

/// What the right-hand side shows while nothing is selected: the maker's logo in the accent colour.
class Placeholder : public QWidget {
    Q_OBJECT

public:
    explicit Placeholder(QWidget* parent = nullptr);
};

} // namespace dorvantel
