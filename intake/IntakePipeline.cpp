// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/IntakePipeline.h"

#include "data/Model.h"
#include "intake/Answers.h"
#include "intake/CVText.h"
#include "intake/CatalogueTokens.h"
#include "intake/IntakeState.h"
#include "intake/Prompts.h"
#include "modelserver/ModelService.h"
#include "platform/Log.h"
#include "platform/PDFDocument.h"
#include "platform/PDFOpener.h"
#include "platform/WhenFinished.h"

#include <exception>

namespace dorvantel {

using namespace Qt::StringLiterals;

/// One CV on its way. What it waits for dies with it.
class IntakePipeline::Run : public QObject {
public:
    ~Run() override { answer.cancel(); }

    std::shared_ptr<PDFDocument> document;
    QFuture<ModelResult<QString>> answer;
};

IntakePipeline::IntakePipeline(IntakeState& state, const Model& model, ModelService& service, PDFOpener& opener,
                               QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_model(model)
    , m_service(service)
    , m_opener(opener) {
    connect(&m_state, &IntakeState::sheetIsShowingChanged, this, [this] {
        if (!m_state.sheetIsShowing()) {
            m_runs.clear();
        }
    });
}

IntakePipeline::~IntakePipeline() = default;

void IntakePipeline::processDroppedPDF(const QByteArray& bytes) {
    Run& run = *m_runs.emplace_back(std::make_unique<Run>());
    m_opener.open(bytes, &run, [this, &run](std::shared_ptr<PDFDocument> document) {
        if (document) {
            extract(run, std::move(document));
        } else {
            end(run);
        }
    });
    m_state.setSheetIsShowing(true);
}

void IntakePipeline::extract(Run& run, std::shared_ptr<PDFDocument> document) {
    run.document = std::move(document);
    // Values on the sheet belong to the PDF they came from: a record must never get another CV's PDF.
    if (!m_state.dataExtracted()) {
        m_state.setPDFDocument(run.document);
    }
    const QString cvText = extractCleanText(*run.document);
    const QString mailPrompt = buildInvitationMailPrompt(cvText);
    ask(run, buildExtractionPrompt(cvText), extractionTemperature,
        [this, &run, mailPrompt](const QString& extractionAnswer) {
            ask(run, mailPrompt, invitationMailTemperature, [this, &run, extractionAnswer](const QString& mailAnswer) {
                finish(run, extractionAnswer, mailAnswer);
            });
        });
}

template <typename Receive>
void IntakePipeline::ask(Run& run, const QString& prompt, double temperature, Receive receive) {
    run.answer = m_service.chat({{u"user"_s, prompt}}, std::nullopt, temperature);
    whenFinished(
        run.answer, &run,
        [this, &run, receive = std::move(receive)](const ModelResult<QString>& answer) {
            if (answer) {
                receive(*answer);
                return;
            }
            const QString description = localizedDescription(answer.error());
            fail(run, u"Ollama Error: "_s + description, u"Error con Ollama: "_s + description);
        },
        [this, &run](const std::exception& error) {
            const QString description = QString::fromUtf8(error.what());
            fail(run, u"General error: "_s + description, u"Error procesando el currículum: "_s + description);
        });
}

void IntakePipeline::finish(Run& run, const QString& extractionAnswer, const QString& mailAnswer) {
    const ExtractedFields fields = parseExtractionAnswer(extractionAnswer);
    SheetValues values;
    values.name = fields.name;
    values.profession = fields.profession;
    values.email = fields.email;
    values.summarizedText = fields.summarizedText;
    values.invitationMail = parseMailAnswer(mailAnswer);
    values.gender = inferGender(values.invitationMail);
    values.techSkills = splitByCatalogue(fields.techSkills, m_model.techSkillsDictionary(), TokenKind::Technical);
    values.softSkills = splitByCatalogue(fields.softSkills, m_model.softSkillsDictionary(), TokenKind::Spoken);
    values.languages = splitByCatalogue(fields.languages, m_model.languagesDictionary(), TokenKind::Spoken);
    m_state.setPDFDocument(run.document);
    m_state.setValues(std::move(values));
    m_state.setDataExtracted(true);
    end(run);
}

void IntakePipeline::fail(Run& run, const QString& logged, const QString& shown) {
    logLine(logged);
    end(run);
    m_state.setProcessingError(shown);
    m_state.setDataExtracted(false);
}

void IntakePipeline::end(Run& run) {
    std::erase_if(m_runs, [&run](const std::unique_ptr<Run>& held) { return held.get() == &run; });
}

} // namespace dorvantel
