#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds the fuzzers and runs each for a minute, or as long as FUZZ_SECONDS says. Inputs that lead somewhere new are kept
# in build/fuzz-corpus for the next time, those that break something in build/fuzz-findings.
#   scripts/fuzz.sh                  all of them
#   scripts/fuzz.sh statement        fuzz_statement only
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${fuzz_packages[@]}"

things=("$@")
if [ $# -eq 0 ]; then
    for source in fuzz/*_fuzz.cpp; do
        thing=${source#fuzz/}
        things+=("${thing%_fuzz.cpp}")
    done
fi
cmake --preset fuzz
cmake --build --preset fuzz --target "${things[@]/#/fuzz_}"

failed=0
for thing in "${things[@]}"; do
    mkdir -p "build/fuzz-corpus/$thing" build/fuzz-findings
    words=()
    [ ! -e "fuzz/$thing.dict" ] || words=("-dict=fuzz/$thing.dict")
    # Some of what they test says on standard output how it went, hence the mask.
    "build/fuzz/bin/fuzz_$thing" -max_total_time="${FUZZ_SECONDS:-60}" -timeout=10 -close_fd_mask=1 "${words[@]}" \
        -artifact_prefix="build/fuzz-findings/$thing-" "build/fuzz-corpus/$thing" "fuzz/seeds/$thing" \
        2>"build/fuzz-findings/$thing.log" || failed=1
    echo "$thing: $(tail -n 1 "build/fuzz-findings/$thing.log")"
done
exit "$failed"
