// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/ContentView.h"

#include "app/CandidateListModel.h"
#include "app/CandidateRowDelegate.h"
#include "app/DropOverlay.h"
#include "app/Placeholder.h"
#include "intake/CandidateDetailUIView.h"
#include "intake/DroppedPDF.h"
#include "intake/ValidationSheetView.h"
#include "platform/Log.h"
#include "search/SearchUIView.h"
#include "ui/Spinner.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QKeySequence>
#include <QListView>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int sidebarMinimumWidth = 250;
constexpr int sidebarIdealWidth = 300;

/// An alert as the desktop's own would be, over `owner`. The caller adds the buttons.
QMessageBox* makeAlert(const QString& objectName, const QString& title, const QString& message, QWidget* owner) {
    constexpr int iconSize = 40;
    auto* alert = new QMessageBox(QMessageBox::NoIcon, title, message, QMessageBox::NoButton, owner);
    alert->setObjectName(objectName);
    alert->setWindowModality(Qt::WindowModal);
    alert->setTextFormat(Qt::PlainText); // a name is not markup
    alert->setIconPixmap(
        symbolIcon(u"exclamationmark.triangle.fill"_s, readableColour(colours::orange, alert->palette()))
            .pixmap(iconSize, iconSize));
    return alert;
}

bool isSame(const DBRecordPointer& a, const DBRecordPointer& b) {
    return a && b ? *a == *b : a == b;
}

} // namespace

ContentView::ContentView(const Services& services, QWidget* parent)
    : QMainWindow(parent)
    , m_services(services)
    , m_model(services.records)
    , m_pipeline(m_intake, m_model, services.models, services.pdfs)
    , m_listModel(new CandidateListModel(m_model, this)) {
    setObjectName(u"main"_s);
    setWindowTitle(u"Dorvantel"_s);
    setAcceptDrops(true);

    m_detail = new QStackedWidget;
    m_detail->setObjectName(u"detail"_s);
    m_detail->addWidget(new Placeholder);

    auto* splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeSidebar());
    splitter->addWidget(m_detail);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({sidebarIdealWidth, 3 * sidebarIdealWidth});
    setCentralWidget(splitter);
    makeMenus();
    m_overlay = new DropOverlay(this);

    connect(&m_model, &Model::selectedDBRecordChanged, this, &ContentView::selectedRecordChanged);
    connect(&m_intake, &IntakeState::sheetIsShowingChanged, this, &ContentView::showSheet);
    connect(&m_intake, &IntakeState::processingErrorChanged, this, &ContentView::showProcessingError);
}

ContentView::~ContentView() = default;

QWidget* ContentView::makeSidebar() {
    m_list = new QListView;
    m_list->setObjectName(u"candidateList"_s);
    m_list->setAccessibleName(u"Candidatos"_s);
    m_list->setModel(m_listModel);
    m_list->setItemDelegate(new CandidateRowDelegate(m_list));
    m_list->setMinimumWidth(sidebarMinimumWidth);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setFrameShape(QFrame::NoFrame);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &ContentView::selectionChanged);
    connect(m_listModel, &CandidateListModel::rowsRemoved, this, [this] { select(m_listModel->indexOf(m_selection)); });
    showLoading();
    return m_list;
}

/// Where the first candidates will be.
void ContentView::showLoading() {
    constexpr int spinnerSize = 20;
    auto* spinner = new Spinner(spinnerSize);
    spinner->setObjectName(u"loadingCandidates"_s);
    auto* column = new QVBoxLayout(m_list->viewport());
    column->setContentsMargins(0, 0, 0, 0);
    column->addSpacing(m_list->visualRect(m_listModel->index(m_listModel->rowCount() - 1)).bottom());
    column->addWidget(spinner, 0, Qt::AlignHCenter);
    column->addStretch();
    spinner->hide();
    const auto show = [this, spinner] { spinner->setBusy(m_model.isLoading()); };
    connect(&m_model, &Model::isLoadingChanged, spinner, show);
    show();
}

