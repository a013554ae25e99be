// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/app/ContentViewFixture.h"
#include "tests/support/Drawn.h"
#include "ui/Symbols.h"

namespace dorvantel::test {

TEST_F(ContentViewTest, SearchEntryIsTheMagnifyingGlassWithItsTextBesideItBothInTheMiddle) {
    constexpr int symbolLeft = 16;
    constexpr int symbolSize = 16;
    const QRect place = list->visualRect(list->model()->index(0, 0));
    const QImage row = list->viewport()->grab(place).toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb background = row.pixel(0, 0);

    SymbolView symbol(u"magnifyingglass"_s, list->palette().color(QPalette::Text), symbolSize);
    const int top = row.rect().center().y() - symbolSize / 2;
    EXPECT_EQ(row.copy(symbolLeft, top, symbolSize, symbolSize), drawn(symbol, {symbolSize, symbolSize}, background));

    QRect text;
    for (int y = 0; y < row.height(); ++y) {
        for (int x = symbolLeft + symbolSize; x < row.width(); ++x) {
            if (row.pixel(x, y) != background) {
                text |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_NEAR(text.center().y(), row.rect().center().y(), 2);
    EXPECT_GT(text.left(), symbolLeft + symbolSize);
    EXPECT_LT(text.left(), symbolLeft + 2 * symbolSize);
}

} // namespace dorvantel::test
