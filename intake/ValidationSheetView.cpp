// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/ValidationSheetView.h"

#include "data/Model.h"
#include "data/RecordsService.h"
#include "intake/ExtractedPage.h"
#include "intake/GeneratedPage.h"
#include "intake/IntakeState.h"
#include "platform/Log.h"
#include "platform/PDFDocument.h"
#include "ui/SegmentedControl.h"
#include "ui/Spinner.h"
#include "ui/Style.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize dataSize(700, 500);

QWidget* makeProgressView() {
    auto* view = new QWidget;
    view->setObjectName(u"progress"_s);
    view->setAutoFillBackground(true);
    // Black at 60 % over the white of the sheet.
    view->setPalette(QPalette(QColor(102, 102, 102)));
    auto* text = new QLabel(u"Extrayendo datos del currículum"_s);
    text->setFont(systemFont(24));
    QPalette white = text->palette();
    white.setColor(QPalette::WindowText, Qt::white);
    text->setPalette(white);
    auto* column = new QVBoxLayout(view);
    column->setContentsMargins(spacing::standard, spacing::standard, spacing::standard, spacing::standard);
    column->setSpacing(spacing::standard);
    column->addStretch();
    column->addWidget(text, 0, Qt::AlignHCenter);
    column->addWidget(new Spinner(32, Qt::white), 0, Qt::AlignHCenter);
    column->addStretch();
    return view;
}

void logInsertion(const std::expected<DBRecord, APIError>& answer) {
    if (answer) {
        logLine(u"Resume inserted successfully with PDF data"_s);
        return;
    }
    logLine(u"Failure! Record could not be inserted"_s);
    switch (answer.error()) {
    case APIError::responseProblem:
        logLine(u"Response problem"_s);
        break;
    case APIError::decodingProblem:
        logLine(u"Decoding error"_s);
        break;
    case APIError::encodingProblem:
        logLine(u"Encoding error"_s);
        break;
    }
}

} // namespace

ValidationSheetView::ValidationSheetView(IntakeState& state, Model& model, RecordsService& service, QWidget* parent)
    : QDialog(parent)
    , m_state(state)
    , m_model(model)
    , m_service(service)
    , m_content(new QStackedWidget) {
    setObjectName(u"validationSheet"_s);
    setWindowTitle(u"Validación de la información"_s);
    setWindowModality(Qt::WindowModal);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_content);
    m_content->addWidget(makeProgressView());
    resize(dataSize);
    showData();
    connect(&m_state, &IntakeState::dataExtractedChanged, this, &ValidationSheetView::showData);
    connect(&m_state, &IntakeState::valuesReplaced, this, &ValidationSheetView::showData);
}

void ValidationSheetView::showData() {
    if (QWidget* old = m_content->widget(1)) {
        old->findChild<ExtractedPage*>()->letGo();
        m_content->removeWidget(old);
        old->deleteLater();
    }
    if (m_state.dataExtracted()) {
        m_content->setCurrentIndex(m_content->addWidget(makeDataView()));
    }
}

QWidget* ValidationSheetView::makeDataView() {
    auto* view = new QWidget;
    view->setObjectName(u"data"_s);
    auto* title = new QLabel(u"Validación de la información"_s);
    title->setFont(textFont(TextStyle::Title));
    auto* picker = new SegmentedControl(tabLabels(valuetypesTabs), u"Página"_s);
    picker->setObjectName(u"valuetype"_s);
    auto* pages = new QStackedWidget;
    pages->addWidget(new ExtractedPage(m_state, m_model));
    pages->addWidget(new GeneratedPage(m_state));
    connect(picker, &SegmentedControl::currentIndexChanged, pages, [this, pages](int index) {
        m_valuetype = static_cast<valuetypesTagTypes>(index);
        pages->setCurrentIndex(index);
    });
    picker->setCurrentIndex(static_cast<int>(m_valuetype)); // what was looked at stays when other values come

    auto* cancel = new QPushButton(u"Cancel"_s);
    cancel->setObjectName(u"cancel"_s);
    auto* ok = new QPushButton(u"OK"_s);
    ok->setObjectName(u"ok"_s);
    for (QPushButton* button : {cancel, ok}) {
        button->setAutoDefault(false); // Return belongs to the fields
    }
    connect(cancel, &QPushButton::clicked, this, &ValidationSheetView::reject);
    connect(ok, &QPushButton::clicked, this, &ValidationSheetView::insertValidatedRecord);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(spacing::standard, spacing::standard, spacing::standard, spacing::standard);
    buttons->addWidget(cancel);
    buttons->addStretch();
    buttons->addWidget(ok);

    auto* column = new QVBoxLayout(view);
    column->setContentsMargins(spacing::standard, spacing::standard, spacing::standard, spacing::standard);
    column->setSpacing(spacing::tight);
    column->addWidget(title, 0, Qt::AlignHCenter);
    column->addSpacing(spacing::tight);
    column->addWidget(picker, 0, Qt::AlignHCenter);
    column->addSpacing(spacing::small);
    column->addWidget(pages, 1);
    column->addLayout(buttons);
    return view;
}

void ValidationSheetView::reject() {
    leave();
}

void ValidationSheetView::insertValidatedRecord() {
    std::optional<QByteArray> file;
    if (const QByteArray& bytes = m_state.pdfDocument()->dataRepresentation(); !bytes.isEmpty()) {
        file = bytes;
    }
    const DBRecordPointer record = validatedRecord(m_state.values(), std::move(file));
    if (!record) {
        return;
    }
    if (record->file) {
        record->keepDocument(m_state.pdfDocument()); // it has been opened for the extraction
    }
    // What follows may outlive the sheet: closing it takes it away.
    Model& model = m_model;
    RecordsService& service = m_service;
    leave();
    model.appendRecord(record);
    model.rebuildCatalogues();
    service.insertResume(*record, logInsertion);
}

void ValidationSheetView::leave() {
    IntakeState& state = m_state;
    state.setSheetIsShowing(false);
    state.setDataExtracted(false);
}

} // namespace dorvantel
