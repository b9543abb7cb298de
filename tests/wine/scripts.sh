#!/usr/bin/env bash
# Runs the script tests of this folder, and the one that print-failures writes, in the script host of one bitness, each
# with a simulated receiver of its own, with the faults of NAME.sim where that file exists.
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

wine_run "$build/$(preset_of "$bitness")/bin/print-failures.exe" | tr -d '\r' >"$work/failures.vbs"

passed=0
failed=0
for script in "$here"/{members,session,faults}.vbs "$work/failures.vbs"; do
    name="$(basename "$script" .vbs)"
    arguments=(--seed 1)
    [ ! -f "$here/$name.sim" ] || arguments+=(--script "$here/$name.sim")
    cat "$here/lib.vbs" "$script" >"$work/run.vbs"
    start_simulator "${arguments[@]}"
    output="$(script_host "$bitness" "$work/run.vbs" "/port:$simulator_port" "/work:$(windows_path "$work")" 2>&1 | tr -d '\r')" || true
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
