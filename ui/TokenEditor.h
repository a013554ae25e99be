// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TokenEditorDelegate.h"
#include "ui/TokenSelection.h"

#include <QScrollArea>

#include <vector>

class QKeyEvent;
class QLineEdit;

namespace dorvantel {

class CompletionPopup;
class TokenChip;

/// A field of tokens: chips, and behind them the text being typed, wrapped onto as many lines as they need. Comma,
/// Return, Tab and the loss of the focus turn the text into tokens, as far as the delegate lets them in.
///
/// Left and right, the mouse and Control+A select chips; Shift and Control extend the selection. Backspace before the
/// first letter selects the last chip, and deletes what is selected; Delete deletes too. Copying gives the selected
/// tokens to other token fields, and their texts to everyone else. Down asks for completions, Escape closes them.
///
/// Lives on the UI thread. The delegate is not owned and must outlive the editor.
class TokenEditor final : public QScrollArea {
    Q_OBJECT

public:
    explicit TokenEditor(TokenEditorDelegate& delegate, QWidget* parent = nullptr);
    ~TokenEditor() override;

    /// The tokens, without the text being typed.
    TokenObjects objectValue() const;

    /// Shows `value`, which must be texts, instead of everything shown; the delegate is not told. The value that is
    /// shown already changes nothing: what is being typed stays.
    void setObjectValue(const TokenObjects& value);

    /// As setObjectValue(), but what is being typed stays: for a value that answers to the user's own editing.
    void setTokens(const TokenObjects& value);

    /// Takes away the first token, whichever one the user pointed at; the delegate is not told, and what is being typed
    /// stays. Stops the program when there is none.
    void removeToken();

    /// What shows the tokens, in their order.
    const std::vector<TokenChip*>& chips() const { return m_chips; }

    /// The text being typed, which is no token yet. Setting it asks nobody and offers nothing.
    QString text() const;
    void setText(const QString& text);

    /// What screen readers call the field.
    void setFieldName(const QString& name);

    /// From this height on the field scrolls instead of growing.
    void setMaximumLines(int lines);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The last thing in each step of the user's editing, after the delegate heard of it. The value may be set from
    /// here.
    void edited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void initStyleOption(QStyleOptionFrame* option) const override;

private:
    struct Arrangement;
    Arrangement arrange(int width) const;
    void relayout();
    void reveal(QWidget* piece);
    void tokensChanged();

    void showText(const QString& text);
    void showTokens(const QStringList& tokens);
    void addChip(const QString& token);
    void dropChip(qsizetype index);
    qsizetype count() const { return static_cast<qsizetype>(m_chips.size()); }

    void tellChange(FieldChange change);
    void onTextEdited(const QString& text);
    void commitText();
    void commitByTab();
    void propose(const QStringList& texts, const QString& unfinished = {});
    void endEditing();
    void offerCompletions();

    bool textKey(QKeyEvent& event);
    bool insertNewline();
    bool insertTab();
    bool deleteBackward(const QKeyEvent& event);
    bool chipKey(QKeyEvent& event);
    bool moveKey(const QKeyEvent& event);
    bool chipEvent(TokenChip* chip, QEvent* event);

    void select(const TokenSelection& selection);
    void selectOnly(qsizetype index);
    void focusText();
    std::optional<qsizetype> chipOnLine(qsizetype from, int direction) const;
    void deleteSelected(bool staysAmongChips);
    void copySelected() const;
    bool pasteTokens();
    void showMenu(TokenChip* chip, const QPoint& globalPosition);

    TokenEditorDelegate& m_delegate;
    QWidget* m_content;
    QLineEdit* m_input;
    CompletionPopup* m_completion;
    std::vector<TokenChip*> m_chips;
    TokenSelection m_selection;
    int m_maximumLines = 4;
};

} // namespace dorvantel
