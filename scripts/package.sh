#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds the Debian packages into build/release/packages and checks them.
#   scripts/package.sh           lintian, then tests/packaging/in-clean-system.sh
#   scripts/package.sh --quick   lintian only
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}" "${package_packages[@]}"

mkdir -p build
log=build/package.log
echo "Building (the log is $log)"
folder=build/release/packages
rm -rf "$folder"
if ! { cmake --preset release && cmake --build --preset release &&
    (umask 022 && cpack --config build/release/CPackConfig.cmake); } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    exit 1
fi
ls "$folder"/*.deb

# They are no upload to Debian, so there is no request for packaging that the first of them could close.
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$folder"/*.deb
[ "${1:-}" = --quick ] || tests/packaging/in-clean-system.sh "$folder"
