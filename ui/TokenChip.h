// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

/// One token as a token editor shows it. It only draws itself and says to screen readers what it is; what keys and the
/// mouse do to it is the editor's business.
class TokenChip final : public QWidget {
    Q_OBJECT

public:
    TokenChip(const QString& token, QWidget* parent);

    /// All chips in one font are equally high.
    static int heightFor(const QFontMetrics& metrics);

    const QString& token() const { return m_token; }

    bool isSelected() const { return m_selected; }
    void setSelected(bool selected);

    /// As wide as the whole text needs; a narrower chip elides it and tells it in a tooltip.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QString shownText() const;
    bool isElided() const;

    QString m_token;
    bool m_selected = false;
};

} // namespace dorvantel
