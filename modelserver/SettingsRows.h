// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/Style.h"

#include <QFrame>
#include <QLabel>
#include <QString>
#include <QWidget>

class QVBoxLayout;

namespace dorvantel {

class SymbolView;

// What the settings pages are made of. Texts are shown as they are, whatever a server put into them.

/// A text that wraps.
QLabel* textLabel(const QString& text, TextStyle style, QWidget* parent = nullptr);

/// The same in the secondary colour.
QLabel* secondaryLabel(const QString& text, TextStyle style, QWidget* parent = nullptr);

/// A symbol with a text beside it.
class MarkedRow : public QWidget {
    Q_OBJECT

public:
    /// Takes `label` over.
    MarkedRow(const QString& symbol, const QColor& colour, QLabel* label, QWidget* parent = nullptr);

    SymbolView& symbol() { return *m_symbol; }
    const QLabel& label() const { return *m_label; }
    QString text() const { return m_label->text(); }
    void setText(const QString& text) { m_label->setText(text); }

private:
    SymbolView* m_symbol;
    QLabel* m_label;
};

/// One group of a form: its rows one below the other on a background of their own.
class FormSection : public QFrame {
    Q_OBJECT

public:
    explicit FormSection(QWidget* parent = nullptr);

    void add(QWidget* row);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
};

} // namespace dorvantel
