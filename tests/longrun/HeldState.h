// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace dorvantel {
class Model;
}

namespace dorvantel::test {

/// The memory that holds what the application state is meant to gather: the candidates with whatever is known of their
/// CVs, and the catalogues, which grow with every rebuild. In bytes.
struct Held {
    qint64 reserved = 0; ///< as the allocator has given it
    qint64 filled = 0;   ///< of it, without the room that long lists keep for more
};

/// Each block of memory counts once, whoever shares it, and with what the allocator takes for it.
Held heldBy(const Model& model);

} // namespace dorvantel::test
