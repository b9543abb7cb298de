#!/usr/bin/env bash
# Runs the script tests of this folder in the script host of one bitness, each with a simulated receiver of its own: with
# the faults of NAME.sim where that file exists, with none at all for no-serial-port.vbs.
# usage: scripts.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

bitness="$1"
here="$root/tests/wine"
work="$(mktemp -d "$build/scripts.XXXXXX")"
trap 'stop_simulator; rm -rf "$work"' EXIT

# The first Wine program starts the server, which must not inherit the pipes of a test.
wineserver -p60 >/dev/null 2>&1 || true

passed=0
failed=0
for test in "$here"/*.vbs; do
    name="$(basename "$test" .vbs)"
    [ "$name" != lib ] || continue
    cat "$here/lib.vbs" "$test" >"$work/$name.vbs"
    arguments=(--seed 1)
    if [ -f "$here/$name.sim" ]; then
        { printf 's/@MEBIBYTE@/' && head -c 1100000 /dev/zero | tr '\0' 7 && printf '/'; } >"$work/mebibyte.sed"
        sed -f "$work/mebibyte.sed" "$here/$name.sim" >"$work/$name.sim"
        arguments+=(--script "$work/$name.sim")
    fi
    simulator_port=0
    [ "$name" = no-serial-port ] || start_simulator "${arguments[@]}"
    output="$(script_host "$bitness" "$work/$name.vbs" "/port:$simulator_port" "/work:$(windows_path "$work")" 2>&1 | tr -d '\r')" || true
    stop_simulator
    sed "/ passed, /d; s/^/$name ($bitness-bit): /" <<<"$output"
    counts="$(grep -oE '^[0-9]+ passed, [0-9]+ failed$' <<<"$output" || echo "0 passed, 1 failed")"
    read -r ok _ bad _ <<<"$counts"
    [ "$counts" != "0 passed, 1 failed" ] || say "$name ($bitness-bit): did not run to its end"
    passed=$((passed + ok))
    failed=$((failed + bad))
done
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
