// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateDetailUIView.h"

#include "data/RecordPDF.h"
#include "intake/CVText.h"
#include "intake/CandidateTexts.h"
#include "platform/Log.h"
#include "ui/PDFKitView.h"
#include "ui/SegmentedControl.h"
#include "ui/Spinner.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

SegmentedControl* makeTags(std::span<const CandidateTab> tabs, const QString& objectName,
                           const QString& accessibleName) {
    auto* tags = new SegmentedControl(tabLabels(tabs), accessibleName);
    tags->setObjectName(objectName);
    return tags;
}

/// `tags` above the pages that they choose from.
QWidget* makeTabbed(SegmentedControl* tags, const std::vector<QWidget*>& pages) {
    auto* tabbed = new QWidget;
    auto* stack = new QStackedWidget;
    for (QWidget* page : pages) {
        stack->addWidget(page);
    }
    QObject::connect(tags, &SegmentedControl::currentIndexChanged, stack, &QStackedWidget::setCurrentIndex);
    auto* column = new QVBoxLayout(tabbed);
    column->setContentsMargins(0, spacing::tight, 0, 0);
    column->setSpacing(spacing::tight);
    column->addWidget(tags, 0, Qt::AlignHCenter);
    column->addWidget(stack, 1);
    return tabbed;
}

/// A text to read, select and copy. Lays out only what is in view.
QWidget* makeText(const TextRuns& runs, const QString& accessibleName) {
    auto* view = new QPlainTextEdit;
    view->setAccessibleName(accessibleName);
    view->setAcceptDrops(false); // a CV dropped here is the window's, as everywhere
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setUndoRedoEnabled(false);
    view->setTabChangesFocus(true);
    view->setFrameShape(QFrame::NoFrame);
    view->document()->setDocumentMargin(spacing::standard);
    QTextCursor cursor(view->document());
    cursor.beginEditBlock();
    for (const TextRun& run : runs) {
        QTextCharFormat format;
        if (run.look == TextRun::Look::Bold) {
            format.setFontWeight(QFont::Bold);
        } else if (run.look == TextRun::Look::Secondary) {
            format.setForeground(QColor(colours::secondaryText));
        }
        cursor.insertText(run.text, format);
    }
    cursor.endEditBlock();
    // Filling the document has carried the keyboard's place along to the end.
    view->moveCursor(QTextCursor::Start);
    return view;
}

/// A mark above a line of text, in the middle of the page.
QWidget* makeNotice(QWidget* mark, const QString& text, TextStyle style, QRgb colour) {
    auto* notice = new QWidget;
    auto* label = new QLabel(text);
    label->setFont(textFont(style));
    QPalette palette = lightPalette();
    palette.setColor(QPalette::WindowText, QColor(colour));
    label->setPalette(palette);
    auto* column = new QVBoxLayout(notice);
    column->setSpacing(spacing::small);
    column->addStretch();
    if (mark) {
        column->addWidget(mark, 0, Qt::AlignHCenter);
    }
    column->addWidget(label, 0, Qt::AlignHCenter);
    column->addStretch();
    return notice;
}

QWidget* makeProgress(const QString& text, QRgb colour) {
    constexpr int spinnerSize = 32;
    return makeNotice(new Spinner(spinnerSize, QColor(colours::secondaryText)), text, TextStyle::Body, colour);
}

} // namespace

/// Makes its content when it is first looked at, and again after it was renewed.
class CandidateDetailUIView::Page final : public QWidget {
public:
    explicit Page(std::function<QWidget*()> make)
        : m_make(std::move(make)) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
    }

    void renew() {
        delete m_content;
        m_content = nullptr;
        if (isVisible()) {
            fill();
        }
    }

protected:
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        if (!m_content) {
            fill();
        }
    }

private:
    void fill() {
        m_content = m_make();
        layout()->addWidget(m_content);
        // By itself the layout would show and place it later, after a moment of nothing.
        m_content->show();
        layout()->activate();
    }

    std::function<QWidget*()> m_make;
    QWidget* m_content = nullptr;
};

