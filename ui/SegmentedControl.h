// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QWidget>

class QButtonGroup;

namespace dorvantel {

/// A row of joined buttons of which exactly one is chosen: a choice between a few pages. Sized to its content. The
/// arrow keys move the choice, as in a group of radio buttons.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    /// The first of `labels` is chosen. `accessibleName` says what is being chosen.
    SegmentedControl(const QStringList& labels, const QString& accessibleName, QWidget* parent = nullptr);

    int currentIndex() const;
    void setCurrentIndex(int index);

Q_SIGNALS:
    void currentIndexChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup* m_group;
};

} // namespace dorvantel
