// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "search/Query.h"
#include "ui/Spinner.h"

#include <QWidget>

class QButtonGroup;
class QGridLayout;
class QLabel;
class QPlainTextEdit;

namespace dorvantel {

class Model;
class TokenField2;

/// Where the recruiter says who is wanted: gender, skills and languages, or a description in free text. It keeps the
/// criteria and decides nothing. Lives on the UI thread; outlived by the model, whose catalogues its token fields take
/// values from.
class CriteriaPanel : public QWidget {
    Q_OBJECT

public:
    explicit CriteriaPanel(const Model& model, QWidget* parent = nullptr);

    const SearchCriteria& criteria() const { return m_criteria; }
    /// Back to no criterion at all.
    void clear();
    /// Brings every token field back to its list, also one whose token was taken by its menu. What no field shows is
    /// never searched for.
    void refreshTokenFields();
    /// Shows that a search is under way, if it takes longer than a moment.
    void setSearching(bool searching) { m_searching->setBusy(searching); }

Q_SIGNALS:
    void clearPressed();
    void searchPressed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// One of the three lists of tokens: where it is kept and where its catalogue comes from.
    struct TokenKind {
        QString label;
        QString objectName;
        QStringList SearchCriteria::* tokens;
        QStringList (Model::*catalogue)() const;
        TokenField2* field = nullptr;
    };

    QWidget* makeGenderRow();
    QWidget* makeTokenFields();
    void makeTokenField(TokenKind& kind);
    void renewTokenFields();
    QWidget* makeFreeText();
    QWidget* makeButtons();
    void showGender();

    const Model& m_model;
    SearchCriteria m_criteria;
    std::vector<TokenKind> m_kinds;
    QLabel* m_figure = nullptr;
    QButtonGroup* m_genders = nullptr;
    QGridLayout* m_tokenGrid = nullptr;
    QPlainTextEdit* m_freeText = nullptr;
    Spinner* m_searching = nullptr;
};

} // namespace dorvantel
