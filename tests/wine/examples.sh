#!/usr/bin/env bash
# Runs the examples as a user would, against the simulated receiver, and looks at what they print.
# usage: examples.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

bitness="$1"
work="$(mktemp -d "$build/examples.XXXXXX")"
trap 'stop_simulator; rm -rf "$work"' EXIT
wineserver -p60 >/dev/null 2>&1 || true
start_simulator --seed 1

passed=0
failed=0

# expect <name> <text that the output must hold> <command>...
expect() {
    local name="$1" text="$2" output
    shift 2
    output="$("$@" 2>&1 </dev/null | tr -d '\r')" || true
    if [[ "$output" == *"$text"* ]]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        say "$name ($bitness-bit) printed no \"$text\" but:" "$output"
    fi
}

example() { script_host "$bitness" "$root/examples/$1" "/port:$simulator_port" /simulated "${@:2}"; }

expect first-measurement "Crest factor, present" example first-measurement.vbs
expect survey " values, 0 errors" example survey.vbs
expect statistics "Monitored for                     1 s" example statistics.vbs /seconds:1
expect JScript "800407E0: Wrong measurement mode selected" example measure.js
expect "early-bound C++" "MER (rms)" wine_run "$build/$(preset_of "$bitness")/bin/measure.exe" 127.0.0.1 "$simulator_port"
expect "late-bound C++" "MeasureOfdmMerRmsDb" wine_run "$build/$(preset_of "$bitness")/bin/measure-late.exe" 127.0.0.1 "$simulator_port"
# The screen as another program sees it: 320 by 240 dots, more than one colour.
expect screenshot "Saved as" example screenshot.vbs "/file:$(windows_path "$work/screen.pcx")"
expect "the saved screen" "320 by 240" bash -c "pcxtoppm '$work/screen.pcx' | pnmfile"
expect "no receiver" "does not answer: No connection to 127.0.0.1:1: connection refused" script_host "$bitness" "$root/examples/survey.vbs" /port:1 /simulated

say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
