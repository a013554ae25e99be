// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/GeneratedPage.h"

#include "intake/FormGrid.h"
#include "intake/IntakeState.h"
#include "ui/ExactText.h"
#include "ui/PaletteFollower.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QPlainTextEdit>

namespace dorvantel {

using namespace Qt::StringLiterals;

GeneratedPage::GeneratedPage(IntakeState& state, QWidget* parent)
    : QWidget(parent) {
    auto* grid = new FormGrid(this);
    addEditor(*grid, u"Resumen"_s, u"summarizedText"_s, state.editValues().summarizedText);
    addEditor(*grid, u"Correo"_s, u"invitationMail"_s, state.editValues().invitationMail);
}

void GeneratedPage::addEditor(FormGrid& grid, const QString& label, const QString& objectName, QString& text) {
    auto* editor = new QPlainTextEdit;
    editor->setObjectName(objectName);
    editor->setTabChangesFocus(true);
    followPalette(*editor, [editor] {
        QPalette palette = editor->palette();
        palette.setColor(QPalette::Text, secondaryTextColour(palette));
        editor->setPalette(palette);
    });
    editor->setPlainText(text);

    grid.addRow(label, editor, true);
    SymbolView* warning = grid.addWarning(objectName + u"Warning"_s, true);
    warning->setShown(text.isEmpty());
    connect(editor, &QPlainTextEdit::textChanged, this, [editor, warning, &text] {
        text = exactText(*editor);
        warning->setShown(text.isEmpty());
    });
}

} // namespace dorvantel
