// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>
#include <vector>

namespace dorvantel {

class IntakeState;
class Model;
class ModelService;
class PDFDocument;
class PDFOpener;

/// From a CV's bytes to filled-in values: opens the PDF, asks the model server for the data and for the mail, parses
/// both answers, splits skills and languages by the catalogues and flags the state as ready. Stores nothing. Lives on
/// the UI thread, which is free while the PDF is read and the model server works; outlived by all it was given.
///
/// Every CV is a run of its own. Runs do not cancel each other, and the one that ends last writes the values last,
/// always together with its own PDF. Leaving the sheet abandons all runs: their results reach nobody, and the model
/// server is freed.
class IntakePipeline : public QObject {
    Q_OBJECT

public:
    IntakePipeline(IntakeState& state, const Model& model, ModelService& service, PDFOpener& opener,
                   QObject* parent = nullptr);
    ~IntakePipeline() override;

    /// Starts a run for a CV and shows the sheet, on its progress view at first. A PDF that does not open leaves it
    /// there.
    void processDroppedPDF(const QByteArray& bytes);

private:
    class Run;

    void extract(Run& run, std::shared_ptr<PDFDocument> document);
    void finish(Run& run, const QString& extractionAnswer, const QString& mailAnswer);
    void fail(Run& run, const QString& logged, const QString& shown);
    void end(Run& run);

    /// Asks the model server and hands a successful answer to `receive`; any failure ends the run.
    template <typename Receive>
    void ask(Run& run, const QString& prompt, double temperature, Receive receive);

    IntakeState& m_state;
    const Model& m_model;
    ModelService& m_service;
    PDFOpener& m_opener;
    std::vector<std::unique_ptr<Run>> m_runs;
};

} // namespace dorvantel
