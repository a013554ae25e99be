// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/SearchResultDetailUIView.h"

#include "data/SearchResults.h"
#include "platform/URLOpener.h"
#include "search/ElidedLabel.h"
#include "search/InvitationLink.h"
#include "search/PDFPreviewSheet.h"
#include "search/ScoreBar.h"
#include "ui/AccessibleRole.h"
#include "ui/Figures.h"
#include "ui/Spinner.h"
#include "ui/Style.h"
#include "ui/TagView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int emojiPoints = 36;
constexpr int spinnerFrame = 20;
constexpr qreal spinnerScale = 0.7;
constexpr QRgb evenRow = 0xffffffff;
constexpr QRgb oddRow = 0xfff5f7fa;

QLabel* textLine(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText); // what a CV says is not markup
    label->setFont(textFont(TextStyle::Body));
    label->setWordWrap(true);
    return label;
}

/// The arrow that says whether a row is open: it points to the right, or down.
class DisclosureButton final : public QToolButton {
public:
    DisclosureButton() {
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setFixedSize(28, 28);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse() || hasFocus()) {
            const QColor fill = withOpacity(palette().color(QPalette::Highlight), 0.12);
            painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2) : QPen(Qt::NoPen));
            painter.setBrush(fill);
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), spacing::cornerRadius,
                                    spacing::cornerRadius);
        }
        painter.translate(QRectF(rect()).center());
        painter.rotate(isChecked() ? 90 : 0);
        const QColor colour = palette().color(QPalette::ButtonText);
        painter.setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({{-2.5, -5}, {2.5, 0}, {-2.5, 5}}));
    }
};

} // namespace

SearchResultDetailUIView::SearchResultDetailUIView(std::shared_ptr<const IdentifiableQueryResult> result,
                                                   int lineColorIndex, const Services& services, QWidget* parent)
    : LazyRow(parent)
    , m_result(std::move(result))
    , m_lineColorIndex(lineColorIndex)
    , m_pdfs(services.pdfs)
    , m_urls(services.urls)
    , m_cv(m_result, services.records, services.pdfs) {
    setObjectName(u"searchResult"_s);
    setAccessibleRole(*this, QAccessible::ListItem);
    setAccessibleName(m_result->name + u", "_s + m_result->profession);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addStretch();
    connect(&m_cv, &ResultCV::isLoadingPDFChanged, this, &SearchResultDetailUIView::showLoading);
    connect(&m_cv, &ResultCV::previewRequested, this, &SearchResultDetailUIView::showPreview);
}

QWidget* SearchResultDetailUIView::makeHeader() {
    auto* header = new QWidget;
    header->setFixedHeight(closedHeight);

    auto* figure = new QLabel(candidateFigure(m_result->jsonCVData.gender));
    figure->setObjectName(u"figure"_s);
    figure->setFont(emojiFont(emojiPoints));
    figure->setAccessibleName(m_result->jsonCVData.gender == u"Masculino" ? u"Hombre"_s : u"Mujer"_s);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addStretch();
    texts->addWidget(new ElidedLabel(m_result->name, textFont(TextStyle::Headline)));
    texts->addWidget(new ElidedLabel(m_result->profession, textFont(TextStyle::Subheadline)));
    texts->addStretch();

    m_disclosure = new DisclosureButton;
    m_disclosure->setObjectName(u"disclosure"_s);
    m_disclosure->setAccessibleName(u"Detalles de "_s + m_result->name);
    connect(m_disclosure, &QToolButton::toggled, this, &SearchResultDetailUIView::setDisclosed);

    m_cvButton = new QPushButton(u"CV"_s);
    m_cvButton->setObjectName(u"cv"_s);
    m_cvButton->setAccessibleName(u"CV de "_s + m_result->name);
    m_cvButton->setToolTip(u"Pulse este botón para ver el CV"_s);
    m_cvButton->setFixedWidth(m_cvButton->sizeHint().width());
    connect(m_cvButton, &QPushButton::clicked, &m_cv, &ResultCV::requestPreview);

    auto* inviteButton = new QPushButton(u"Invitar"_s);
    inviteButton->setObjectName(u"invite"_s);
    inviteButton->setAccessibleName(u"Invitar a "_s + m_result->name);
    connect(inviteButton, &QPushButton::clicked, this, &SearchResultDetailUIView::invite);

    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(spacing::standard, 0, spacing::standard, 0);
    line->setSpacing(spacing::gridRow);
    line->addWidget(new ScoreBar(m_result->score));
    line->addWidget(figure);
    line->addLayout(texts, 1);
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{m_disclosure, m_cvButton, inviteButton}) {
        button->installEventFilter(this);
        line->addWidget(button);
    }
    return header;
}

