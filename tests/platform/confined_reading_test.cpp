// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageFrames.h"
#include "platform/PDFPageReader.h"
#include "platform/PDFPageServer.h"
#include "platform/PDFRenderFrames.h"
#include "tests/support/FakeReader.h"
#include "tests/support/SamplePDF.h"

#include <QDir>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

// The reader, confined as it is, gives what the same code gives in this process, which is not confined.

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t width = 300;
constexpr std::uint32_t height = 400;

QByteArray runReader(const QStringList& arguments, const QByteArray& input) {
    QProcess process;
    process.start(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader"), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitCode(), 0);
    return process.readAllStandardOutput();
}

template <typename Frame>
QByteArray bytesOf(const Frame& frame) {
    return {reinterpret_cast<const char*>(&frame), sizeof frame};
}

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

QByteArray serveHere(const QByteArray& input) {
    const File from(std::tmpfile(), std::fclose);
    const File to(std::tmpfile(), std::fclose);
    std::fwrite(input.constData(), 1, static_cast<std::size_t>(input.size()), from.get());
    std::rewind(from.get());
    EXPECT_TRUE(servePages(from.get(), to.get(), [] {}));
    QByteArray output(std::ftell(to.get()), Qt::Uninitialized);
    std::rewind(to.get());
    EXPECT_EQ(std::fread(output.data(), 1, static_cast<std::size_t>(output.size()), to.get()), output.size());
    return output;
}

/// What has the reader draw the first pages.
QByteArray drawingOf(const QByteArray& pdf, qsizetype pages) {
    constexpr qsizetype mostPages = 3;
    QByteArray input =
        bytesOf(RenderDocument{static_cast<std::uint64_t>(pdf.size()), static_cast<std::uint32_t>(pages), 0}) + pdf;
    for (qsizetype page = 0; page < std::min(pages, mostPages); ++page) {
        input += bytesOf(RenderRequest{static_cast<std::uint32_t>(page), width, height});
    }
    return input;
}

void expectTheSame(const QByteArray& pdf) {
    const std::optional<QStringList> texts = readPageTexts(pdf);
    ASSERT_TRUE(texts);
    EXPECT_EQ(runReader({}, pdf), encodePageFrames(*texts));
    const QByteArray input = drawingOf(pdf, texts->size());
    const QByteArray drawn = serveHere(input);
    EXPECT_GT(drawn.size(), qsizetype{width} * height * 4);
    EXPECT_TRUE(runReader({u"--render"_s}, input) == drawn);
}

/// Text in fonts that the PDF does not bring, which the library looks for in the system's folders: Latin, Chinese and a
/// colour font of emoji.
QByteArray foreignFonts() {
    const auto font = [](const QByteArray& name) {
        return "<< /Type /Font /Subtype /TrueType /BaseFont /" + name + " /Encoding /WinAnsiEncoding >>";
    };
    return test::pdfFromObjects(
        {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 400] /Contents 4 0 R /Resources << /Font << /F1 5 0 R /F2 6 "
         "0 R "
         "/F3 7 0 R >> >> >>",
         test::pdfStream("BT /F1 24 Tf 20 350 Td (Curr\\355culum) Tj ET BT /F2 24 Tf 20 250 Td <4E2D6587> Tj ET "
                         "BT /F3 24 Tf 20 150 Td (123) Tj ET"),
         font("NotoSans"),
         "<< /Type /Font /Subtype /Type0 /BaseFont /NotoSansCJKsc-Regular /Encoding /UniGB-UCS2-H /DescendantFonts [8 "
         "0 R] "
         ">>",
         font("NotoColorEmoji"),
         "<< /Type /Font /Subtype /CIDFontType0 /BaseFont /NotoSansCJKsc-Regular /FontDescriptor 9 0 R /CIDSystemInfo "
         "<< /Registry (Adobe) /Ordering (GB1) /Supplement 2 >> >>",
         "<< /Type /FontDescriptor /FontName /NotoSansCJKsc-Regular /Flags 4 /FontBBox [0 0 1000 1000] /ItalicAngle 0 "
         "/Ascent 800 /Descent -200 /CapHeight 700 /StemV 80 >>"});
}

} // namespace

TEST(ConfinedReading, GivesTheSameTextAndPages) {
    expectTheSame(test::textPDF({"Juan P\\351rez\nIngeniero", "Segunda p\\341gina"}));
}

TEST(ConfinedReading, FindsTheFontsThatAPDFDoesNotBring) {
    expectTheSame(foreignFonts());
}

TEST(ConfinedReading, GivesTheSameForEveryCV) {
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    if (data.isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_TEST_DATA is not set";
    }
    const QDir folder(data + "/cv"_L1);
    QStringList files;
    for (const QString& name : folder.entryList({u"*.pdf"_s}, QDir::Files)) {
        files.append(folder.filePath(name));
    }
    ASSERT_FALSE(files.isEmpty());
    for (const char* name : {"cjk-vertical", "arabic-rtl", "french-diacritics", "ligatures", "truetype-no-unicode-map",
                             "ocr-font-no-glyf", "rotated-text", "xfa-placeholder", "javascript-form"}) {
        files.append(data + "/odd/"_L1 + QLatin1String(name) + ".pdf"_L1);
    }
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        expectTheSame(test::contentOf(file));
    }
}

} // namespace dorvantel
