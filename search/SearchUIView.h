// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

/// The search screen: what the sidebar's search entry leads to. Lives on the UI thread, owned by the window.
class SearchUIView : public QWidget {
    Q_OBJECT

public:
    explicit SearchUIView(QWidget* parent = nullptr);
};

} // namespace dorvantel