void ContentView::makeMenus() {
    QMenu* file = menuBar()->addMenu(u"&Archivo"_s);
    QAction* add = file->addAction(u"&Añadir currículum…"_s, QKeySequence::Open, this, &ContentView::chooseCV);
    add->setObjectName(u"addCV"_s);
    file->addSeparator();
    // The platform's key for the settings has no standard here that Qt knows.
    QAction* settings = file->addAction(u"&Preferencias…"_s, QKeySequence(Qt::CTRL | Qt::Key_Comma), this,
                                        &ContentView::settingsRequested);
    settings->setObjectName(u"settings"_s);
    file->addSeparator();
    // Not the standard key that Qt knows: there is none on desktops without a theme of their own.
    QAction* quit = file->addAction(u"&Salir"_s, QKeySequence(Qt::CTRL | Qt::Key_Q), this, &QWidget::close);
    quit->setObjectName(u"quit"_s);

    QMenu* edit = menuBar()->addMenu(u"&Edición"_s);
    // The key belongs to the list: in a text field it deletes text.
    QAction* remove = edit->addAction(u"&Borrar"_s, this, &ContentView::deleteCommand);
    remove->setObjectName(u"deleteCandidate"_s);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    m_list->addAction(remove);

    QMenu* view = menuBar()->addMenu(u"&Ver"_s);
    QAction* refresh = view->addAction(u"Act&ualizar"_s, QKeySequence::Refresh, this, [] { logLine(u"Refresh data"); });
    refresh->setObjectName(u"refresh"_s);

    QMenu* help = menuBar()->addMenu(u"A&yuda"_s);
    QAction* about = help->addAction(u"&Acerca de Dorvantel..."_s, this, &ContentView::aboutRequested);
    about->setObjectName(u"about"_s);
}

// Selection

// The current row is not the selected one: a list that gets the focus makes its first row the current one.
QModelIndex ContentView::selectedIndex() const {
    return m_list->selectionModel()->selectedIndexes().value(0);
}

void ContentView::select(const QModelIndex& index) {
    if (index.isValid()) {
        m_list->setCurrentIndex(index);
    } else {
        m_list->clearSelection();
    }
}

void ContentView::selectionChanged() {
    if (m_listModel->isRemoving() || m_followsModel) {
        return;
    }
    m_selection = m_listModel->record(selectedIndex());
    if (!isSame(m_selection, m_model.selectedDBRecord())) {
        m_model.setSelectedDBRecord(m_selection);
    }
    showSelection();
}

void ContentView::selectedRecordChanged() {
    if (!isSame(m_model.selectedDBRecord(), m_selection)) {
        m_selection = m_model.selectedDBRecord();
        {
            const QScopedValueRollback following(m_followsModel, true);
            select(m_listModel->indexOf(m_selection));
        }
        showSelection();
    }
}

void ContentView::showSelection() {
    const QModelIndex current = selectedIndex();
    const bool searching = current.isValid() && CandidateListModel::kind(current) == CandidateListModel::Kind::Search;
    QWidget* old = m_detail->count() > 1 ? m_detail->widget(1) : nullptr;
    const auto* candidate = qobject_cast<CandidateDetailUIView*>(old);
    const bool showsSearch = old && !candidate;
    if (searching == showsSearch && isSame(m_selection, candidate ? candidate->dbRecord() : nullptr)) {
        return;
    }
    if (old) {
        m_detail->removeWidget(old);
        old->deleteLater();
    }
    if (searching) {
        m_detail->setCurrentIndex(m_detail->addWidget(
            new SearchUIView({m_model, m_services.records, m_services.models, m_services.pdfs, m_services.urls})));
    } else if (m_selection) {
        m_detail->setCurrentIndex(
            m_detail->addWidget(new CandidateDetailUIView(m_selection, m_services.records, m_services.pdfs)));
    }
}

// Deleting

void ContentView::deleteCommand() {
    if (m_model.selectedDBRecord()) {
        toggleDeleteAlert();
    }
}

