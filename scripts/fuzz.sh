#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds the fuzzers and runs each for a minute, or for FUZZ_SECONDS, two at a time. Says in one line each how it went, and fails
# if one of them found something. Inputs that lead somewhere new are kept in build/fuzz-corpus for the next time, those that
# break something in build/fuzz-findings, beside the logs.
#   scripts/fuzz.sh                  all of them
#   scripts/fuzz.sh statement        fuzz_statement only
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${sanitizer_packages[@]}"

things=("$@")
if [ $# -eq 0 ]; then
    for source in fuzz/*_fuzz.cpp; do
        thing=${source#fuzz/}
        things+=("${thing%_fuzz.cpp}")
    done
fi

# Third-party code leaks at exit and is not ours to mend; the file says what and why.
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
# What AddressSanitizer keeps of the memory that was freed; inputs are small, and the default is slow.
export ASAN_OPTIONS="quarantine_size_mb=16${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
# The processor's own random numbers, which every list that is decoded asks for, are ten times as slow as the system's.
export QT_NO_CPU_FEATURE="rdrnd rdseed"

findings=build/fuzz-findings
mkdir -p "$findings"
echo "== fuzz: configure and build"
if ! { cmake --preset fuzz && cmake --build --preset fuzz --target "${things[@]/#/fuzz_}"; } >"$findings/build.log" 2>&1; then
    tail -n 60 "$findings/build.log"
    echo "the fuzzers do not build (see $findings/build.log)"
    exit 1
fi

# fuzz THING: prints the line about it; fails when there is a finding, or no run at all.
fuzz() {
    local thing=$1 log=$findings/$1.log status=0
    local options=(-max_total_time="${FUZZ_SECONDS:-60}" -max_len=2048 -timeout=10 -rss_limit_mb=1024 -print_final_stats=1)
    [ ! -e "fuzz/$thing.dict" ] || options+=("-dict=fuzz/$thing.dict")
    # Options of its own, one a line; the last of each counts.
    [ ! -e "fuzz/$thing.options" ] || mapfile -t -O "${#options[@]}" options <"fuzz/$thing.options"
    mkdir -p "build/fuzz-corpus/$thing"
    # Some of what they test says on standard output how it went, hence the mask.
    "build/fuzz/bin/fuzz_$thing" "${options[@]}" -close_fd_mask=1 -artifact_prefix="$findings/$thing-" \
        "build/fuzz-corpus/$thing" "fuzz/seeds/$thing" 2>"$log" || status=$?

    stat() { sed -n "s/^stat::$1: *//p" "$log"; }
    if [ "$status" -eq 0 ]; then
        echo "$thing: nothing found in $(stat number_of_executed_units) runs ($(stat average_exec_per_sec) a second)," \
            "$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1)"
        return 0
    fi
    local finding
    finding=$(sed -n 's/^.*Test unit written to //p' "$log" | tail -n 1)
    echo "$thing: FOUND ${finding:-nothing, but it ended with $status} (see $log)"
    grep -m 3 -E 'it does not hold|ERROR: |runtime error: |SUMMARY: ' "$log" || tail -n 3 "$log"
    return 1
}
export -f fuzz
export findings

echo "== fuzz: run"
printf '%s\n' "${things[@]}" | xargs -P 2 -I{} bash -c 'fuzz "$1"' fuzz {} || exit 1
