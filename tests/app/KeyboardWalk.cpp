// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/app/KeyboardWalk.h"

#include "search/LazyRowList.h"
#include "ui/PDFView.h"
#include "ui/TokenChip.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <QTextEdit>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

using Reached = QSet<const QWidget*>;

QString nameOf(const QWidget& widget) {
    return QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&widget))->text(QAccessible::Name);
}

QAccessible::Role roleOf(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->role();
}

QString described(const QWidget& widget) {
    return QString::fromLatin1(widget.metaObject()->className()) + u" "_s + widget.objectName() + u" «"_s +
           nameOf(widget) + u"»"_s;
}

/// What the user can do something with. Menus have keys of their own, and a text that the mouse can select is a text.
bool isControl(const QWidget& widget) {
    if (qobject_cast<const QMenuBar*>(&widget) || qobject_cast<const QLabel*>(&widget) || widget.focusProxy() ||
        !widget.isEnabled()) {
        return false;
    }
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton*>(&widget);
}

QList<QWidget*> controlsOf(const QWidget& window) {
    QList<QWidget*> controls;
    for (auto* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window && isControl(*widget)) {
            controls.append(widget);
        }
    }
    return controls;
}

QList<QAccessible::Role> fittingRoles(const QWidget& widget) {
    if (qobject_cast<const QRadioButton*>(&widget)) {
        return {QAccessible::RadioButton};
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return {button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button};
    }
    if (qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QPlainTextEdit*>(&widget)) {
        return {QAccessible::EditableText};
    }
    if (qobject_cast<const QListView*>(&widget) || qobject_cast<const LazyRowList*>(&widget)) {
        return {QAccessible::List};
    }
    if (qobject_cast<const LazyRow*>(&widget) || qobject_cast<const TokenChip*>(&widget)) {
        return {QAccessible::ListItem};
    }
    if (qobject_cast<const PDFView*>(&widget)) {
        return {QAccessible::Document};
    }
    if (qobject_cast<const QComboBox*>(&widget)) {
        return {QAccessible::ComboBox};
    }
    if (qobject_cast<const QTabBar*>(&widget)) {
        return {QAccessible::PageTabList};
    }
    return {};
}

Complaints complaintsAboutNamesAndRoles(const QWidget& window) {
    Complaints complaints;
    for (QWidget* control : controlsOf(window)) {
        // A tab bar is the list of its tabs, which have the names.
        if (nameOf(*control).trimmed().isEmpty() && !qobject_cast<QTabBar*>(control)) {
            complaints.push_back((u"no name: "_s + described(*control)).toStdString());
        }
        if (!fittingRoles(*control).contains(roleOf(*control))) {
            complaints.push_back((u"role %1: "_s.arg(roleOf(*control)) + described(*control)).toStdString());
        }
    }
    return complaints;
}

QRect placeOf(const QWidget& widget, const QWidget& window) {
    return {widget.mapTo(&window, QPoint()), widget.size()};
}

/// Whether the eye comes from `from` to `to` when it reads on: down, or to the right.
bool readsOn(const QRect& from, const QRect& to) {
    constexpr int unevenness = 8;
    return to.top() >= from.bottom() - unevenness || to.left() >= from.right() - unevenness || from.contains(to);
}

QWidget* pressTab() {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    return QApplication::focusWidget();
}

QList<QWidget*> tabStopsOf(QWidget& window) {
    QList<QWidget*> stops;
    if (!window.focusWidget()) {
        window.nextInFocusChain()->setFocus(Qt::TabFocusReason);
    }
    constexpr int tooMany = 500;
    for (int i = 0; i < tooMany && window.isAncestorOf(QApplication::focusWidget()); ++i) {
        QWidget* stop = pressTab();
        if (!window.isAncestorOf(stop) || stop == stops.value(0)) {
            break;
        }
        stops.append(stop);
    }
    return stops;
}

bool hasNeighbours(const QWidget& stop) {
    return qobject_cast<const QAbstractButton*>(&stop) || qobject_cast<const LazyRow*>(&stop) ||
           stop.parentWidget()->findChild<TokenChip*>();
}

/// Those that the arrow keys lead to from `stop`, and Tab from there on within a row.
Reached reachedByArrows(QWidget& stop) {
    Reached reached;
    const QWidget& group = *stop.parentWidget();
    for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}) {
        stop.setFocus(Qt::TabFocusReason);
        for (qsizetype i = 0; i < group.children().size() && group.isAncestorOf(QApplication::focusWidget()); ++i) {
            QWidget* neighbour = QApplication::focusWidget();
            reached.insert(neighbour);
            while (qobject_cast<LazyRow*>(neighbour) && neighbour->isAncestorOf(pressTab())) {
                reached.insert(QApplication::focusWidget());
            }
            neighbour->setFocus(Qt::TabFocusReason);
            QTest::keyClick(neighbour, arrow);
        }
    }
    return reached;
}

/// A list of rows gives the focus on to one of them.
bool isReached(const QWidget& control, const Reached& reached) {
    return reached.contains(&control) ||
           (qobject_cast<const LazyRowList*>(&control) &&
            std::ranges::any_of(reached, [&](const QWidget* other) { return control.isAncestorOf(other); }));
}

Complaints complaintsAboutTheOrder(const QList<QWidget*>& stops, const QWidget& window) {
    Complaints complaints;
    for (qsizetype i = 0; i < stops.size(); ++i) {
        const QWidget& stop = *stops[i];
        const QWidget& next = *stops[(i + 1) % stops.size()];
        if (!readsOn(placeOf(stop, window), placeOf(next, window))) {
            complaints.push_back(
                (u"out of order: "_s + described(next) + u" after "_s + described(stop)).toStdString());
        }
    }
    // Once in the round the eye goes back to the beginning.
    return complaints.size() > 1 ? complaints : Complaints();
}

Complaints complaintsAboutTheKeyboard(QWidget& window) {
    const QList<QWidget*> controls = controlsOf(window);
    const QList<QWidget*> stops = tabStopsOf(window);
    Complaints complaints = complaintsAboutTheOrder(stops, window);
    Reached reached(stops.begin(), stops.end());
    for (QWidget* stop : stops) {
        if (hasNeighbours(*stop)) {
            reached.unite(reachedByArrows(*stop));
        }
    }
    for (const QWidget* control : controls) {
        if (!isReached(*control, reached)) {
            complaints.push_back((u"not reached: "_s + described(*control)).toStdString());
        }
    }
    return complaints;
}

} // namespace

Complaints complaintsAbout(QWidget& window) {
    Complaints complaints = complaintsAboutNamesAndRoles(window);
    std::ranges::copy(complaintsAboutTheKeyboard(window), std::back_inserter(complaints));
    return complaints;
}

} // namespace dorvantel::test
