// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/SampleCv.h"

#include <QByteArray>

namespace dorvantel {

/// The CV as a PDF file of A4 pages, in the font Inter when it is installed. Needs a QGuiApplication (the offscreen
/// platform will do); on the main thread.
QByteArray samplePdf(const SampleCv& cv);

} // namespace dorvantel
