#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Installs the Debian packages into a clean Debian of their own, starts each program there, and removes them again.
# Needs root, mmdebstrap and the machine's own package sources; some minutes and a gigabyte below TMPDIR.
#   tests/packaging/in-clean-system.sh FOLDER_OF_PACKAGES
set -euo pipefail
[ "$(id -u)" -eq 0 ] || exec sudo -- "$0" "$@"
packages=$(realpath "$1")
samples=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../../demo/samples")
root=$(mktemp -d)
server=
# The root holds the machine's /proc and /dev while something runs in it, hence never a removal across file systems.
clean_up() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    for mount in proc dev; do
        ! mountpoint -q "$root/$mount" || umount "$root/$mount"
    done
    rm -rf --one-file-system "$root"
}
trap clean_up EXIT
trap 'exit 130' INT TERM HUP

failed=0
check() {
    local what=$1
    shift
    if "$@" >"$root/tmp/check.log" 2>&1; then
        echo "ok    $what"
    else
        echo "FAIL  $what"
        sed 's/^/      /' "$root/tmp/check.log"
        failed=1
    fi
}
inside() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as_user() { inside runuser -u recruiter -- env HOME=/home/recruiter XDG_RUNTIME_DIR=/home/recruiter/run "$@"; }

# answers URL TEXT: the answer holds the text, within ten seconds.
answers() {
    for _ in $(seq 100); do
        curl -s --max-time 2 "$1" | grep -qF "$2" && return 0
        sleep 0.1
    done
    return 1
}

# Every file but what package tools and caches write whenever they run.
listing() {
    find "$root" -xdev \( -path "$root/proc" -o -path "$root/dev" -o -path "$root/tmp" -o -path "$root/home" -o -path "$root/var/cache" \
        -o -path "$root/var/lib/apt" -o -path "$root/var/lib/dpkg" -o -path "$root/var/log" \) -prune -o -printf '/%P\n' | sort
}

echo "Making a clean Debian"
. /etc/os-release
mmdebstrap --quiet --variant=apt --mode=root "$VERSION_CODENAME" "$root" /etc/apt/sources.list.d/debian.sources
mount --bind /proc "$root/proc"
mount --bind /dev "$root/dev"
inside useradd --create-home recruiter
as_user mkdir -m 700 /home/recruiter/run
mkdir "$root/tmp/packages" && cp "$packages"/*.deb "$root/tmp/packages"
cp "$samples/contable.pdf" "$root/home/recruiter"
chmod a+r "$root/home/recruiter/contable.pdf"
inside apt-get update -qq
# The system is to have the libraries already, so that what is left behind in the end is ours.
needed=$(for deb in "$packages"/*.deb; do dpkg-deb -f "$deb" Depends; echo ,; done | tr ',' '\n' |
    sed -E 's/\(.*//; s/ //g' | grep -v '^$' | sort -u)
echo "Installing what the packages depend on"
# shellcheck disable=SC2086
inside apt-get install -y -qq --no-install-recommends $needed xvfb x11-utils >"$root/tmp/apt.log" 2>&1
listing >"$root/tmp/before"

# dpkg fetches nothing: it refuses a package whose declared dependencies are not there.
check "the packages install" inside sh -c 'dpkg -i /tmp/packages/*.deb'
for program in /usr/bin/dorvantel /usr/bin/dorvantel-records /usr/bin/dorvantel-demo-model \
    /usr/libexec/dorvantel/dorvantel-pdf-reader; do
    check "$program finds all its libraries" inside sh -c "libraries=\$(ldd $program) && ! echo \"\$libraries\" | grep 'not found'"
done
for program in dorvantel dorvantel-records dorvantel-demo-model; do
    check "$program says its version" as_user env QT_QPA_PLATFORM=offscreen "$program" --version
done
check "the reader reads a CV" as_user sh -c '/usr/libexec/dorvantel/dorvantel-pdf-reader --text ~/contable.pdf | grep -q @example.com'

records_answer() {
    as_user dorvantel-records --listen 127.0.0.1:18765 &
    server=$!
    answers http://127.0.0.1:18765/curriculums '{"response":[]}'
}
check "the records service serves" records_answer
# What ends is the program, not runuser or the shell around it.
ended() {
    inside sh -c "kill \$(pidof $1)" && wait "$server" && server=
}
check "the records service ends in order" ended dorvantel-records

stand_in_answers() {
    as_user dorvantel-demo-model --listen 127.0.0.1:18766 &
    server=$!
    answers http://127.0.0.1:18766/api/tags demo-texto:latest
}
check "the stand-in serves" stand_in_answers
check "the stand-in ends in order" ended dorvantel-demo-model

# The settings keep the window from any model server of this machine.
window_shows() {
    as_user sh -c 'mkdir -p ~/.config/Dorvantel && printf "[General]\nollamaURL=http://127.0.0.1:9\n" >~/.config/Dorvantel/Dorvantel.conf'
    as_user sh -c '
        Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>~/display >/dev/null 2>&1 & x=$!
        until [ -s ~/display ]; do kill -0 $x || exit 1; sleep 0.1; done
        export DISPLAY=:$(cat ~/display)
        dorvantel ~/contable.pdf & window=$!
        for _ in $(seq 100); do
            xwininfo -root -tree | grep -q "\"Dorvantel\"" && shown=yes && break
            kill -0 $window || break
            sleep 0.1
        done
        xwininfo -root -tree
        kill $window; wait $window
        kill $x; wait $x
        [ "${shown:-}" = yes ]'
}
check "the window shows" window_shows

check "the packages are purged" inside apt-get purge -y -qq dorvantel dorvantel-records dorvantel-demo-model
listing >"$root/tmp/after"
check "nothing is left behind" diff "$root/tmp/before" "$root/tmp/after"
check "what the user stored is still there" inside test -s /home/recruiter/.local/share/dorvantel/records.sqlite
exit "$failed"
