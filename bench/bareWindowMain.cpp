// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMainWindow>

/// What the start of the program is measured against: the least that a program with the same libraries can show.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1100, 720);
    window.show();
    return QApplication::exec();
}
