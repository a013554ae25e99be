// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <functional>

namespace dorvantel {

/// Opens the document that comes from `input` and draws its pages to `output` as they are asked for, in the frames of
/// PDFRenderFrames.h, until `input` ends. `beforeEachPage` is called before each page is drawn. False when the
/// document cannot be opened, has another number of pages than announced, or a frame is cut off.
///
/// The PDF library runs here, on bytes that cannot be trusted: it may never return, eat all memory or crash. Only a
/// process of its own with limits calls this.
bool servePages(std::FILE* input, std::FILE* output, const std::function<void()>& beforeEachPage);

} // namespace dorvantel
