// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/Model.h"
#include "intake/IntakePipeline.h"
#include "intake/IntakeState.h"
#include "platform/PDFDocument.h"
#include "platform/PDFPageRenderer.h"
#include "platform/ProcessPDFOpener.h"
#include "platform/Sanitizers.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakeReader.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"
#include "ui/PDFKitView.h"
#include "ui/PDFView.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

using namespace dorvantel;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace std::string_view_literals;

namespace {

const QString reader = QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader");

// The program's own limit is 10 s; what comes on top is the machine's.
constexpr int patienceMs = 12'000;

/// Opens with the real reader, and knows what came of it.
class WatchedOpener final : public PDFOpener {
public:
    void open(const QByteArray& bytes, QObject* context, Completion completion) override {
        m_opener.open(bytes, context, [this, completion](std::shared_ptr<PDFDocument> opened) {
            isDone = true;
            document = opened;
            completion(std::move(opened));
        });
    }
    std::unique_ptr<PDFPageRenderer> makeRenderer(std::shared_ptr<const PDFDocument> shown) const override {
        return m_opener.makeRenderer(std::move(shown));
    }

    void setTimeLimit(std::chrono::seconds limit) { m_opener = ProcessPDFOpener(reader, limit); }

    bool isDone = false;
    std::shared_ptr<PDFDocument> document;

private:
    ProcessPDFOpener m_opener{reader};
};

bool haveAllChildrenEnded() {
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == -1 && errno == ECHILD;
}

class HostilePDF : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_TRUE(waitUntil(haveAllChildrenEnded));
        if (isSanitized) {
            return; // whose memory is its own
        }
        for (const auto whose : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
            rusage used{};
            getrusage(whose, &used);
            EXPECT_LT(used.ru_maxrss, 1024 * 1024) << "kilobytes of the largest process";
        }
    }

    /// Drops the PDF; true when it opened and the sheet was filled with a model server's answers.
    bool intake(const QByteArray& bytes) {
        const CapturedOutput output;
        models.queueChat(uR"({"name":"Ana Ruiz","email":"ana@example.com"})"_s);
        models.queueChat(u"Estimada Sra. Ruiz: gracias."_s);
        QElapsedTimer clock;
        clock.start();
        pipeline.processDroppedPDF(bytes);
        EXPECT_TRUE(state.sheetIsShowing());
        EXPECT_TRUE(waitUntil([this] { return pdfs.isDone; }, patienceMs));
        EXPECT_LT(clock.elapsed(), patienceMs);
        if (!pdfs.document) {
            EXPECT_TRUE(models.chatCalls().isEmpty());
            EXPECT_FALSE(state.dataExtracted());
            return false;
        }
        EXPECT_TRUE(waitUntil([this] { return state.dataExtracted(); }));
        EXPECT_EQ(models.chatCalls().size(), 2);
        EXPECT_EQ(state.values().name, u"Ana Ruiz"_s);
        EXPECT_EQ(state.pdfDocument()->dataRepresentation(), bytes);
        return true;
    }

    /// Shows the document from its beginning to its end; what became of the pages that were in sight.
    QList<PDFView::PageState> view(const std::shared_ptr<const PDFDocument>& document) {
        PDFKitView view(document, pdfs);
        view.resize(500, 600);
        view.show();
        QList<PDFView::PageState> states;
        QScrollBar* bar = view.pdfView()->verticalScrollBar();
        for (const double part : {0.0, 0.5, 1.0}) {
            bar->setValue(static_cast<int>(part * bar->maximum()));
            EXPECT_TRUE(waitUntil([&] { return isDecided(*view.pdfView()); }, 2 * patienceMs)) << part;
            const PDFPageLayout::Span seen = view.pdfView()->pagesInSight();
            for (int page = seen.first; page < seen.end; ++page) {
                states.append(view.pdfView()->pageState(page));
            }
        }
        EXPECT_FALSE(states.isEmpty());
        return states;
    }

    FakeRecordsService records;
    FakeModelService models;
    WatchedOpener pdfs;
    Model model{records};
    IntakeState state;
    IntakePipeline pipeline{state, model, models, pdfs};

