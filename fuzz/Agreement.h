// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/Fuzz.h"
#include "tests/support/PlainJson.h"

#include <functional>

namespace dorvantel::fuzz {

/// Both decoders read the same by `isSame(plain, real)`, or refuse the body for the same reason at the same place.
template <typename Plain, typename Real, typename IsSame = std::equal_to<>>
void requireAgreement(const test::PlainlyDecoded<Plain>& plain, const std::expected<Real, DecodeError>& real,
                      IsSame isSame = {}) {
    if (!real) {
        require(!debugText(real.error()).isEmpty(), "an error has a text");
    }
    if (!plain) {
        return;
    }
    require(plain->has_value() == real.has_value(), "a body is taken by both decoders or by none");
    if (real) {
        require(isSame(**plain, *real), "both decoders read the same");
        return;
    }
    require(plain->error().kind == real.error().kind, "both decoders refuse it for the same reason");
    require(plain->error().subject == real.error().subject, "both decoders miss the same");
    require(plain->error().path == real.error().path, "both decoders stop at the same place");
}

} // namespace dorvantel::fuzz
