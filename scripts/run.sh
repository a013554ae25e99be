#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
# Builds Dorvantel, starts what it needs and then the program; whatever this script started ends with it.
#   scripts/run.sh            the window, or the tour where there is no display
#   scripts/run.sh FILE.pdf   the same, with that CV opened at once
set -euo pipefail
cv=()
if [ $# -gt 0 ]; then
    [ -f "$1" ] || { echo "run.sh: there is no file $1" >&2; exit 2; }
    cv=("$(realpath "$1")")
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. scripts/packages.sh
install_missing "${program_packages[@]}"

mkdir -p build
log=build/run-build.log
echo "Building (the log is $log)"
if ! { cmake --preset release && cmake --build --preset release; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    exit 1
fi
bin=$PWD/build/release/bin

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "There is no display: taking the tour instead"
    exec "$bin/dorvantel-tour" --out build/tour ${cv:+--cv "${cv[0]}"}
fi

started=()
temporary=$(mktemp -d)
stop() {
    [ ${#started[@]} -eq 0 ] || kill "${started[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$temporary"
}
trap stop EXIT
trap 'exit 130' INT TERM HUP

# show COMMAND...: the program; what this script is told to end, it ends at once and not when the window closes.
show() {
    "$@" &
    started+=($!)
    wait $!
}

# says URL TEXT: whether what answers there is what we look for; the port may be somebody else's.
says() { [[ $(curl -s --max-time 2 "$1") == *"$2"* ]]; }

# start NAME URL TEXT COMMAND...: in the background, until it says TEXT at URL.
start() {
    local name=$1 url=$2 text=$3
    shift 3
    "$@" >"$temporary/$name.log" 2>&1 &
    started+=($!)
    for _ in $(seq 100); do
        says "$url" "$text" && return 0
        kill -0 "${started[-1]}" 2>/dev/null || break
        sleep 0.1
    done
    echo "$name does not start:" >&2
    cat "$temporary/$name.log" >&2
    exit 1
}

# setting KEY: what the user chose, or nothing.
setting() {
    local file=${XDG_CONFIG_HOME:-$HOME/.config}/Dorvantel/Dorvantel.conf
    [ ! -r "$file" ] || sed -n "s/^$1=//p" "$file" | tail -n 1
}
model_server=$(setting ollamaURL)
model_server=${model_server:-http://localhost:11434}

model_list='"models":'
demo_model='"demo-texto:latest"'
records_health='"vectorsPending":'

if says "$model_server/api/tags" "$model_list"; then
    if ! says http://127.0.0.1:8765/health "$records_health"; then
        embedding_model=$(setting selectedEmbeddingModel)
        start records http://127.0.0.1:8765/health "$records_health" "$bin/dorvantel-records" --model-server "$model_server" \
            ${embedding_model:+--embedding-model "$embedding_model"}
    fi
    show "$bin/dorvantel" "${cv[@]}"
else
    echo "No model server answers at $model_server: using the stand-in and the demo profile (invented candidates; your settings and records are not touched)"
    profile=${XDG_DATA_HOME:-$HOME/.local/share}/dorvantel-demo
    mkdir -p "$profile/config/Dorvantel"
    if ! says http://127.0.0.1:11435/api/tags "$demo_model"; then
        start model-server http://127.0.0.1:11435/api/tags "$demo_model" "$bin/dorvantel-demo-model" --listen 127.0.0.1:11435
    fi
    printf '%s\n' '[General]' ollamaURL=http://127.0.0.1:11435 selectedLLMModel=demo-texto:latest \
        selectedEmbeddingModel=demo-vectores:latest >"$profile/config/Dorvantel/Dorvantel.conf"
    if ! says http://127.0.0.1:8764/health "$records_health"; then
        start records http://127.0.0.1:8764/health "$records_health" "$bin/dorvantel-records" --listen 127.0.0.1:8764 \
            --store "$profile/records.sqlite" --model-server http://127.0.0.1:11435 \
            --embedding-model demo-vectores:latest
        "$bin/dorvantel-fill-samples" http://127.0.0.1:8764/curriculums
    fi
    show env XDG_CONFIG_HOME="$profile/config" "$bin/dorvantel-demo" "${cv[@]}"
fi
