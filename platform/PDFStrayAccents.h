// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QString>

class QPdfDocument;

namespace dorvantel {

/// The library's text of a page, with accents that it took for words of their own back on their letters. Over a capital
/// or a narrow letter an accent that is drawn alone ends up at the end of the line ("Angel, ingeniero ´"); where it
/// stands on the page tells which letter it belongs to. Accents that stand beside their letter are left as they are,
/// and so are those that are not reached by `deadline`: each costs the library a few passes over the page.
QString pageTextWithStrayAccentsPlaced(QPdfDocument& document, int page, QDeadlineTimer deadline);

} // namespace dorvantel
