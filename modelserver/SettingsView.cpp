// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/SettingsView.h"

#include "modelserver/ModelSettingsView.h"
#include "modelserver/OllamaSettingsView.h"
#include "ui/PaletteFollower.h"
#include "ui/Symbols.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

SettingsView::SettingsView(AppSettings& settings, HttpSession& session, QWidget* parent)
    : QTabWidget(parent) {
    addTab(new OllamaSettingsView(settings), u"General"_s);
    addTab(new ModelSettingsView(settings, session), u"Models"_s);
    followPalette(*this, [this] {
        const QColor colour = palette().color(QPalette::WindowText);
        setTabIcon(0, symbolIcon(u"gear"_s, colour));
        setTabIcon(1, symbolIcon(u"server.rack"_s, colour));
    });
    setFixedSize(600, 500);
}

} // namespace dorvantel