void ContentView::toggleDeleteAlert() {
    if (m_deleteAlert) {
        m_deleteAlert->deleteLater();
        m_deleteAlert->hide();
        m_deleteAlert = nullptr;
        return;
    }
    m_deleteAlert = makeAlert(
        u"deleteAlert"_s, u"Borrar currículum"_s,
        u"¿Está seguro de querer borrar el currículum de "_s + m_model.selectedDBRecord()->name + u"?"_s, this);
    QPushButton* ok = m_deleteAlert->addButton(u"OK"_s, QMessageBox::AcceptRole);
    QPushButton* cancel = m_deleteAlert->addButton(u"Cancelar"_s, QMessageBox::RejectRole);
    m_deleteAlert->setDefaultButton(ok);
    m_deleteAlert->setEscapeButton(cancel);
    connect(m_deleteAlert, &QMessageBox::buttonClicked, this, [this, ok](const QAbstractButton* clicked) {
        if (clicked == static_cast<QAbstractButton*>(ok)) {
            confirmDelete();
        } else {
            toggleDeleteAlert();
        }
    });
    m_deleteAlert->open();
}

void ContentView::confirmDelete() {
    toggleDeleteAlert();
    if (const DBRecordPointer record = m_model.selectedDBRecord()) {
        m_services.records.deleteResume(record->email);
        m_model.removeSelectedRecord();
    }
}

// Intake

void ContentView::openCV(const QString& path) {
    if (isPDFFile(path)) {
        take({path, {}});
    }
}

void ContentView::take(const DroppedPDF& pdf) {
    loadBytes(pdf, this, [this](const QByteArray& bytes) {
        // Asked now and not before: a slow disk may deliver while another CV is already being corrected.
        // Nor into a window that was closed: a sheet that opens then would keep the program.
        if (!m_intake.sheetIsShowing() && isVisible()) {
            m_pipeline.processDroppedPDF(bytes);
        }
    });
}

void ContentView::chooseCV() {
    auto* dialog = new QFileDialog(this, u"Añadir currículum"_s, QString(), u"Currículums en PDF (*.pdf *.PDF)"_s);
    dialog->setObjectName(u"chooseCV"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &ContentView::openCV);
    dialog->open();
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
    if (!m_intake.sheetIsShowing() && firstPDF(*event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        m_overlay->setTargeted(true);
    }
}

void ContentView::dragLeaveEvent(QDragLeaveEvent*) {
    m_overlay->setTargeted(false);
}

void ContentView::dropEvent(QDropEvent* event) {
    m_overlay->setTargeted(false);
    const std::optional<DroppedPDF> dropped = firstPDF(*event->mimeData());
    if (m_intake.sheetIsShowing() || !dropped) {
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    take(*dropped);
}

void ContentView::showSheet() {
    if (!m_intake.sheetIsShowing()) {
        if (m_sheet) {
            m_sheet->hide();
            m_sheet->deleteLater();
            m_sheet = nullptr;
        }
        return;
    }
    m_sheet = new ValidationSheetView(m_intake, m_model, m_services.records, this);
    m_sheet->open();
}

void ContentView::showProcessingError() {
    if (m_errorAlert) {
        m_errorAlert->hide();
        m_errorAlert->deleteLater();
        m_errorAlert = nullptr;
    }
    if (!m_intake.processingError()) {
        return;
    }
    QWidget* owner = m_sheet ? static_cast<QWidget*>(m_sheet) : this;
    m_errorAlert = makeAlert(u"errorAlert"_s, u"Error procesando currículum"_s, *m_intake.processingError(), owner);
    m_errorAlert->setEscapeButton(m_errorAlert->addButton(u"OK"_s, QMessageBox::AcceptRole));
    connect(m_errorAlert, &QMessageBox::finished, this, [this] { m_intake.setProcessingError(std::nullopt); });
    m_errorAlert->open();
}

void ContentView::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    m_overlay->setGeometry(rect());
}

} // namespace dorvantel
