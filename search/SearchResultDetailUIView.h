// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "search/LazyRowList.h"
#include "search/ResultCV.h"

#include <QPointer>

#include <memory>

class QPushButton;
class QToolButton;

namespace dorvantel {

class Spinner;
class URLOpener;

/// One candidate that was found: score, figure, name and profession, and buttons for the CV and for an invitation by
/// mail. Opens to the summary and the skills, whose chips start unselected each time. Lives on the UI thread; outlived
/// by the services that it was given.
class SearchResultDetailUIView : public LazyRow {
    Q_OBJECT

public:
    struct Services {
        RecordsService& records;
        PDFOpener& pdfs;
        URLOpener& urls;
    };

    /// The height of every row that is not open.
    static constexpr int closedHeight = 60;

    /// `lineColorIndex` is the row's parity in the list, 0 or 1.
    SearchResultDetailUIView(std::shared_ptr<const IdentifiableQueryResult> result, int lineColorIndex,
                             const Services& services, QWidget* parent = nullptr);

    const IdentifiableQueryResult& result() const { return *m_result; }
    int lineColorIndex() const { return m_lineColorIndex; }
    bool disclosed() const { return m_expanded != nullptr; }
    void setDisclosed(bool disclosed);

    bool holdsState() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeExpanded() const;
    void showLoading();
    void showPreview();
    void invite();
    void tell(const QString& name, const QString& text);
    void present(QDialog* sheet);

    std::shared_ptr<const IdentifiableQueryResult> m_result;
    int m_lineColorIndex;
    const PDFOpener& m_pdfs;
    URLOpener& m_urls;
    ResultCV m_cv;
    QToolButton* m_disclosure = nullptr;
    QPushButton* m_cvButton = nullptr;
    Spinner* m_spinner = nullptr;
    QWidget* m_expanded = nullptr; ///< only while the row is open
    QPointer<QDialog> m_sheet;
};

} // namespace dorvantel
