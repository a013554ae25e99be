#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds the benchmarks as users run the program (release) and prints one line a figure, tab separated:
#   name    value    target    ok|short
# A figure that falls short is a finding, not a failure: the exit status is that of building and running.
#   scripts/bench.sh                 all of them
#   scripts/bench.sh decode clean    bench_decode and bench_clean only
# The single timings are in build/bench-logs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${bench_packages[@]}"

logs=build/bench-logs
mkdir -p "$logs"
targets=(benches)
[ $# -eq 0 ] || targets=("${@/#/bench_}")
if ! { cmake --preset release -DDORVANTEL_BUILD_BENCH=ON &&
    cmake --build --preset release --target "${targets[@]}"; } >"$logs/build.log" 2>&1; then
    tail -n 60 "$logs/build.log" >&2
    exit 1
fi

things=("$@")
if [ $# -eq 0 ]; then
    shopt -s nullglob
    for source in bench/*_bench.cpp; do
        thing=${source#bench/}
        things+=("${thing%_bench.cpp}")
    done
fi
failed=0
for thing in "${things[@]}"; do
    QT_QPA_PLATFORM=offscreen "build/release/bin/bench_$thing" 2>"$logs/$thing.log" || {
        tail -n 20 "$logs/$thing.log" >&2
        failed=1
    }
done
exit "$failed"
