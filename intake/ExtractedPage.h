// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

class QLabel;

namespace dorvantel {

class FormGrid;
class IntakeState;
class Model;
class SymbolView;
class TokenField2;
struct CatalogueTokens;

/// The sheet's page "Datos extraídos": the figure and the gender on the left; name, profession, e-mail, skills and
/// languages on the right. Edits the state directly; made anew when a new extraction replaces the values.
class ExtractedPage : public QWidget {
    Q_OBJECT

public:
    ExtractedPage(IntakeState& state, const Model& model, QWidget* parent = nullptr);

    /// From now on the page changes nothing: the state holds other values. What is being typed in a token field, which
    /// the loss of the focus would make a token, is dropped.
    void letGo();

private:
    enum class Additions { Accepted, Refused };

    QWidget* makeGender();
    QWidget* makeGrid(const Model& model);
    void addTextRow(FormGrid& grid, const QString& label, const QString& objectName, QString& text);
    void addTokenRow(FormGrid& grid, const QString& label, const QString& objectName, CatalogueTokens& tokens,
                     const QStringList& catalogue);
    TokenField2* addTokenField(const QString& name, const QString& objectName, QStringList& tokens,
                               const QStringList& catalogue, Additions additions);
    /// Shows the state as it now is in everything that depends on it; called after every edit of the recruiter.
    void refresh();

    IntakeState& m_state;
    QLabel* m_figure = nullptr;
    QList<SymbolView*> m_warnings;
    struct BoundTokens {
        TokenField2* field;
        QStringList* tokens;
    };
    QList<BoundTokens> m_tokenFields;
};

} // namespace dorvantel
