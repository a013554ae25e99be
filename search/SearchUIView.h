// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "search/Search.h"

#include <QWidget>

namespace dorvantel {

class CriteriaPanel;
class LazyRowList;
class Model;
class PDFOpener;
class URLOpener;

/// The search screen: the criteria, and below them the candidates of the last answer, one row each. What the sidebar's
/// search entry leads to. Lives on the UI thread; outlived by what it was given. A search that is under way when the
/// screen goes comes to its end, but reaches nobody.
class SearchUIView : public QWidget {
    Q_OBJECT

public:
    struct Services {
        Model& model;
        RecordsService& records;
        ModelService& models;
        PDFOpener& pdfs;
        URLOpener& urls;
    };

    explicit SearchUIView(const Services& services, QWidget* parent = nullptr);

private:
    void clear();
    void showResults();

    Services m_services;
    Search m_search;
    CriteriaPanel* m_criteria;
    LazyRowList* m_list;
};

} // namespace dorvantel
