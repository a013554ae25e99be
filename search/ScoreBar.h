// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

/// The widths of the two parts of a score bar, in points; together always 100.
struct ScoreBarParts {
    qreal green = 0;
    qreal white = 0;

    bool operator==(const ScoreBarParts&) const = default;
};

/// One point per point of the score; from 100 on all green, from 0 down all white.
ScoreBarParts scoreBarParts(float score);

/// How well a candidate answers a search: a bar 100 points wide and 20 high, green from the left.
class ScoreBar : public QWidget {
    Q_OBJECT

public:
    explicit ScoreBar(float score, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ScoreBarParts m_parts;
};

} // namespace dorvantel
