// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

class QCompleter;
class QLineEdit;
class QListView;
class QStringListModel;

namespace dorvantel {

/// The list of completions under a line of text. Nothing in it is highlighted until the user goes there.
class CompletionPopup : public QObject {
    Q_OBJECT

public:
    /// More than anyone reads; who wants another one types another letter.
    static constexpr qsizetype mostShown = 500;

    explicit CompletionPopup(QLineEdit* input);

    /// Shows these, or hides the list when there are none.
    void show(const QStringList& completions);
    void hide();

    bool isVisible() const;
    QStringList shown() const;
    /// Empty when none is highlighted.
    QString highlighted() const;

    /// Keys arrive here while the list is shown.
    QListView* view() const { return m_view; }

Q_SIGNALS:
    /// The user clicked a completion.
    void chosen(const QString& completion);

private:
    QLineEdit* m_input;
    QStringListModel* m_model;
    QListView* m_view;
    QCompleter* m_completer;
};

} // namespace dorvantel
