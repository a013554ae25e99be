// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"
#include "intake/IntakePipeline.h"
#include "intake/IntakeState.h"
#include "intake/Prompts.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

const QString extraction =
    uR"({"name":"Ana Ruiz","profession":"Contable","email":"ana@example.com",)"
    uR"("summarizedText":"Lleva cuentas.","softSkills":["TRABAJO EN EQUIPO","liderazgo situacional"],)"
    uR"("techSkills":["excel","Sage"],"languages":["INGLÉS","catalán"]})"_s;
const QString mail = u"Estimada Sra. Ruiz: gracias."_s;

/// A model service whose calls end with an exception.
class ThrowingModelService final : public ModelService {
public:
    QFuture<ModelResult<QString>> chat(const QList<OllamaChatMessage>&, const std::optional<QString>&,
                                       const std::optional<double>&) override {
        QPromise<ModelResult<QString>> promise;
        promise.start();
        promise.setException(std::make_exception_ptr(std::runtime_error("no memory left")));
        promise.finish();
        return promise.future();
    }
    QFuture<ModelResult<QList<double>>> generateEmbedding(const QString&, const std::optional<QString>&) override {
        return {};
    }
};

class IntakePipelineTest : public testing::Test {
protected:
    void fillCatalogues() {
        auto record = std::make_shared<DBRecordRepresentation>();
        record->jsonCVData = {u"Femenino"_s, {u"Trabajo en equipo"_s}, {u"Excel"_s}, {u"Inglés"_s}};
        model.appendRecord(record);
        model.rebuildCatalogues();
    }

    /// There is data on the sheet, of an earlier CV.
    void fillSheet() {
        SheetValues earlier;
        earlier.name = u"Earlier"_s;
        state.setValues(earlier);
        state.setSheetIsShowing(true);
        state.setDataExtracted(true);
    }

    /// Drops a CV and answers its opening with one page of `text`.
    void dropCV(const QByteArray& bytes, const QString& text) {
        pipeline.processDroppedPDF(bytes);
        pdfs.succeed(static_cast<std::size_t>(pdfs.openings()) - 1, {text});
    }

    void answer(qsizetype call, const QString& text) { models.answerChat(call, text); }
    bool waitForCalls(qsizetype calls) {
        return waitUntil([&] { return models.chatCalls().size() == calls; });
    }
    bool waitForData() {
        return waitUntil([&] { return state.dataExtracted(); });
    }
    /// Drops a first CV and answers both questions about it.
    bool isFirstCVRead() {
        dropCV("first", u"first"_s);
        answer(0, extraction);
        if (!waitForCalls(2)) {
            return false;
        }
        answer(1, mail);
        return waitForData();
    }

    QByteArray pdfOfState() const { return state.pdfDocument()->dataRepresentation(); }

    FakeRecordsService records;
    FakeModelService models;
    FakePDFOpener pdfs;
    Model model{records};
    IntakeState state;
    IntakePipeline pipeline{state, model, models, pdfs};
};

} // namespace

