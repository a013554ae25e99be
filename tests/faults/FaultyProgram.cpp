// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/faults/FaultyProgram.h"

#include "search/LazyRowList.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"

#include <QFile>
#include <QListView>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <string_view>
#include <utility>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int candidates = 40;

Ask askOf(const ScriptedRequest& request) {
    if (request.method == "DELETE") {
        return Ask::Delete;
    }
    const QByteArray path = request.target.split('?').first();
    if (path == "/curriculums") {
        return request.method == "GET" ? Ask::List : Ask::Insert;
    }
    if (path == "/curriculums/search") {
        return Ask::Search;
    }
    if (path == "/api/chat") {
        return request.body.contains("\"temperature\":0.3") ? Ask::Extraction : Ask::Mail;
    }
    if (path == "/api/embed") {
        return Ask::Embed;
    }
    if (path == "/api/tags") {
        return Ask::Tags;
    }
    return path == "/api/show" ? Ask::Show : Ask::PDF;
}

QByteArray numbers(const QByteArray& bytes) {
    QByteArrayList texts;
    for (const char byte : bytes) {
        texts.append(QByteArray::number(static_cast<unsigned char>(byte)));
    }
    return texts.join(',');
}

QByteArray list() {
    QByteArrayList records;
    for (int i = 0; i < candidates; ++i) {
        records.append(R"({"name":"Ana","profession":"Contable","email":"c)" + QByteArray::number(i) +
                       R"(@example.com","summarizedText":"","invitationMail":"",)"
                       R"("jsonCVData":{"gender":"","softSkills":[],"techSkills":[],"languages":[]}})");
    }
    return R"({"response":[)" + records.join(',') + "]}";
}

QByteArray chat(const QByteArray& content) {
    return R"({"model":"m","message":{"role":"assistant","content":")" + content + R"("},"done":true})";
}

/// A server that is about to refuse connections must not have one open that the client believes in.
ScriptedReply withoutKeepingAlive(ScriptedReply reply) {
    reply.headers = "Connection: close\r\n";
    return reply;
}

} // namespace

ScriptedReply FaultyProgram::healthyReply(Ask ask) {
    switch (ask) {
    case Ask::List:
        return {.body = list()};
    case Ask::PDF:
        return {.body = R"({"Ana":0,"file":[)" + numbers(textPDF({"Ana Ruiz"})) + "]}"};
    case Ask::Insert:
        return {.status = 201,
                .body = R"({"name":"Ana","profession":"","email":"","summarizedText":"","invitationMail":"",)"
                        R"("jsonCVData":""})"};
    case Ask::Delete:
        return {.status = 204, .body = {}};
    case Ask::Search:
        return {.body = R"({"sql":"Ana","result":[{"name":"Ana","profession":"Contable","email":"ana@example.com",)"
                        R"("summarizedText":"","invitationMail":"","score":100,)"
                        R"("jsonCVData":{"gender":"","softSkills":[],"techSkills":[],"languages":[]}}]})"};
    case Ask::Extraction:
        return {.body = chat(R"({\"name\":\"Ana\",\"profession\":\"Contable\",\"email\":\"ana@example.com\",)"
                             R"(\"summarizedText\":\"Resumen\"})")};
    case Ask::Mail:
        return {.body = chat("Estimada Ana")};
    case Ask::Embed:
        return {.body = R"({"model":"Ana","embeddings":[[1,0]]})"};
    case Ask::Tags:
        return {.body = R"({"models":[{"name":"Ana"}]})"};
    case Ask::Show:
        break;
    }
    return {.body = R"({"template":"Ana"})"};
}

FaultyProgram::FaultyProgram() {
    settings.setOllamaURL(server.url());
    settings.setSelectedLLMModel(u"m"_s);
    settings.setSelectedEmbeddingModel(u"e"_s);
    QFile file(folder.filePath(u"cv.pdf"_s));
    file.open(QIODevice::WriteOnly);
    file.write(textPDF({"Ana Ruiz"}));
}

FaultyProgram::~FaultyProgram() {
    program.reset();
}

ScriptedReply FaultyProgram::answer(const ScriptedRequest& request) {
    if (stallsEverything) {
        return stalled();
    }
    const Ask ask = askOf(request);
    const ScriptedReply healthyAnswer = healthyReply(ask);
    const bool meetsFault = fault != nullptr && fault->reply && ask == faulty;
    if (!meetsFault) {
        return withoutKeepingAlive(healthyAnswer);
    }
    m_isWaitedFor = fault->isSilent;
    return fault->reply(healthyAnswer, elsewhere.url().toLatin1());
}

