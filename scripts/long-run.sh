#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Works the whole program in one process through 2 000 intakes, 2 000 searches and 500 deletions, with the records
# service, the stand-in model server and the PDF readers as processes of their own. Every 100 rounds a line of a table
# says what both take of the machine and how long the steps last. Fails, with a sentence for each thing, when memory,
# descriptors, threads or objects are left behind, or when the last quarter is slower than the first.
# Takes about ten minutes. Real CVs are taken in as well when DORVANTEL_TEST_DATA names a folder that has some in cv/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${test_packages[@]}"

logs=build/long-run-logs
mkdir -p "$logs"
if ! { cmake --preset dev && cmake --build --preset dev --target test_longrun; } >"$logs/build.log" 2>&1; then
    tail -n 60 "$logs/build.log" >&2
    exit 1
fi
# The offscreen platform says of every window what it cannot do with it.
DORVANTEL_LONG_RUN_LOG="$logs/program.log" QT_QPA_PLATFORM=offscreen build/dev/bin/test_longrun --gtest_filter='LongRun.Full*' 2>&1 |
    grep -v '^This plugin does not support' | tee "$logs/table.txt"
