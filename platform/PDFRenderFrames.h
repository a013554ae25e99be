// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace dorvantel {

/// What goes through the pipes between the program and the process that draws the pages of one document, on one
/// machine: these structures as they lie in memory.
///
/// To the process: `RenderDocument` and the bytes of the PDF, then a `RenderRequest` per page to draw. From it:
/// `RenderOpened` and a `RenderPageSize` per page, then a `RenderAnswer` per request, in order, followed by the
/// page's rows from top to bottom when it was drawn, four bytes a pixel, as QImage::Format_RGB32 has them. A process
/// that cannot open the document ends without a word.
struct RenderDocument {
    std::uint64_t bytes;
    std::uint32_t pages; ///< as many as the document is known to have
    std::uint32_t unused;
};

struct RenderOpened {
    static constexpr std::array<char, 8> signature = {'D', 'V', 'R', 'E', 'N', 'D', 'R', '1'};
    std::array<char, 8> magic; ///< what else may write to the pipe does not write this
};

struct RenderPageSize {
    float width; ///< points
    float height;
};

struct RenderRequest {
    std::uint32_t page;  ///< 0 is the first
    std::uint32_t width; ///< pixels
    std::uint32_t height;

    bool operator==(const RenderRequest&) const = default;
};

struct RenderAnswer {
    RenderRequest request;
    std::uint32_t isDrawn; ///< 1, or 0 when no pixels follow
};

} // namespace dorvantel
