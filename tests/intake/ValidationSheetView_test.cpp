// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/intake/ValidationSheetFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Wait.h"
#include "ui/Figures.h"

#include <QAccessible>
#include <QApplication>

namespace dorvantel::test {

TEST_F(ValidationSheetTest, ShowsTheProgressViewWithoutButtonsUntilDataIsExtracted) {
    EXPECT_TRUE(find<QWidget>(u"progress"_s)->isVisible());
    EXPECT_TRUE(sheet.findChildren<QPushButton*>().isEmpty());
    extract();
    EXPECT_FALSE(find<QWidget>(u"progress"_s)->isVisible());
    EXPECT_TRUE(find<QWidget>(u"data"_s)->isVisible());
}

TEST_F(ValidationSheetTest, EscapeLeavesTheProgressView) {
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_FALSE(state.sheetIsShowing());
}

TEST_F(ValidationSheetTest, CloseButtonOfTheWindowLeavesTheProgressView) {
    sheet.close();
    EXPECT_FALSE(state.sheetIsShowing());
}

TEST_F(ValidationSheetTest, ANameThatAScreenReaderWritesCountsAsTyped) {
    extract();
    QAccessibleInterface* name = QAccessible::queryAccessibleInterface(field(u"name"_s));
    name->setText(QAccessible::Value, u"Ana Ruiz Soler"_s);
    EXPECT_EQ(state.values().name, u"Ana Ruiz Soler"_s);
}

TEST_F(ValidationSheetTest, CancelLeavesTheSheetAndKeepsTheValues) {
    extract();
    press(u"cancel"_s);
    EXPECT_FALSE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_EQ(state.values(), completeValues());
    EXPECT_TRUE(model.dbRecords().empty());
}

TEST_F(ValidationSheetTest, EscapeLeavesTheDataAsCancelDoes) {
    extract();
    QTest::keyClick(&sheet, Qt::Key_Escape);
    EXPECT_FALSE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
}

TEST_F(ValidationSheetTest, ReturnInAFieldStoresNothing) {
    extract();
    QTest::keyClick(field(u"name"_s), Qt::Key_Return);
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_TRUE(model.dbRecords().empty());
}

TEST_F(ValidationSheetTest, ShowsTheExtractedValues) {
    extract();
    EXPECT_EQ(field(u"name"_s)->text(), u"Ana Ruiz"_s);
    EXPECT_EQ(field(u"profession"_s)->text(), u"Contable"_s);
    EXPECT_EQ(field(u"email"_s)->text(), u"ana@example.com"_s);
    EXPECT_EQ(field(u"name"_s)->placeholderText(), u"Nombre…"_s);
    EXPECT_EQ(field(u"profession"_s)->placeholderText(), u"Profesión…"_s);
    EXPECT_EQ(field(u"email"_s)->placeholderText(), u"Correo electrónico…"_s);
    EXPECT_EQ(find<TokenField2>(u"techSkills"_s)->tokens(), (QStringList{u"Excel"_s}));
    EXPECT_EQ(find<TokenField2>(u"techSkills2"_s)->tokens(), (QStringList{u"Sage"_s}));
    EXPECT_EQ(find<TokenField2>(u"softSkills"_s)->tokens(), (QStringList{u"Trabajo en equipo"_s}));
    EXPECT_EQ(find<TokenField2>(u"softSkills2"_s)->tokens(), QStringList());
    EXPECT_EQ(find<TokenField2>(u"languages"_s)->tokens(), (QStringList{u"Inglés"_s}));
    EXPECT_EQ(find<TokenField2>(u"languages2"_s)->tokens(), (QStringList{u"Catalán"_s}));
    EXPECT_EQ(find<QPlainTextEdit>(u"summarizedText"_s)->toPlainText(), u"Lleva cuentas."_s);
    EXPECT_EQ(find<QPlainTextEdit>(u"invitationMail"_s)->toPlainText(), u"Estimada Sra. Ruiz"_s);
}

TEST_F(ValidationSheetTest, EmptyNameShowsAllThreeMarksWhateverTheOtherFieldsHold) {
    extract();
    for (const QString& row : {u"name"_s, u"profession"_s, u"email"_s}) {
        EXPECT_FALSE(warns(row)) << qPrintable(row);
    }
    type(u"name"_s, QString());
    for (const QString& row : {u"name"_s, u"profession"_s, u"email"_s}) {
        EXPECT_TRUE(warns(row)) << qPrintable(row);
    }
}

TEST_F(ValidationSheetTest, NameHidesTheMarksOfEmptyProfessionAndEmail) {
    extract();
    type(u"profession"_s, QString());
    type(u"email"_s, QString());
    EXPECT_FALSE(warns(u"profession"_s));
    EXPECT_FALSE(warns(u"email"_s));
}

TEST_F(ValidationSheetTest, EmptySummaryAndMailShowTheirOwnMarks) {
    extract();
    EXPECT_FALSE(warns(u"summarizedText"_s));
    find<QPlainTextEdit>(u"summarizedText"_s)->clear();
    EXPECT_TRUE(warns(u"summarizedText"_s));
    EXPECT_FALSE(warns(u"invitationMail"_s));
    find<QPlainTextEdit>(u"invitationMail"_s)->clear();
    EXPECT_TRUE(warns(u"invitationMail"_s));
}

TEST_F(ValidationSheetTest, EditingTheMailKeepsItsNoBreakSpaces) {
    SheetValues values = completeValues();
    values.invitationMail = u"Estimada Sra.\u00a0Ruiz:\nGracias"_s;
    extract(values);
    auto* mail = find<QPlainTextEdit>(u"invitationMail"_s);
    mail->moveCursor(QTextCursor::End);
    mail->insertPlainText(u"."_s);
    EXPECT_EQ(state.values().invitationMail, u"Estimada Sra.\u00a0Ruiz:\nGracias."_s);
}

TEST_F(ValidationSheetTest, FigureFollowsTheGender) {
    extract();
    EXPECT_EQ(find<QLabel>(u"figure"_s)->text(), womanFigure.toString());
    QTest::mouseClick(find<QRadioButton>(u"Masculino"_s), Qt::LeftButton, {}, {8, 8});
    EXPECT_EQ(find<QLabel>(u"figure"_s)->text(), manFigure.toString());
    EXPECT_EQ(state.values().gender, u"Masculino"_s);
}

TEST_F(ValidationSheetTest, UnknownGenderShowsTheWoman) {
    SheetValues values = completeValues();
    values.gender = u"masculino"_s;
    extract(values);
    EXPECT_EQ(find<QLabel>(u"figure"_s)->text(), womanFigure.toString());
}

TEST_F(ValidationSheetTest, ChoosingAPageChangesNothingElse) {
    extract();
    EXPECT_FALSE(find<QPlainTextEdit>(u"invitationMail"_s)->isVisible());
    find<SegmentedControl>(u"valuetype"_s)->setCurrentIndex(1);
    EXPECT_TRUE(find<QPlainTextEdit>(u"invitationMail"_s)->isVisible());
    EXPECT_FALSE(field(u"name"_s)->isVisible());
    EXPECT_EQ(state.values(), completeValues());
}

TEST_F(ValidationSheetTest, OKStoresTheCorrectedRecordWithItsPDF) {
    extract();
    type(u"name"_s, u"  maría josé LÓPEZ "_s);
    type(u"profession"_s, u"Contable  "_s);
    type(u"email"_s, u" Maria@Example.COM "_s);
    press(u"ok"_s);

    EXPECT_FALSE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
    ASSERT_EQ(model.dbRecords().size(), 1U);
    const DBRecordRepresentation& record = *model.dbRecords()[0];
    EXPECT_EQ(record.name, u"María José López"_s);
    EXPECT_EQ(record.profession, u"Contable  "_s);
    EXPECT_EQ(record.email, u"maria@example.com"_s);
    EXPECT_EQ(record.jsonCVData.techSkills, (QStringList{u"Excel"_s, u"Sage"_s}));
    EXPECT_TRUE(record.pdfDocument());
    EXPECT_EQ(record.pdfDocument(), state.pdfDocument());
    ASSERT_EQ(records.inserted().size(), 1U);
    EXPECT_EQ(records.inserted()[0], record.toDBRecord());
    EXPECT_EQ(records.inserted()[0].file, "pdf");
}

TEST_F(ValidationSheetTest, OKMakesNewValuesCatalogueValues) {
    extract();
    press(u"ok"_s);
    EXPECT_EQ(model.techSkillsDictionary().value(u"sage"_s), u"Sage"_s);
    EXPECT_EQ(model.languagesDictionary().value(u"catalán"_s), u"Catalán"_s);
}

TEST_F(ValidationSheetTest, OKClosesTheSheetThenListsTheRecordThenRebuildsTheCataloguesThenSends) {
    extract();
    QStringList steps;
    const auto note = [&steps, this](const QString& step) {
        steps.append(step + (records.inserted().empty() ? QString() : u" after sending"_s));
    };
    QObject::connect(&state, &IntakeState::sheetIsShowingChanged, &model, [note] { note(u"closed"_s); });
    QObject::connect(&state, &IntakeState::dataExtractedChanged, &model, [note] { note(u"reset"_s); });
    QObject::connect(&model, &Model::recordsAppended, &model, [note] { note(u"listed"_s); });
    QObject::connect(&model, &Model::cataloguesRebuilt, &model, [note] { note(u"rebuilt"_s); });
    press(u"ok"_s);
    EXPECT_EQ(steps, (QStringList{u"closed"_s, u"reset"_s, u"listed"_s, u"rebuilt"_s}));
    EXPECT_EQ(records.inserted().size(), 1U);
}

TEST_F(ValidationSheetTest, OKWithASummaryOfBlanksDoesNothing) {
    SheetValues values = completeValues();
    values.summarizedText = u" \n "_s;
    extract(values);
    CapturedOutput output;
    press(u"ok"_s);
    EXPECT_TRUE(state.sheetIsShowing());
    EXPECT_TRUE(state.dataExtracted());
    EXPECT_TRUE(model.dbRecords().empty());
    EXPECT_TRUE(records.inserted().empty());
    EXPECT_EQ(output.text(), QString());
}

TEST_F(ValidationSheetTest, InsertThatSucceedsIsLogged) {
    extract();
    press(u"ok"_s);
    CapturedOutput output;
    records.answerInsert();
    EXPECT_EQ(output.text(), u"Resume inserted successfully with PDF data\n"_s);
}

TEST_F(ValidationSheetTest, InsertThatFailsIsLoggedByItsErrorAndTheRecordStays) {
    const QList<std::pair<APIError, QString>> failures = {{APIError::responseProblem, u"Response problem"_s},
                                                          {APIError::decodingProblem, u"Decoding error"_s},
                                                          {APIError::encodingProblem, u"Encoding error"_s}};
    for (const auto& [error, line] : failures) {
        state.setSheetIsShowing(true);
        extract();
        press(u"ok"_s);
        CapturedOutput output;
        records.answerInsert(std::unexpected(error));
        EXPECT_EQ(output.text(), u"Failure! Record could not be inserted\n"_s + line + u"\n"_s);
    }
    EXPECT_EQ(model.dbRecords().size(), 3U);
}

TEST_F(ValidationSheetTest, DocumentWithoutBytesGivesARecordWithoutFileThatIsStillSent) {
    state.setPDFDocument(std::make_shared<PDFDocument>());
    extract();
    press(u"ok"_s);
    ASSERT_EQ(records.inserted().size(), 1U);
    EXPECT_EQ(records.inserted()[0].file, std::nullopt);
}

TEST_F(ValidationSheetTest, FieldsOutsideTheCatalogueTakeNothingThatIsTyped) {
    extract();
    for (const auto& [name, before] : std::initializer_list<std::pair<QString, QStringList>>{
             {u"techSkills2"_s, {u"Sage"_s}}, {u"softSkills2"_s, {}}, {u"languages2"_s, {u"Catalán"_s}}}) {
        auto* outside = find<TokenField2>(name);
        typeText(*input(*outside), u"Python,"_s);
        EXPECT_EQ(outside->tokens(), before);
        EXPECT_EQ(outside->tokenField()->chips().size(), static_cast<std::size_t>(before.size()));
    }
    EXPECT_EQ(state.values(), completeValues());
}

TEST_F(ValidationSheetTest, FieldsOfTheCatalogueTakeItsValuesInItsSpellingAndNoOthers) {
    auto record = candidateWithTechSkills({u"SAP"_s});
    record->jsonCVData.softSkills = {u"Liderazgo"_s};
    record->jsonCVData.languages = {u"Alemán"_s};
    model.appendRecord(record);
    model.rebuildCatalogues();
    extract();
    for (const QString& name : {u"techSkills"_s, u"softSkills"_s, u"languages"_s}) {
        for (const QString& typed : {u"sap,"_s, u"LIDERAZGO,"_s, u"alemán,"_s, u"Cobol,"_s}) {
            typeText(*input(*find<TokenField2>(name)), typed);
        }
    }
    EXPECT_EQ(state.values().techSkills.known, (QStringList{u"Excel"_s, u"SAP"_s}));
    EXPECT_EQ(state.values().softSkills.known, (QStringList{u"Trabajo en equipo"_s, u"Liderazgo"_s}));
    EXPECT_EQ(state.values().languages.known, (QStringList{u"Inglés"_s, u"Alemán"_s}));
}

TEST_F(ValidationSheetTest, TokenOutsideTheCatalogueCanBeDeleted) {
    extract();
    auto* outside = find<TokenField2>(u"techSkills2"_s);
    input(*outside)->setFocus();
    QTest::keyClick(input(*outside), Qt::Key_End);
    QTest::keyClick(input(*outside), Qt::Key_Backspace);
    QTest::keyClick(outside->tokenField()->focusWidget(), Qt::Key_Backspace);
    EXPECT_TRUE(state.values().techSkills.unknown.isEmpty());
}

TEST_F(ValidationSheetTest, TokenTakenByItsMenuComesBackWithTheNextEdit) {
    extract();
    auto* skills = find<TokenField2>(u"techSkills"_s);
    skills->setTokens({});
    type(u"name"_s, u"x"_s);
    EXPECT_EQ(skills->tokens(), (QStringList{u"Excel"_s}));
}

TEST_F(ValidationSheetTest, WhatWasBeingTypedWhenANewExtractionCameReachesNeitherItsValuesNorItsFields) {
    model.appendRecord(candidateWithTechSkills({u"Excel"_s, u"Word"_s}));
    model.rebuildCatalogues();
    extract();
    QApplication::setActiveWindow(&sheet);
    QLineEdit* old = input(*find<TokenField2>(u"techSkills"_s));
    old->setFocus();
    ASSERT_TRUE(old->hasFocus());
    typeText(*old, u"Word"_s);
    SheetValues other = completeValues();
    other.name = u"Otra Persona"_s;
    other.techSkills = {{u"Cobol"_s}, {}};
    extract(other);
    for (auto* name : sheet.findChildren<QLineEdit*>(u"name"_s)) {
        if (name->isVisible()) {
            name->setFocus(); // of the new page, before the old one is gone
        }
    }
    EXPECT_FALSE(old->hasFocus());
    EXPECT_EQ(state.values(), other);
    ASSERT_TRUE(waitUntil([&] { return sheet.findChildren<TokenField2*>(u"techSkills"_s).size() == 1; }));
    EXPECT_EQ(state.values(), other);
    EXPECT_EQ(find<TokenField2>(u"techSkills"_s)->tokens(), (QStringList{u"Cobol"_s}));
    EXPECT_EQ(find<TokenField2>(u"techSkills"_s)->tokenField()->text(), QString());
}

TEST_F(ValidationSheetTest, MayGoWhileSomethingIsBeingTypedInATokenField) {
    model.appendRecord(candidateWithTechSkills({u"Excel"_s, u"Word"_s}));
    model.rebuildCatalogues();
    state.setValues(completeValues());
    state.setDataExtracted(true);
    auto other = std::make_unique<ValidationSheetView>(state, model, records, nullptr);
    other->show();
    QApplication::setActiveWindow(other.get());
    QLineEdit* text = input(*other->findChild<TokenField2*>(u"techSkills"_s));
    text->setFocus();
    ASSERT_TRUE(text->hasFocus());
    typeText(*text, u"Word"_s);
    other.reset();
    EXPECT_EQ(state.values(), completeValues());
}

TEST_F(ValidationSheetTest, WhatIsBeingTypedWhenAnotherFieldIsEditedStays) {
    extract();
    auto* skills = find<TokenField2>(u"techSkills"_s);
    typeText(*input(*skills), u"Wor"_s);
    type(u"name"_s, u"x"_s);
    EXPECT_EQ(skills->tokenField()->text(), u"Wor"_s);
}

TEST_F(ValidationSheetTest, NewExtractionReplacesWhatIsShown) {
    extract();
    SheetValues other = completeValues();
    other.name = u"Otra Persona"_s;
    extract(other);
    EXPECT_TRUE(waitUntil([&] { return field(u"name"_s)->text() == u"Otra Persona"_s; }));
}

} // namespace dorvantel::test