TEST_F(IntakePipelineTest, AsksForTheDataThenForTheMailAndFillsTheValues) {
    fillCatalogues();
    CapturedOutput output;
    dropCV("pdf", u"Ana Ruiz, contable"_s);
    EXPECT_TRUE(state.sheetIsShowing());
    ASSERT_EQ(models.chatCalls().size(), 1);
    EXPECT_EQ(models.chatCalls()[0].messages,
              (QList<OllamaChatMessage>{{u"user"_s, buildExtractionPrompt(u"Ana Ruiz contable"_s)}}));
    EXPECT_EQ(models.chatCalls()[0].temperature, 0.3);
    EXPECT_EQ(models.chatCalls()[0].model, std::nullopt);

    answer(0, extraction);
    ASSERT_TRUE(waitForCalls(2));
    EXPECT_EQ(models.chatCalls()[1].messages,
              (QList<OllamaChatMessage>{{u"user"_s, buildInvitationMailPrompt(u"Ana Ruiz contable"_s)}}));
    EXPECT_EQ(models.chatCalls()[1].temperature, 0.7);
    EXPECT_EQ(models.chatCalls()[1].model, std::nullopt);
    EXPECT_FALSE(state.dataExtracted());

    answer(1, mail);
    ASSERT_TRUE(waitForData());
    const SheetValues expected = {.gender = u"Femenino"_s,
                                  .name = u"Ana Ruiz"_s,
                                  .profession = u"Contable"_s,
                                  .email = u"ana@example.com"_s,
                                  .invitationMail = mail,
                                  .summarizedText = u"Lleva cuentas."_s,
                                  .techSkills = {{u"excel"_s}, {u"Sage"_s}},
                                  .softSkills = {{u"Trabajo en equipo"_s}, {u"Liderazgo Situacional"_s}},
                                  .languages = {{u"Inglés"_s}, {u"Catalán"_s}}};
    EXPECT_EQ(state.values(), expected);
    EXPECT_EQ(pdfOfState(), "pdf");
    EXPECT_EQ(models.chatCalls().size(), 2);
    EXPECT_TRUE(models.embeddingCalls().isEmpty());
    EXPECT_EQ(output.lines(), (QStringList{u"Data extraction response (valid JSON): "_s + extraction}));
}

TEST_F(IntakePipelineTest, DataIsFlaggedAsReadyWhenValuesAndPDFAreThere) {
    dropCV("pdf", u"x"_s);
    SheetValues ready;
    QByteArray pdf;
    QObject::connect(&state, &IntakeState::dataExtractedChanged, &state, [&] {
        ready = state.values();
        pdf = pdfOfState();
    });
    CapturedOutput output;
    answer(0, extraction);
    ASSERT_TRUE(waitForCalls(2));
    answer(1, mail);
    ASSERT_TRUE(waitForData());
    EXPECT_EQ(ready.name, u"Ana Ruiz"_s);
    EXPECT_EQ(ready.gender, u"Femenino"_s);
    EXPECT_EQ(ready.languages.unknown, (QStringList{u"Inglés"_s, u"Catalán"_s}));
    EXPECT_EQ(pdf, "pdf");
}

TEST_F(IntakePipelineTest, MailThatMentionsEstimadoAnywhereGivesMasculino) {
    dropCV("pdf", u"x"_s);
    CapturedOutput output;
    answer(0, extraction);
    ASSERT_TRUE(waitForCalls(2));
    answer(1, u"Buenos días. Estimado Sr. Ruiz: gracias."_s);
    ASSERT_TRUE(waitForData());
    EXPECT_EQ(state.values().gender, u"Masculino"_s);
}

TEST_F(IntakePipelineTest, PDFThatDoesNotOpenShowsTheProgressViewAndAsksNothing) {
    CapturedOutput output;
    pipeline.processDroppedPDF("not a PDF");
    pdfs.fail(0);
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_FALSE(state.processingError());
    EXPECT_TRUE(models.chatCalls().isEmpty());
    EXPECT_EQ(output.text(), QString());
}

TEST_F(IntakePipelineTest, PDFThatDoesNotOpenLeavesDataThatIsThere) {
    fillSheet();
    pipeline.processDroppedPDF("not a PDF");
    pdfs.fail(0);
    EXPECT_TRUE(state.dataExtracted());
    EXPECT_EQ(state.values().name, u"Earlier"_s);
    EXPECT_EQ(state.pdfDocument()->pageCount(), 0);
}

TEST_F(IntakePipelineTest, PDFWithoutTextIsSentWithAnEmptyText) {
    dropCV("pdf", QString());
    ASSERT_EQ(models.chatCalls().size(), 1);
    EXPECT_EQ(models.chatCalls()[0].messages[0].content, buildExtractionPrompt(QString()));
}