QWidget* SearchResultDetailUIView::makeExpanded() const {
    auto* expanded = new QWidget;
    expanded->setObjectName(u"expanded"_s);
    auto* column = new QVBoxLayout(expanded);
    column->setContentsMargins(spacing::standard, 0, spacing::standard, 0);
    column->setSpacing(0);
    column->addWidget(textLine(u" "_s));
    column->addWidget(textLine(m_result->summarizedText));
    for (const QList<TagViewItem>& tags :
         {m_result->techSkillTags(), m_result->softSkillTags(), m_result->languageTags()}) {
        column->addWidget(textLine(u" "_s));
        column->addWidget(new TagView(tags));
    }
    column->addWidget(textLine(u" "_s));
    column->addWidget(textLine(u" "_s));
    return expanded;
}

void SearchResultDetailUIView::setDisclosed(bool disclosed) {
    if (disclosed == this->disclosed()) {
        return;
    }
    if (disclosed) {
        m_expanded = makeExpanded();
        static_cast<QVBoxLayout*>(layout())->insertWidget(1, m_expanded);
        m_expanded->show(); // what is not shown has no height
    } else {
        m_expanded->hide();
        m_expanded->deleteLater();
        layout()->removeWidget(m_expanded);
        m_expanded = nullptr;
    }
    m_disclosure->setChecked(disclosed);
    Q_EMIT heightChanged();
}

bool SearchResultDetailUIView::holdsState() const {
    return disclosed() || m_cv.isLoadingPDF() || m_cv.loadedPDFDocument();
}

int SearchResultDetailUIView::heightForWidth(int width) const {
    return disclosed() ? layout()->totalHeightForWidth(width) : closedHeight;
}

void SearchResultDetailUIView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(m_lineColorIndex == 0 ? evenRow : oddRow));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void SearchResultDetailUIView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool toggles = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter ||
                         key == (disclosed() ? Qt::Key_Left : Qt::Key_Right);
    if (hasFocus() && toggles) {
        setDisclosed(!disclosed());
    } else {
        LazyRow::keyPressEvent(event);
    }
}

bool SearchResultDetailUIView::eventFilter(QObject* watched, QEvent* event) {
    // Buttons would take these keys for themselves; here they lead to the row above or below.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            event->ignore();
            return true;
        }
    }
    return LazyRow::eventFilter(watched, event);
}

void SearchResultDetailUIView::showLoading() {
    if (!m_spinner) {
        m_spinner = new Spinner(qRound(spinnerFrame * spinnerScale), QColor(colours::secondaryText), m_cvButton);
    }
    m_cvButton->setText(m_cv.isLoadingPDF() ? QString() : u"CV"_s);
    m_spinner->move(m_cvButton->rect().center() - m_spinner->rect().center());
    m_spinner->setVisible(m_cv.isLoadingPDF());
}

void SearchResultDetailUIView::showPreview() {
    if (qobject_cast<PDFPreviewSheet*>(m_sheet)) {
        return;
    }
    if (m_cv.loadedPDFDocument()) {
        present(new PDFPreviewSheet(m_cv.loadedPDFDocument(), m_pdfs, window()));
    } else {
        tell(u"noPDF"_s, u"PDF no disponible"_s);
    }
}

void SearchResultDetailUIView::invite() {
    if (!m_urls.open(invitationLink(m_result->email, m_result->invitationMail))) {
        tell(u"noMailProgram"_s, u"No se ha podido abrir el programa de correo"_s);
    }
}

void SearchResultDetailUIView::tell(const QString& name, const QString& text) {
    auto* message = new QMessageBox(QMessageBox::Information, QString(), text, QMessageBox::Close, window());
    message->setObjectName(name);
    present(message);
}

/// In place of the sheet or message that is still open.
void SearchResultDetailUIView::present(QDialog* sheet) {
    if (m_sheet) {
        m_sheet->close();
    }
    m_sheet = sheet;
    m_sheet->setAttribute(Qt::WA_DeleteOnClose);
    m_sheet->open();
}

} // namespace dorvantel
