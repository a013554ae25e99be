// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/Model.h"
#include "intake/IntakePipeline.h"
#include "intake/IntakeState.h"

#include <QMainWindow>
#include <QPointer>

class QListView;
class QMessageBox;
class QStackedWidget;

namespace dorvantel {

class CandidateListModel;
class DropOverlay;
struct DroppedPDF;
class ModelService;
class PDFOpener;
class RecordsService;
class URLOpener;
class ValidationSheetView;

/// The main window: the stored candidates on the left, what is selected on the right, and the place where CVs are
/// dropped. Owns the application state and the state of intake; outlived by the services that it was given. Creating it
/// starts loading the records.
class ContentView : public QMainWindow {
    Q_OBJECT

public:
    struct Services {
        RecordsService& records;
        ModelService& models;
        PDFOpener& pdfs;
        URLOpener& urls;
    };

    explicit ContentView(const Services& services, QWidget* parent = nullptr);
    ~ContentView() override;

    Model& model() { return m_model; }
    IntakeState& intake() { return m_intake; }

    /// Takes a CV that was chosen from a dialog or named on the command line, exactly as if it had been dropped.
    /// Ignored while the validation sheet is open.
    void openCV(const QString& path);

    /// What the delete command does: asks for the selected candidate, or takes the question back.
    void deleteCommand();

Q_SIGNALS:
    void settingsRequested();
    void aboutRequested();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeSidebar();
    void showLoading();
    void makeMenus();
    void chooseCV();
    void take(const DroppedPDF& pdf);
    QModelIndex selectedIndex() const;
    void select(const QModelIndex& index);
    void showSelection();
    void selectionChanged();
    void selectedRecordChanged();
    void toggleDeleteAlert();
    void confirmDelete();
    void showSheet();
    void showProcessingError();

    Services m_services;
    Model m_model;
    IntakeState m_intake;
    IntakePipeline m_pipeline;
    DBRecordPointer m_selection;
    bool m_followsModel = false; ///< while the list is brought in line with the model's selection
    CandidateListModel* m_listModel;
    QListView* m_list = nullptr;
    QStackedWidget* m_detail = nullptr;
    DropOverlay* m_overlay = nullptr;
    QPointer<ValidationSheetView> m_sheet;
    QPointer<QMessageBox> m_deleteAlert;
    QPointer<QMessageBox> m_errorAlert;
};

} // namespace dorvantel