TEST_F(IntakePipelineTest, FailingFirstCallShowsTheErrorAndNeverAsksForTheMail) {
    SheetValues before;
    before.name = u"Earlier"_s;
    state.setValues(before);
    dropCV("pdf", u"x"_s);
    CapturedOutput output;
    models.answerChat(0, std::unexpected(OllamaError::modelNotConfigured()));
    ASSERT_TRUE(waitUntil([&] { return state.processingError().has_value(); }));
    EXPECT_EQ(*state.processingError(), u"Error con Ollama: Modelo LLM no configurado en Preferencias"_s);
    EXPECT_EQ(output.text(), u"Ollama Error: Modelo LLM no configurado en Preferencias\n"_s);
    EXPECT_EQ(models.chatCalls().size(), 1);
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_EQ(state.values(), before);
}

TEST_F(IntakePipelineTest, FailingSecondCallChangesNoValue) {
    dropCV("pdf", u"x"_s);
    CapturedOutput output;
    answer(0, extraction);
    ASSERT_TRUE(waitForCalls(2));
    models.answerChat(1, std::unexpected(OllamaError::emptyResponse()));
    ASSERT_TRUE(waitUntil([&] { return state.processingError().has_value(); }));
    EXPECT_EQ(*state.processingError(), u"Error con Ollama: Respuesta vacía del modelo"_s);
    EXPECT_EQ(output.text(), u"Ollama Error: Respuesta vacía del modelo\n"_s);
    EXPECT_EQ(state.values(), SheetValues{});
    EXPECT_FALSE(state.dataExtracted());
}

TEST_F(IntakePipelineTest, FailureIsLoggedThenShownAndThenThereIsNoDataAnyMore) {
    dropCV("pdf", u"x"_s);
    fillSheet();
    CapturedOutput output;
    QString logged;
    std::optional<bool> dataWhenShown;
    QObject::connect(&state, &IntakeState::processingErrorChanged, &state, [&] {
        logged = output.text();
        dataWhenShown = state.dataExtracted();
    });
    models.answerChat(0, std::unexpected(OllamaError::emptyResponse()));
    ASSERT_TRUE(waitUntil([&] { return dataWhenShown.has_value(); }));
    EXPECT_EQ(logged, u"Ollama Error: Respuesta vacía del modelo\n"_s);
    EXPECT_EQ(dataWhenShown, true);
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_EQ(state.values().name, u"Earlier"_s);
    EXPECT_TRUE(state.sheetIsShowing());
}

TEST_F(IntakePipelineTest, AnyOtherFailureIsAGeneralError) {
    fillSheet();
    ThrowingModelService throwing;
    IntakePipeline other(state, model, throwing, pdfs);
    CapturedOutput output;
    other.processDroppedPDF("pdf");
    pdfs.succeed(0, {u"x"_s});
    ASSERT_TRUE(waitUntil([&] { return state.processingError().has_value(); }));
    EXPECT_EQ(*state.processingError(), u"Error procesando el currículum: no memory left"_s);
    EXPECT_EQ(output.text(), u"General error: no memory left\n"_s);
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_EQ(state.values().name, u"Earlier"_s);
}

TEST_F(IntakePipelineTest, LeavingTheSheetWhileThePDFOpensGivesTheOpeningUp) {
    pipeline.processDroppedPDF("pdf");
    state.setSheetIsShowing(false);
    EXPECT_TRUE(pdfs.isGivenUp(0));
    pdfs.succeed(0, {u"x"_s});
    EXPECT_TRUE(models.chatCalls().isEmpty());
}

TEST_F(IntakePipelineTest, LeavingTheSheetFreesTheModelServer) {
    dropCV("pdf", u"x"_s);
    EXPECT_FALSE(models.isChatCancelled(0));
    state.setSheetIsShowing(false);
    EXPECT_TRUE(models.isChatCancelled(0));
}

