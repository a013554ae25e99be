// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/SearchUIView.h"

#include "data/Model.h"
#include "search/CriteriaPanel.h"
#include "search/SearchResultDetailUIView.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QResizeEvent>
#include <QScrollArea>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// How low the criteria and the list may each become in a low window.
constexpr int lowest = 150;

/// Narrower than this, a row's buttons are cut off.
constexpr int narrowestColumn = 480;
/// Wider than this, a row's name and its buttons are too far apart to be read as one line.
constexpr int widestColumn = 1000;

/// `widget` in the middle, as wide as there is room up to the widest column.
QHBoxLayout* centred(QWidget* widget) {
    widget->setMaximumWidth(widestColumn);
    auto* line = new QHBoxLayout;
    line->setContentsMargins(spacing::standard, 0, spacing::standard, 0);
    line->addWidget(widget);
    return line;
}

/// As high as what it shows, and scrolls where there is less room than that.
class GivingWay final : public QScrollArea {
public:
    explicit GivingWay(QWidget* content) {
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus); // it follows the focus of what is in it
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
        setWidget(content);
        viewport()->setAutoFillBackground(false);
        content->setAutoFillBackground(false);
    }

    QSize sizeHint() const override {
        return {widget()->sizeHint().width(), widget()->heightForWidth(viewport()->width())};
    }
    QSize minimumSizeHint() const override { return {widget()->minimumSizeHint().width(), lowest}; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            updateGeometry();
        }
        return QScrollArea::eventFilter(watched, event);
    }
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        if (event->oldSize().width() != event->size().width()) {
            updateGeometry();
        }
    }
};

} // namespace

SearchUIView::SearchUIView(const Services& services, QWidget* parent)
    : QWidget(parent)
    , m_services(services)
    , m_search(services.records, services.models, services.model)
    , m_criteria(new CriteriaPanel(services.model))
    , m_list(new LazyRowList) {
    setObjectName(u"search"_s);
    setWhiteBackground(*this);
    auto* title = new QLabel(u"Búsqueda"_s);
    title->setFont(textFont(TextStyle::Title));
    m_list->setObjectName(u"results"_s);
    m_list->setAccessibleName(u"Resultados"_s);
    m_list->setMinimumSize(narrowestColumn, lowest);
    m_list->hide();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, spacing::gridRow, 0, spacing::gridRow);
    column->addWidget(title, 0, Qt::AlignHCenter);
    column->addLayout(centred(new GivingWay(m_criteria)));
    column->addLayout(centred(m_list), 1);
    column->addStretch();

    connect(m_criteria, &CriteriaPanel::searchPressed, this, [this] { m_search.start(m_criteria->criteria()); });
    connect(m_criteria, &CriteriaPanel::clearPressed, this, &SearchUIView::clear);
    connect(&m_search, &Search::isUnderWayChanged, this, [this] { m_criteria->setSearching(m_search.isUnderWay()); });
    connect(&m_search, &Search::resultsChanged, this, &SearchUIView::showResults);
}

void SearchUIView::clear() {
    m_criteria->clear();
    m_search.clear();
}

void SearchUIView::showResults() {
    const Search::Results results = m_search.results();
    const SearchResultDetailUIView::Services services{m_services.records, m_services.pdfs, m_services.urls};
    m_list->setRows(results ? std::ssize(results->result) : 0, SearchResultDetailUIView::closedHeight,
                    [results, services](qsizetype index, QWidget* parent) {
                        return new SearchResultDetailUIView(results->result[static_cast<std::size_t>(index)],
                                                            static_cast<int>(index % 2), services, parent);
                    });
    m_list->setVisible(results != nullptr);
    m_criteria->refreshTokenFields();
}

} // namespace dorvantel