CandidateDetailUIView::CandidateDetailUIView(DBRecordPointer dbRecord, RecordsService& records, PDFOpener& pdfs,
                                             QWidget* parent)
    : QWidget(parent)
    , m_dbRecord(std::move(dbRecord))
    , m_records(records)
    , m_pdfs(pdfs)
    , m_mainTags(makeTags(mainTabs, u"mainTagType"_s, u"Vista del candidato"_s))
    , m_extractTags(makeTags(extractTabs, u"extractTagType"_s, u"Vista de la extracción"_s))
    , m_correoTags(makeTags(correoTabs, u"correoTagType"_s, u"Vista del correo"_s)) {
    setObjectName(u"candidateDetail"_s);
    Page* pdf = makePage(u"pdf"_s, [this] { return makePDFPage(); });
    Page* text = makePage(u"text"_s, [this] { return makeTextPage(); });
    Page* prompt =
        makePage(u"extraerPrompt"_s, [this] { return makeText(shownExtractionPrompt(m_pdfText), u"Prompt"_s); });
    Page* json = makePage(u"extraerJson"_s, [this] { return makeText({{shownCVData(*m_dbRecord)}}, u"JSON"_s); });
    Page* mailPrompt =
        makePage(u"correoPrompt"_s, [this] { return makeText(shownMailPrompt(m_pdfText), u"Prompt"_s); });
    Page* mailJson = makePage(u"correoJson"_s, [this] { return makeText(shownMailAnswer(*m_dbRecord), u"JSON"_s); });
    m_pagesOfPDF = {pdf, text, prompt, mailPrompt};

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(makeTabbed(m_mainTags, {pdf, text, makeTabbed(m_extractTags, {prompt, json}),
                                              makeTabbed(m_correoTags, {mailPrompt, mailJson})}));
    setWhiteBackground(*this);
}

CandidateDetailUIView::Page* CandidateDetailUIView::makePage(const QString& objectName,
                                                             std::function<QWidget*()> make) {
    auto* page = new Page(std::move(make));
    page->setObjectName(objectName);
    return page;
}

mainTagTypes CandidateDetailUIView::mainTagType() const {
    return static_cast<mainTagTypes>(m_mainTags->currentIndex());
}

extractTagTypes CandidateDetailUIView::extractTagType() const {
    return static_cast<extractTagTypes>(m_extractTags->currentIndex());
}

correoTagTypes CandidateDetailUIView::correoTagType() const {
    return static_cast<correoTagTypes>(m_correoTags->currentIndex());
}

void CandidateDetailUIView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!m_wasShown) {
        m_wasShown = true;
        loadPDFIfNeeded();
    }
}

void CandidateDetailUIView::loadPDFIfNeeded() {
    if (auto document = m_dbRecord->pdfDocument()) {
        showDocument(std::move(document));
        return;
    }
    m_isLoadingPDF = true;
    renewPages();
    loadPDF(m_dbRecord, m_records, m_pdfs,
            [self = QPointer(this), email = m_dbRecord->email](std::shared_ptr<PDFDocument> document) {
                if (!document) { // said also when nobody looks at the candidate any more
                    logLine(u"⚠️ No PDF available for "_s + email);
                }
                if (self) {
                    self->m_isLoadingPDF = false;
                    self->showDocument(std::move(document));
                }
            });
}

void CandidateDetailUIView::showDocument(std::shared_ptr<PDFDocument> document) {
    m_pdfDocument = std::move(document);
    if (m_pdfDocument) {
        m_pdfText = extractCleanText(*m_pdfDocument);
    }
    renewPages();
}

void CandidateDetailUIView::renewPages() {
    for (Page* page : m_pagesOfPDF) {
        page->renew();
    }
}

QWidget* CandidateDetailUIView::makePDFPage() const {
    if (m_pdfDocument) {
        return new PDFKitView(m_pdfDocument, m_pdfs);
    }
    if (m_isLoadingPDF) {
        return makeProgress(u"Cargando PDF..."_s, colours::secondaryText);
    }
    constexpr int symbolPoints = 60;
    return makeNotice(new SymbolView(u"doc.text.fill"_s, QColor(colours::secondaryText), symbolPoints),
                      u"PDF no disponible"_s, TextStyle::Headline, colours::secondaryText);
}

QWidget* CandidateDetailUIView::makeTextPage() const {
    if (m_pdfText) {
        return makeText({{*m_pdfText}}, u"Texto"_s);
    }
    return m_isLoadingPDF ? makeProgress(u"Cargando contenido..."_s, colours::text)
                          : makeNotice(nullptr, u"Contenido no disponible"_s, TextStyle::Body, colours::text);
}

} // namespace dorvantel