private:
    static bool isDecided(const PDFView& view) {
        const PDFPageLayout::Span seen = view.pagesInSight();
        for (int page = seen.first; page < seen.end; ++page) {
            if (view.pageState(page) == PDFView::PageState::Waiting) {
                return false;
            }
        }
        return seen.end > seen.first;
    }
};

struct Made {
    const char* name;
    std::function<QByteArray()> bytes;
    bool isDrawn; ///< else it does not open
    std::chrono::seconds timeLimit{10};
};

std::ostream& operator<<(std::ostream& stream, const Made& made) {
    return stream << made.name;
}

class HostilePDFMade : public HostilePDF, public testing::WithParamInterface<Made> {};

QByteArray onePage(const QByteArray& entries, const QByteArrayList& objects) {
    return pdfFromObjects(QByteArrayList{"<< /Type /Catalog /Pages 2 0 R >>",
                                         "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                                         "<< /Type /Page /Parent 2 0 R " + entries + " >>"} +
                          objects);
}

QByteArray pageOf(int points) {
    const QByteArray side = QByteArray::number(points);
    return onePage("/MediaBox [0 0 " + side + ' ' + side + "] /Contents 4 0 R",
                   {pdfStream("1 0 0 rg 0 0 " + side + ' ' + side + " re f")});
}

/// A page with an image whose pixels alone would take gigabytes; only the first of them are there.
QByteArray hugeImage() {
    const QByteArray row = qCompress(QByteArray(1 << 20, '\0'), 9).sliced(4);
    return onePage("/MediaBox [0 0 500 500] /Contents 4 0 R /Resources << /XObject << /I 5 0 R >> >>",
                   {pdfStream("500 0 0 500 0 0 cm /I Do"),
                    pdfStream(row, "/Type /XObject /Subtype /Image /Width 35000 /Height 35000 /BitsPerComponent 8 "
                                   "/ColorSpace /DeviceRGB /Filter /FlateDecode")});
}

QByteArray deeplyNested() {
    const QByteArray arrays = QByteArray("[").repeated(100'000) + QByteArray("]").repeated(100'000);
    return onePage("/MediaBox [0 0 500 500] /Contents 4 0 R", {pdfStream(arrays + " 0 0 9 9 re f"), arrays});
}

QByteArray formThatDrawsItself() {
    return onePage("/MediaBox [0 0 500 500] /Contents 4 0 R /Resources << /XObject << /F 5 0 R >> >>",
                   {pdfStream("/F Do"), pdfStream("/F Do", "/Type /XObject /Subtype /Form /BBox [0 0 9 9] "
                                                           "/Resources << /XObject << /F 5 0 R >> >>")});
}

QByteArray withJavaScript() {
    return pdfFromObjects(
        {"<< /Type /Catalog /Pages 2 0 R /OpenAction << /S /JavaScript /JS (while \\(true\\) {}) >> >>",
         "<< /Type /Pages /Count 1 /Kids [3 0 R] >>", "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 500 500] >>"});
}

QByteArray withoutPages() {
    return pdfFromObjects({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 0 /Kids [] >>"});
}

const std::array made = {
    Made{"PageOf35000Points", [] { return pageOf(35'000); }, true},
    Made{"PageOfAMillionPoints", [] { return pageOf(1'000'000); }, true},
    Made{"HugeImage", hugeImage, true},
    Made{"ContentOfGigabytes", memoryBombPDF, false},
    Made{"DeeplyNested", deeplyNested, true},
    Made{"EndlessPageTree", neverEndingPDF, false, 1s},
    Made{"FormThatDrawsItself", formThatDrawsItself, true},
    Made{"JavaScriptThatNeverEnds", withJavaScript, true},
    Made{"Encrypted", [] { return encryptedPDF("Secreto", "view"); }, false},
    Made{"WithoutPages", withoutPages, false},
    Made{"Truncated", [] { return textPDF({"Ana"}).left(60); }, false},
    Made{"Empty", [] { return QByteArray(); }, false},
};

class HostilePDFOdd : public HostilePDF, public testing::WithParamInterface<const char*> {};

// Named here, so that each is a test of its own whether or not the folder is there when tests are listed.
constexpr std::array odd = {
    "anti-copy-font",
    "arabic-rtl",
    "attachment",
    "bad-direct-root",
    "bitmap-bomb-35000px",
    "cjk-vertical",
    "content-cycle-type3",
    "deep-arrays",
    "deep-pages",
    "enc-aes256-empty-user-password",
    "enc-libreoffice-password",
    "enc-r2-empty-password",
    "enc-rc4-user-password",
    "enc-saslprep-unicode-password",
    "field-loop-hangs-poppler",
    "form-xobject-cycle",
    "french-diacritics",
    "fuzz-101",
    "fuzz-335a",
    "fuzz-99b",
    "fuzz-deep-nesting-202",
    "fuzz-ghostscript-698804",
    "fuzz-pdfbox-3148",
    "fuzz-poppler-395",
    "fuzz-poppler-742-js",
    "hash-in-file-name#",
    "header-and-eof-only",
    "hidden-text-off-cropbox",
    "hidden-text-under-shape",
    "javascript-form",
    "javascript-open-action",
    "jbig2-bomb",
    "leading-junk-encrypted",
    "letters-run-together-watermark",
    "ligatures",
    "no-contents-page",
    "no-trailer",
    "object-stream-self-ref",
    "ocr-font-no-glyf",
    "owner-password-no-permissions",
    "page-count-213-million",
    "page-count-overflow",
    "pages-tree-loop-2",
    "rotated-text",
    "scan-french",
    "scan-skewed",
    "schizophrenic-text",
    "spreadsheet-named-pdf",
    "text-as-curves",
    "text-named-pdf",
    "truetype-no-unicode-map",
    "truncated-dictionary",
    "xfa-placeholder",
    "xref-keyword-missing",
    "xref-loop",
    "zero-bytes",
};

QString oddFolder() {
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    return data.isEmpty() ? QString() : data + "/odd"_L1;
}

/// What does not open is never shown by the program; who shows it all the same is not to be hurt either.
std::shared_ptr<PDFDocument> asIfOpened(const QByteArray& bytes) {
    return std::make_shared<PDFDocument>(bytes, QStringList{QString()});
}

std::string testName(std::string name) {
    std::ranges::replace_if(name, [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

} // namespace

TEST_P(HostilePDFMade, IsReadAndShownOrRefused) {
    if (isSanitized && GetParam().name == "ContentOfGigabytes"sv) {
        GTEST_SKIP() << "under the sanitizers the reader has no limit on memory";
    }
    pdfs.setTimeLimit(GetParam().timeLimit);
    const bool opened = intake(GetParam().bytes());
    ASSERT_EQ(opened, GetParam().isDrawn);
    const auto expected = opened ? PDFView::PageState::Drawn : PDFView::PageState::Unavailable;
    for (const PDFView::PageState page : view(opened ? state.pdfDocument() : asIfOpened(GetParam().bytes()))) {
        EXPECT_EQ(page, expected);
    }
}

INSTANTIATE_TEST_SUITE_P(, HostilePDFMade, testing::ValuesIn(made),
                         [](const auto& file) { return std::string(file.param.name); });

TEST_P(HostilePDFOdd, IsReadAndShownOrRefused) {
    if (oddFolder().isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_TEST_DATA is not set";
    }
    const QByteArray path = QString(oddFolder() + u'/' + QLatin1String(GetParam()) + ".pdf"_L1).toUtf8();
    ASSERT_TRUE(QFile::exists(QString::fromUtf8(path))) << path.constData();
    const QByteArray bytes = contentOf(QString::fromUtf8(path));
    const bool opened = intake(bytes);
    view(opened ? state.pdfDocument() : asIfOpened(bytes));
}

INSTANTIATE_TEST_SUITE_P(, HostilePDFOdd, testing::ValuesIn(odd),
                         [](const auto& file) { return testName(file.param); });

TEST(HostilePDFOddNames, AreThoseOfTheFolder) {
    if (oddFolder().isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_TEST_DATA is not set";
    }
    QStringList files = QDir(oddFolder()).entryList({u"*.pdf"_s}, QDir::Files);
    QStringList named;
    for (const char* name : odd) {
        named.append(QLatin1String(name) + ".pdf"_L1);
    }
    files.sort();
    named.sort();
    EXPECT_EQ(files, named);
}
