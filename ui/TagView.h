// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/TagViewItem.h"
#include "ui/TagLayout.h"

#include <QList>
#include <QWidget>

namespace dorvantel {

/// Short labels as chips that wrap onto as many lines as its width needs; it is exactly as high as they are. A click,
/// or the space bar, selects a chip or takes the selection back. The view is one stop for the Tab key; the arrow keys
/// go from chip to chip. Lives on the UI thread.
class TagView : public QWidget {
    Q_OBJECT

public:
    explicit TagView(const QList<TagViewItem>& tags, QWidget* parent = nullptr);

    /// The chips as the user left them, in display order.
    const QList<TagViewItem>& tags() const { return m_tags; }

    /// The height of the wrapped chips at the view's present width.
    int totalHeight() const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Chip;

    TagLayout layoutFor(int width) const;
    void toggle(qsizetype index);
    void focusChip(qsizetype index);

    QList<TagViewItem> m_tags;
    QStringList m_titles;
    QList<QSize> m_sizes; ///< of the chips with the padding around them
    QList<Chip*> m_chips;
};

} // namespace dorvantel
