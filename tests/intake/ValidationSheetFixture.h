// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/Model.h"
#include "intake/IntakeState.h"
#include "intake/ValidationSheetView.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"
#include "tests/support/Typing.h"
#include "ui/SegmentedControl.h"
#include "ui/Symbols.h"
#include "ui/TokenEditor.h"
#include "ui/TokenField2.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

inline SheetValues completeValues() {
    return {.gender = u"Femenino"_s,
            .name = u"Ana Ruiz"_s,
            .profession = u"Contable"_s,
            .email = u"ana@example.com"_s,
            .invitationMail = u"Estimada Sra. Ruiz"_s,
            .summarizedText = u"Lleva cuentas."_s,
            .techSkills = {{u"Excel"_s}, {u"Sage"_s}},
            .softSkills = {{u"Trabajo en equipo"_s}, {}},
            .languages = {{u"Inglés"_s}, {u"Catalán"_s}}};
}

inline DBRecordPointer candidateWithTechSkills(const QStringList& techSkills) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->jsonCVData.techSkills = techSkills;
    return record;
}

/// The sheet of a CV that is being read: its data comes with extract().
class ValidationSheetTest : public testing::Test {
protected:
    void SetUp() override {
        state.setPDFDocument(std::make_shared<PDFDocument>(QByteArray("pdf"), QStringList{u"x"_s}));
        state.setSheetIsShowing(true);
        sheet.show();
    }

    void extract(SheetValues values = completeValues()) {
        state.setValues(std::move(values));
        state.setDataExtracted(true);
    }

    template <typename Widget>
    Widget* find(const QString& name) {
        return sheet.findChild<Widget*>(name);
    }
    QLineEdit* field(const QString& name) { return find<QLineEdit>(name); }
    void type(const QString& name, const QString& text) {
        field(name)->selectAll();
        QTest::keyClick(field(name), Qt::Key_Delete);
        typeText(*field(name), text);
    }
    static QLineEdit* input(TokenField2& tokens) { return tokens.tokenField()->findChild<QLineEdit*>(); }
    bool warns(const QString& name) { return find<SymbolView>(name + u"Warning"_s)->isShown(); }
    void press(const QString& name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }

    FakeRecordsService records;
    Model model{records};
    IntakeState state;
    ValidationSheetView sheet{state, model, records, nullptr};
};

} // namespace dorvantel::test
