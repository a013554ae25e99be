// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QSvgRenderer;

namespace dorvantel {

/// The names that can be asked for. Any other name is a programming error and stops the program.
QStringList symbolNames();

/// A symbol in one colour, drawn afresh from its outline at every size and scale. Where a control shows its icon
/// disabled, the symbol is paler.
QIcon symbolIcon(const QString& name, const QColor& colour);

/// The mark of the program itself as the desktop shows it, `size` pixels wide and high. Small sizes have a drawing of
/// their own with less in it.
QImage applicationImage(int size);

/// The same for windows. A size is drawn when it is asked for.
QIcon applicationIcon();

/// Shows one symbol, or the maker's logo, at a size in points. Decoration: it has no name for screen readers unless it
/// is given one.
class SymbolView : public QWidget {
    Q_OBJECT
    /// Degrees clockwise around the middle; can be animated.
    Q_PROPERTY(qreal rotation READ rotation WRITE setRotation)

public:
    SymbolView(const QString& name, const QColor& colour, int points, QWidget* parent = nullptr);
    ~SymbolView() override;

    /// The symbol's name; empty for the logo.
    const QString& name() const { return m_name; }
    const QColor& colour() const { return m_colour; }

    /// The maker's logo, tinted.
    static SymbolView* ostrelLogo(const QColor& colour, int points, QWidget* parent = nullptr);

    /// A mark that is not shown is fully transparent: it keeps its place.
    void setShown(bool shown);
    void setColour(const QColor& colour);
    bool isShown() const { return m_shown; }

    qreal rotation() const { return m_rotation; }
    void setRotation(qreal degrees);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct File {
        QString path;
        QString symbol;
    };
    SymbolView(const File& file, const QColor& colour, int points, QWidget* parent);

    std::unique_ptr<QSvgRenderer> m_drawing;
    QString m_name;
    QColor m_colour;
    int m_points;
    bool m_shown = true;
    qreal m_rotation = 0;
};

} // namespace dorvantel
