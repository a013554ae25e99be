// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/CriteriaPanel.h"

#include "data/Model.h"
#include "ui/ExactText.h"
#include "ui/Figures.h"
#include "ui/Style.h"
#include "ui/TokenEditor.h"
#include "ui/TokenField2.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int figurePoints = 72;
constexpr int headingPoints = 18;
constexpr int freeTextHeight = 70;
constexpr qreal panelRadius = 12;
constexpr qreal panelOpacity = 0.1;

QString figureOf(Gender gender) {
    switch (gender) {
    case Gender::male:
        return manFigure.toString();
    case Gender::female:
        return womanFigure.toString();
    case Gender::any:
        return pairFigure.toString();
    }
    Q_UNREACHABLE();
}

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(systemFont(headingPoints));
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

/// What Tab really stops at: a field hands its focus on to what it is made of.
QWidget* tabStop(QWidget* widget) {
    while (widget->focusProxy()) {
        widget = widget->focusProxy();
    }
    return widget;
}

} // namespace

CriteriaPanel::CriteriaPanel(const Model& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_kinds{{u"Habilidades técnicas"_s, u"techSkills"_s, &SearchCriteria::techSkillsRequiredTokens,
               &Model::knownTechSkills},
              {u"Habilidades personales"_s, u"softSkills"_s, &SearchCriteria::softSkillsRequiredTokens,
               &Model::knownSoftSkills},
              {u"Idiomas"_s, u"languages"_s, &SearchCriteria::languagesRequiredTokens, &Model::knownLanguages}} {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::standard, spacing::small, spacing::standard, spacing::gridRow);
    column->addWidget(heading(u"Búsqueda estructurada"_s));
    column->addWidget(makeGenderRow());
    column->addWidget(makeTokenFields());
    column->addWidget(heading(u"Búsqueda no estructurada"_s));
    column->addWidget(makeFreeText());
    column->addWidget(makeButtons());
    showGender();
    connect(&m_model, &Model::cataloguesRebuilt, this, &CriteriaPanel::renewTokenFields);
}

QWidget* CriteriaPanel::makeGenderRow() {
    m_figure = new QLabel;
    m_figure->setObjectName(u"genderFigure"_s);
    m_figure->setFont(emojiFont(figurePoints));

    auto* options = new QVBoxLayout;
    options->setSpacing(spacing::tight);
    options->addStretch();
    m_genders = new QButtonGroup(this);
    const auto addOption = [&](const QString& label, const QString& name, Gender gender) {
        auto* option = new QRadioButton(label);
        option->setObjectName(name);
        options->addWidget(option);
        m_genders->addButton(option, static_cast<int>(gender));
    };
    addOption(u"Mujer"_s, u"female"_s, Gender::female);
    addOption(u"Hombre"_s, u"male"_s, Gender::male);
    addOption(u"Indistinto"_s, u"any"_s, Gender::any);
    options->addStretch();
    connect(m_genders, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (checked) {
            m_criteria.genderRequired = static_cast<Gender>(id);
            m_figure->setText(figureOf(m_criteria.genderRequired));
            m_figure->setAccessibleName(m_genders->button(id)->text());
            refreshTokenFields();
        }
    });

    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing::gridColumn);
    line->addStretch();
    line->addWidget(m_figure);
    line->addLayout(options);
    line->addStretch();
    return row;
}

void CriteriaPanel::showGender() {
    m_genders->button(static_cast<int>(m_criteria.genderRequired))->setChecked(true);
}

QWidget* CriteriaPanel::makeTokenFields() {
    auto* fields = new QWidget;
    m_tokenGrid = new QGridLayout(fields);
    m_tokenGrid->setContentsMargins(0, 0, 0, 0);
    m_tokenGrid->setColumnStretch(1, 1);
    for (TokenKind& kind : m_kinds) {
        makeTokenField(kind);
    }
    return fields;
}

/// Beside its label, in the row of its kind; instead of the field that stands there.
void CriteriaPanel::makeTokenField(TokenKind& kind) {
    const int row = static_cast<int>(&kind - m_kinds.data());
    auto* field = new TokenField2(m_criteria.*kind.tokens, true, (m_model.*kind.catalogue)());
    field->setObjectName(kind.objectName);
    field->setFieldName(kind.label);
    connect(field, &TokenField2::tokensChanged, this, [this, tokens = kind.tokens](const QStringList& list) {
        m_criteria.*tokens = list;
        refreshTokenFields();
    });
    if (!kind.field) {
        auto* label = new QLabel(kind.label);
        m_tokenGrid->addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
        m_tokenGrid->addWidget(field, row, 1);
    } else {
        field->tokenField()->setText(kind.field->tokenField()->text());
        const bool hadFocus = kind.field->isAncestorOf(kind.field->window()->focusWidget());
        delete m_tokenGrid->replaceWidget(kind.field, field);
        setTabOrder(tabStop(kind.field), tabStop(field));
        delete kind.field;
        field->show();
        if (hadFocus) {
            field->setFocus();
        }
    }
    kind.field = field;
}

void CriteriaPanel::renewTokenFields() {
    for (TokenKind& kind : m_kinds) {
        makeTokenField(kind);
    }
}

void CriteriaPanel::refreshTokenFields() {
    for (const TokenKind& kind : m_kinds) {
        kind.field->setTokens(m_criteria.*kind.tokens);
    }
}

QWidget* CriteriaPanel::makeFreeText() {
    m_freeText = new QPlainTextEdit;
    m_freeText->setAcceptDrops(false); // a CV dropped here is the window's, as everywhere
    m_freeText->setObjectName(u"freeText"_s);
    m_freeText->setAccessibleName(u"Búsqueda no estructurada"_s);
    m_freeText->setFont(textFont(TextStyle::Body));
    m_freeText->setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    m_freeText->setTabChangesFocus(true);
    m_freeText->setFixedHeight(freeTextHeight);
    connect(m_freeText, &QPlainTextEdit::textChanged, this, [this] {
        m_criteria.freeTextSearchString = exactText(*m_freeText);
        refreshTokenFields();
    });
    return m_freeText;
}

QWidget* CriteriaPanel::makeButtons() {
    auto* clearButton = new QPushButton(u"Limpiar"_s);
    clearButton->setObjectName(u"clearButton"_s);
    connect(clearButton, &QPushButton::clicked, this, &CriteriaPanel::clearPressed);
    auto* searchButton = new QPushButton(u"Buscar"_s);
    searchButton->setObjectName(u"searchButton"_s);
    searchButton->setDefault(true);
    connect(searchButton, &QPushButton::clicked, this, &CriteriaPanel::searchPressed);

    constexpr int spinnerSize = 20;
    m_searching = new Spinner(spinnerSize);
    m_searching->setObjectName(u"searching"_s);
    QSizePolicy keepsItsPlace = m_searching->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_searching->setSizePolicy(keepsItsPlace);
    m_searching->hide();

    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addStretch();
    line->addSpacing(spinnerSize + spacing::small); // as much as on the other side: the buttons are in the middle
    line->addWidget(clearButton);
    line->addWidget(searchButton);
    line->addWidget(m_searching);
    line->addStretch();
    return row;
}

void CriteriaPanel::clear() {
    m_criteria = {};
    showGender();
    refreshTokenFields();
    m_freeText->clear();
}

void CriteriaPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(QColor(colours::gray), panelOpacity));
    painter.drawRoundedRect(rect(), panelRadius, panelRadius);
}

} // namespace dorvantel
