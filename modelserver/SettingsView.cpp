// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/SettingsView.h"

#include "modelserver/ModelSettingsView.h"
#include "modelserver/OllamaSettingsView.h"
#include "ui/Symbols.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

SettingsView::SettingsView(AppSettings& settings, HttpSession& session, QWidget* parent)
    : QTabWidget(parent) {
    const QColor colour = palette().color(QPalette::WindowText);
    addTab(new OllamaSettingsView(settings), symbolIcon(u"gear"_s, colour), u"General"_s);
    addTab(new ModelSettingsView(settings, session), symbolIcon(u"server.rack"_s, colour), u"Models"_s);
    setFixedSize(600, 500);
}

} // namespace dorvantel
