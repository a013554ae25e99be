# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Sourced by the scripts beside it: installs what is missing of Debian's packages, and says so.

# What building and running the program takes.
program_packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-pdf-dev libqt6pdf6 qt6-svg-dev libqt6svg6 qt6-qpa-plugins qt6-translations-l10n
    libicu-dev libfontconfig-dev libsqlite3-dev nlohmann-json3-dev libsimdjson-dev libcpp-httplib-dev libbenchmark-dev libxcb1-dev
    libseccomp-dev
    fonts-inter fonts-noto-color-emoji fonts-noto-core fontconfig curl
)

# What the tests take beside that.
test_packages=(
    libgtest-dev libgmock-dev xvfb xauth poppler-utils wspanish wamerican python3 procps
    desktop-file-utils appstream mandoc
    dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3-gi
)

# What making and checking the Debian packages takes beside that of the program.
package_packages=(dpkg-dev fakeroot file lintian mmdebstrap)

# What the benchmarks alone take: yardsticks (any implementation of BLAS does) and a display.
bench_packages=(libfaiss-dev liblapack-dev libblas-dev xvfb)

# What the preset "tidy" takes beside that.
tidy_packages=(clang-19 clang-tidy-19 clang-format-19)

# What the presets "asan-ubsan", "tsan" and "fuzz" take beside that: the libraries of the sanitizers come separately, and
# so does what tells them the names of functions.
sanitizer_packages=(clang-19 libclang-rt-19-dev llvm-19)

# install_missing PACKAGE...
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing and need root to install: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing Debian packages: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}