TEST_F(IntakePipelineTest, ResultsOfALeftSheetNeverFillTheSheetOfALaterCV) {
    CapturedOutput output;
    dropCV("first", u"first"_s);
    answer(0, extraction);
    ASSERT_TRUE(waitForCalls(2));
    state.setSheetIsShowing(false);

    dropCV("second", u"second"_s);
    ASSERT_EQ(models.chatCalls().size(), 3);
    answer(1, mail); // late
    answer(2, uR"({"name":"Second"})"_s);
    ASSERT_TRUE(waitForCalls(4));
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_EQ(pdfOfState(), "second");
    answer(3, u"Estimado Sr."_s);
    ASSERT_TRUE(waitForData());
    EXPECT_EQ(state.values().name, u"Second"_s);
    EXPECT_EQ(pdfOfState(), "second");
}

TEST_F(IntakePipelineTest, FailureOfALeftSheetDisturbsNobody) {
    dropCV("first", u"first"_s);
    state.setSheetIsShowing(false);
    dropCV("second", u"second"_s);
    CapturedOutput output;
    models.answerChat(0, std::unexpected(OllamaError::emptyResponse()));
    answer(1, extraction);
    ASSERT_TRUE(waitForCalls(3));
    answer(2, mail);
    ASSERT_TRUE(waitForData());
    EXPECT_FALSE(state.processingError());
    EXPECT_EQ(output.lines().size(), 1);
}

TEST_F(IntakePipelineTest, OfTwoRunsTheLastToFinishWritesTheValuesAndItsOwnPDF) {
    CapturedOutput output;
    dropCV("first", u"first"_s);
    dropCV("second", u"second"_s);
    answer(1, uR"({"name":"Second"})"_s);
    ASSERT_TRUE(waitForCalls(3));
    answer(2, mail);
    ASSERT_TRUE(waitForData());
    EXPECT_EQ(state.values().name, u"Second"_s);
    EXPECT_EQ(pdfOfState(), "second");

    answer(0, uR"({"name":"First"})"_s);
    ASSERT_TRUE(waitForCalls(4));
    answer(3, mail);
    ASSERT_TRUE(waitUntil([&] { return state.values().name == u"First"_s; }));
    EXPECT_EQ(pdfOfState(), "first");
}

TEST_F(IntakePipelineTest, ValuesOnTheSheetKeepTheirPDFWhileALaterCVIsRead) {
    CapturedOutput output;
    ASSERT_TRUE(isFirstCVRead());
    dropCV("second", u"second"_s);
    EXPECT_EQ(pdfOfState(), "first");
}

TEST_F(IntakePipelineTest, FailureOfALaterCVTakesTheDataOffTheSheetAndKeepsTheValues) {
    CapturedOutput output;
    ASSERT_TRUE(isFirstCVRead());
    const SheetValues values = state.values();
    dropCV("second", u"second"_s);
    models.answerChat(2, std::unexpected(OllamaError::emptyResponse()));
    ASSERT_TRUE(waitUntil([&] { return state.processingError().has_value(); }));
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_EQ(state.values(), values);
}

TEST_F(IntakePipelineTest, AnswersThatAreNotJSONStillFillTheSheet) {
    CapturedOutput output;
    dropCV("pdf", u"x"_s);
    answer(0, u"Lo siento, no puedo."_s);
    ASSERT_TRUE(waitForCalls(2));
    answer(1, QStringLiteral(" "));
    ASSERT_TRUE(waitForData());
    EXPECT_EQ(state.values().languages.unknown, (QStringList{u"Español"_s}));
    EXPECT_EQ(state.values().gender, u"Femenino"_s);
    EXPECT_FALSE(state.processingError());
}

TEST_F(IntakePipelineTest, PipelineMayGoWhileTheModelServerWorks) {
    auto other = std::make_unique<IntakePipeline>(state, model, models, pdfs);
    other->processDroppedPDF("pdf");
    pdfs.succeed(0, {u"x"_s});
    other.reset();
    EXPECT_TRUE(models.isChatCancelled(0));
}
