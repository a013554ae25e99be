#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds everything and runs all tests three times: plain, under the address and undefined-behaviour sanitizers with the
# check for leaks, and under the thread sanitizer. Then runs every fuzzer for half a minute, or for FUZZ_SECONDS.
#   scripts/test.sh                  all of that
#   scripts/test.sh tsan             some parts only (dev, asan-ubsan, tsan, fuzz or coverage)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}"

parts=("$@")
[ ${#parts[@]} -gt 0 ] || parts=(dev asan-ubsan tsan fuzz)

logs=build/test-logs
mkdir -p "$logs"
summary=()
failed=0

# run_tests PRESET
run_tests() {
    local preset=$1 began=$SECONDS built status outcome
    echo "== $preset: configure and build"
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$logs/$preset-build.log" 2>&1; then
        tail -n 60 "$logs/$preset-build.log"
        summary+=("$preset: does not build (see $logs/$preset-build.log)")
        failed=1
        return
    fi
    built=$SECONDS
    echo "== $preset: test"
    set +e
    ctest --preset "$preset" --output-log "$logs/$preset-tests.log" |
        grep -v -E '^ *(Start|[0-9]+/[0-9]+ Test) .*Passed|^ +Start '
    status=${PIPESTATUS[0]}
    set -e
    [ "$status" -eq 0 ] || failed=1
    outcome=$(grep -E 'tests passed|No tests' "$logs/$preset-tests.log" | tail -n 1)
    summary+=("$preset: $outcome (built in $((built - began)) s, tested in $((SECONDS - built)) s)")
}

run_fuzzers() {
    local seconds=${FUZZ_SECONDS:-30} began=$SECONDS outcome="nothing found"
    FUZZ_SECONDS=$seconds scripts/fuzz.sh 2>&1 | tee "$logs/fuzz.log" || {
        outcome="something found, or it does not build (see $logs/fuzz.log)"
        failed=1
    }
    summary+=("fuzz: $outcome, $seconds s each ($((SECONDS - began)) s)")
}

for part in "${parts[@]}"; do
    if [ "$part" = fuzz ]; then
        run_fuzzers
    else
        run_tests "$part"
    fi
done

echo
echo "== Summary"
printf '%s\n' "${summary[@]}"
exit "$failed"
