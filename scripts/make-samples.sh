#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Draws the sample CVs in demo/samples anew from their text sources in demo/samples/src.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}"
mkdir -p build
if ! { cmake --preset release && cmake --build --preset release --target dorvantel-make-samples; } \
        >build/make-samples.log 2>&1; then
    tail -n 40 build/make-samples.log >&2
    exit 1
fi
QT_QPA_PLATFORM=offscreen build/release/bin/dorvantel-make-samples demo/samples