void FaultyProgram::open() {
    program.reset();
    watch();
    program = std::make_unique<DorvantelApp>(settings, server.url() + u"/curriculums"_s);
    window().resize(1100, 1000);
    window().show();
}

void FaultyProgram::start() {
    open();
    ASSERT_TRUE(waitFor([this] { return !window().model().isLoading(); }));
}

void FaultyProgram::watch() {
    output.reset(); // one at a time
    output = std::make_unique<WatchedOutput>();
}

void FaultyProgram::misbehave(Ask ask, const Fault& chosen) {
    faulty = ask;
    fault = &chosen;
    if (!chosen.reply) {
        server.refuse();
    }
    watch();
}

void FaultyProgram::behave() {
    if (fault != nullptr && !fault->reply) {
        server.accept();
    }
    fault = nullptr;
    watch();
}

Reading FaultyProgram::reading() const {
    if (fault->isSilent) {
        return hungUp();
    }
    const ScriptedReply healthyAnswer = healthyReply(faulty);
    if (faulty == Ask::Delete) {
        return fault->deletion(healthyAnswer);
    }
    const bool isGet = faulty == Ask::List || faulty == Ask::PDF || faulty == Ask::Tags;
    Reading reading = isGet ? fault->get(healthyAnswer) : fault->post(healthyAnswer);
    if (faulty == Ask::PDF && reading.body.contains('\xE9')) {
        reading.at = reading.body.indexOf("An\xE9"); // passed over, and wrong from its beginning
    }
    return reading;
}

bool FaultyProgram::waitFor(const std::function<bool()>& condition) {
    return waitUntil([&] {
        if (std::exchange(m_isWaitedFor, false)) {
            server.hangUp();
        }
        return condition();
    });
}

void FaultyProgram::expectLines(const QStringList& expected) {
    EXPECT_TRUE(waitFor([&] { return output->lines().size() >= expected.size(); }));
    EXPECT_EQ(output->lines(), expected);
}

void FaultyProgram::selectCandidate(int index) {
    constexpr int rowsBefore = 2; // the entry of the search and the header
    auto* rows = window().findChild<QListView*>(u"candidateList"_s);
    rows->setCurrentIndex(rows->model()->index(rowsBefore + index, 0));
}

void FaultyProgram::openSearch() {
    auto* rows = window().findChild<QListView*>(u"candidateList"_s);
    rows->setCurrentIndex(rows->model()->index(0, 0));
}

void FaultyProgram::press(QWidget& parent, const QString& buttonName) {
    auto* button = parent.findChild<QPushButton*>(buttonName);
    ASSERT_TRUE(button) << qPrintable(buttonName);
    ASSERT_TRUE(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
}

void FaultyProgram::pressSearch() {
    press(window(), u"searchButton"_s);
}

void FaultyProgram::dropCV() {
    window().openCV(folder.filePath(u"cv.pdf"_s));
    ASSERT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
}

QWidget* FaultyProgram::sheet() {
    auto* found = window().findChild<QDialog*>(u"validationSheet"_s);
    return found != nullptr && found->isVisible() ? found : nullptr;
}

QMessageBox* FaultyProgram::alert(const QString& name) {
    auto* found = window().findChild<QMessageBox*>(name);
    return found != nullptr && found->isVisible() ? found : nullptr;
}

LazyRowList* FaultyProgram::results() {
    return window().findChild<LazyRowList*>(u"results"_s);
}

void FaultyProgram::expectSearchWorks(const QString& freeText) {
    press(window(), u"clearButton"_s);
    EXPECT_EQ(results()->count(), 0);
    window().findChild<QPlainTextEdit*>(u"freeText"_s)->setPlainText(freeText);
    pressSearch();
    EXPECT_TRUE(waitFor([this] { return results()->count() == 1; }));
}

std::vector<Fault> faultsOfWindows() {
    std::vector<Fault> chosen;
    for (const Fault& each : faults()) {
        const bool isOneOfMany = each.isSilent && each.name != std::string_view("Stalled");
        const bool takesLong = each.name == std::string_view("GigabyteInChunks");
        if (!isOneOfMany && !takesLong) {
            chosen.push_back(each);
        }
    }
    return chosen;
}

} // namespace dorvantel::test
