// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/ExtractedPage.h"

#include "data/Model.h"
#include "intake/FormGrid.h"
#include "intake/IntakeState.h"
#include "ui/Figures.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/TokenEditor.h"
#include "ui/TokenField2.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

ExtractedPage::ExtractedPage(IntakeState& state, const Model& model, QWidget* parent)
    : QWidget(parent)
    , m_state(state) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(makeGender(), 0, Qt::AlignVCenter);
    row->addWidget(makeGrid(model), 1);
    refresh();
}

void ExtractedPage::letGo() {
    for (const BoundTokens& bound : m_tokenFields) {
        bound.field->disconnect(this);
    }
}

QWidget* ExtractedPage::makeGender() {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    constexpr int figurePoints = 72;
    m_figure = new QLabel;
    m_figure->setObjectName(u"figure"_s);
    m_figure->setFont(emojiFont(figurePoints));
    m_figure->setMargin(spacing::standard);
    m_figure->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_figure);

    auto* group = new QButtonGroup(column);
    for (const QString& gender : {u"Masculino"_s, u"Femenino"_s}) {
        auto* option = new QRadioButton(gender);
        option->setObjectName(gender);
        option->setChecked(m_state.values().gender == gender);
        group->addButton(option);
        layout->addWidget(option, 0, Qt::AlignHCenter);
        connect(option, &QRadioButton::clicked, this, [this, gender] {
            m_state.editValues().gender = gender;
            refresh();
        });
    }
    return column;
}

QWidget* ExtractedPage::makeGrid(const Model& model) {
    auto* content = new QWidget;
    auto* grid = new FormGrid(content);
    SheetValues& values = m_state.editValues();
    addTextRow(*grid, u"Nombre"_s, u"name"_s, values.name);
    addTextRow(*grid, u"Profesión"_s, u"profession"_s, values.profession);
    addTextRow(*grid, u"Correo electrónico"_s, u"email"_s, values.email);
    addTokenRow(*grid, u"Habilidades técnicas"_s, u"techSkills"_s, values.techSkills, model.knownTechSkills());
    addTokenRow(*grid, u"Habilidades personales"_s, u"softSkills"_s, values.softSkills, model.knownSoftSkills());
    addTokenRow(*grid, u"Idiomas"_s, u"languages"_s, values.languages, model.knownLanguages());
    grid->setRowStretch(grid->rowCount(), 1);

    // A CV with many skills makes the grid taller than the sheet.
    auto* scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setWidget(content);
    return scroller;
}

void ExtractedPage::addTextRow(FormGrid& grid, const QString& label, const QString& objectName, QString& text) {
    auto* edit = new QLineEdit(text);
    edit->setObjectName(objectName);
    edit->setPlaceholderText(label + u"…"_s);
    edit->setCursorPosition(0);
    // The line shows line breaks as blanks, so only what is written there goes back: with the keys, or by a screen
    // reader or a speech program, which textEdited knows nothing of.
    connect(edit, &QLineEdit::textChanged, this, [this, &text](const QString& written) {
        text = written;
        refresh();
    });
    grid.addRow(label, edit, false);
    m_warnings.append(grid.addWarning(objectName + u"Warning"_s, false));
}

void ExtractedPage::addTokenRow(FormGrid& grid, const QString& label, const QString& objectName,
                                CatalogueTokens& tokens, const QStringList& catalogue) {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing::tight);
    const auto addCaption = [&](const QString& caption) {
        auto* text = new QLabel(caption);
        text->setFont(textFont(TextStyle::Caption));
        layout->addWidget(text);
    };
    const QString known = u"(Valores en catálogo)"_s;
    layout->addWidget(addTokenField(label + u' ' + known, objectName, tokens.known, catalogue, Additions::Accepted));
    addCaption(known);
    // Without a catalogue a field takes whatever is typed; here new values come from the CV alone.
    const QString unknown = u"(Valores fuera de catálogo)"_s;
    layout->addWidget(addTokenField(label + u' ' + unknown, objectName + u'2', tokens.unknown, {}, Additions::Refused));
    addCaption(unknown);
    // The column is no focus proxy of a field: being destroyed first, it would take the focus from the field then, and
    // that ends editing.
    grid.addRow(label, column, true);
}

TokenField2* ExtractedPage::addTokenField(const QString& name, const QString& objectName, QStringList& tokens,
                                          const QStringList& catalogue, Additions additions) {
    auto* field = new TokenField2(tokens, true, catalogue);
    field->setObjectName(objectName);
    field->setFieldName(name);
    // The page scrolls as a whole: a field that scrolled inside it would hide tokens.
    field->tokenField()->setMaximumLines(12);
    m_tokenFields.append({field, &tokens});
    connect(field, &TokenField2::tokensChanged, this, [this, &tokens, additions](const QStringList& changed) {
        if (additions == Additions::Accepted || changed.size() < tokens.size()) {
            tokens = changed;
        }
        refresh();
    });
    return field;
}

void ExtractedPage::refresh() {
    const SheetValues& values = m_state.values();
    m_figure->setText(candidateFigure(values.gender));
    m_figure->setAccessibleName(isMasculine(values.gender) ? u"Hombre"_s : u"Mujer"_s);
    for (SymbolView* warning : m_warnings) {
        warning->setShown(showsNameWarning(values));
    }
    // Every change of the state brings each field back to its bound list, also one whose token was taken by its menu.
    for (const BoundTokens& bound : m_tokenFields) {
        bound.field->setTokens(*bound.tokens);
    }
}

} // namespace dorvantel
