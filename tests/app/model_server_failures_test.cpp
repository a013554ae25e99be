// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/ContentView.h"
#include "modelserver/AppSettings.h"
#include "modelserver/OllamaService.h"
#include "platform/HttpSession.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <ostream>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;

namespace {

struct Failure {
    const char* name;
    ScriptedReply reply;
    QString message; ///< of the alert
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.name;
}

ScriptedReply status(int code, const QByteArray& contentType, const QByteArray& body) {
    return {.status = code, .body = body, .contentType = contentType};
}

ScriptedReply answer(const QByteArray& body) {
    return {.body = body};
}

/// A recruiter's window over the real client of the model server, which talks to a server that misbehaves.
class ModelServerFailures : public testing::TestWithParam<Failure> {
protected:
    ModelServerFailures() {
        settings.setSelectedLLMModel(u"some-model"_s);
        window.show();
    }

    void dropCV() {
        QFile file(folder.filePath(u"cv.pdf"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.close();
        const qsizetype before = pdfs.openings();
        window.openCV(file.fileName());
        ASSERT_TRUE(waitUntil([&] { return pdfs.openings() == before + 1; }));
        pdfs.succeed(static_cast<std::size_t>(before), {u"Ana Ruiz"_s});
    }

    void expectAlertThenUsableWindow(const QString& message) {
        ASSERT_TRUE(waitUntil([&] { return window.intake().processingError().has_value(); }));
        auto* alert = window.findChild<QMessageBox*>(u"errorAlert"_s);
        ASSERT_TRUE(alert);
        EXPECT_EQ(alert->windowTitle(), u"Error procesando currículum"_s);
        EXPECT_EQ(alert->text(), message);
        QTest::mouseClick(alert->buttons()[0], Qt::LeftButton);
        QTest::keyClick(window.findChild<QDialog*>(u"validationSheet"_s), Qt::Key_Escape);
        EXPECT_FALSE(window.intake().sheetIsShowing());
        EXPECT_TRUE(window.isEnabled());
        dropCV();
        EXPECT_TRUE(window.intake().sheetIsShowing());
    }

    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"settings.conf"_s), QSettings::IniFormat)};
    NetworkHttpSession http;
    OllamaService models{http, settings};
    FakeRecordsService records;
    FakePDFOpener pdfs;
    FakeURLOpener urls;
    ContentView window{{records, models, pdfs, urls}};
};

} // namespace

TEST_P(ModelServerFailures, ShowTheAlertAndLeaveTheWindowUsable) {
    ScriptedServer server(GetParam().reply);
    settings.setOllamaURL(server.url());
    CapturedOutput output;
    dropCV();
    expectAlertThenUsableWindow(GetParam().message);
    EXPECT_EQ(output.lines().value(0), QString(GetParam().message).replace(u"Error con Ollama"_s, u"Ollama Error"_s));
}

TEST_F(ModelServerFailures, RefusedConnection) {
    {
        const ScriptedServer gone(ScriptedReply{});
        settings.setOllamaURL(gone.url());
    }
    CapturedOutput output;
    dropCV();
    expectAlertThenUsableWindow(u"Error con Ollama: Error de red: Connection refused"_s);
}

TEST_F(ModelServerFailures, AddressThatIsNoURL) {
    settings.setOllamaURL(u"http://local host"_s);
    CapturedOutput output;
    dropCV();
    expectAlertThenUsableWindow(u"Error con Ollama: URL de Ollama inválida"_s);
}

INSTANTIATE_TEST_SUITE_P(
    Chat, ModelServerFailures,
    testing::Values(
        Failure{"NotFoundWithJSON", status(404, "application/json", R"({"error":"model 'x' not found"})"),
                u"Error con Ollama: Error de red: HTTP 404"_s},
        Failure{"ServerErrorWithText", status(500, "text/plain", "out of memory"),
                u"Error con Ollama: Error de red: HTTP 500"_s},
        Failure{"UnavailableWithHTML", status(503, "text/html", "<html>busy</html>"),
                u"Error con Ollama: Error de red: HTTP 503"_s},
        Failure{"ServerErrorWithoutBody", status(500, "text/plain", ""), u"Error con Ollama: Error de red: HTTP 500"_s},
        Failure{"HTMLInsteadOfJSON", status(200, "text/html", "<html></html>"),
                u"Error con Ollama: Error decodificando respuesta: No se han podido leer los datos porque no tienen "
                u"el formato correcto."_s},
        Failure{"EmptyBody", answer(""),
                u"Error con Ollama: Error decodificando respuesta: No se han podido leer los datos porque no tienen "
                u"el formato correcto."_s},
        Failure{"NoMessage", answer(R"({"model":"m","done":true})"),
                u"Error con Ollama: Error decodificando respuesta: No se han podido leer los datos porque faltan."_s},
        Failure{"EmptyContent", answer(R"({"model":"m","done":true,"message":{"role":"assistant","content":""}})"),
                u"Error con Ollama: Respuesta vacía del modelo"_s},
        Failure{
            "CutConnection", {.way = ScriptedReply::Way::Cut}, u"Error con Ollama: Error de red: Connection closed"_s}),
    [](const testing::TestParamInfo<Failure>& failure) { return std::string(failure.param.name); });
