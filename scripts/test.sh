#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds everything and runs all tests, then runs them once more under the address and undefined-behaviour sanitizers.
#   scripts/test.sh          both
#   scripts/test.sh dev      one preset only (dev, asan-ubsan, tsan or coverage)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${test_packages[@]}"

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(dev asan-ubsan)

# Third-party code leaks at exit and is not ours to mend; the file says what and why.
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"

logs=build/test-logs
mkdir -p "$logs"
summary=()
failed=0
for preset in "${presets[@]}"; do
    echo "== $preset: configure and build"
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$logs/$preset-build.log" 2>&1; then
        tail -n 60 "$logs/$preset-build.log"
        summary+=("$preset: does not build (see $logs/$preset-build.log)")
        failed=1
        continue
    fi
    echo "== $preset: test"
    set +e
    ctest --preset "$preset" --output-log "$logs/$preset-tests.log" |
        grep -v -E '^ *(Start|[0-9]+/[0-9]+ Test) .*Passed|^ +Start '
    status=${PIPESTATUS[0]}
    set -e
    [ "$status" -eq 0 ] || failed=1
    summary+=("$preset: $(grep -E 'tests passed|No tests' "$logs/$preset-tests.log" | tail -n 1)")
done

echo
echo "== Summary"
printf '%s\n' "${summary[@]}"
exit "$failed"
