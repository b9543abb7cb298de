#!/usr/bin/env bash
# Runs the script tests of this folder, and the one that print-failures writes, in the script host of one bitness, each
# with a simulated receiver of its own: with the faults of NAME.sim where that file exists, with none at all for
# no-serial-port.vbs. Some run again for a user whose regional format has a decimal comma.
# usage: scripts.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

bitness="$1"
here="$root/tests/wine"
work="$(mktemp -d "$build/scripts.XXXXXX")"
trap 'stop_simulator; user_format . ,; rm -rf "$work"' EXIT

# The first Wine program starts the server, which must not inherit the pipes of a test.
wineserver -p60 >/dev/null 2>&1 || true

mkdir "$work/written"
wine_run "$build/$(preset_of "$bitness")/bin/print-failures.exe" | tr -d '\r' >"$work/written/failures.vbs"

passed=0
failed=0

# run_script <script> <remark>
run_script() {
    local script="$1" name arguments=(--seed 1) output counts ok bad
    name="$(basename "$script" .vbs)"
    cat "$here/lib.vbs" "$script" >"$work/$name.vbs"
    if [ -f "$here/$name.sim" ]; then
        { printf 's/@MEBIBYTE@/' && head -c 1100000 /dev/zero | tr '\0' 7 && printf '/'; } >"$work/mebibyte.sed"
        sed -f "$work/mebibyte.sed" "$here/$name.sim" >"$work/$name.sim"
        arguments+=(--script "$work/$name.sim")
    fi
    simulator_port=0
    [ "$name" = no-serial-port ] || start_simulator "${arguments[@]}"
    output="$(script_host "$bitness" "$work/$name.vbs" "/port:$simulator_port" "/work:$(windows_path "$work")" 2>&1 | tr -d '\r')" || true
    stop_simulator
    sed "/ passed, /d; s/^/$name ($bitness-bit$2): /" <<<"$output"
    counts="$(grep -oE '^[0-9]+ passed, [0-9]+ failed$' <<<"$output" || echo "0 passed, 1 failed")"
    read -r ok _ bad _ <<<"$counts"
    [ "$counts" != "0 passed, 1 failed" ] || say "$name ($bitness-bit$2): did not run to its end"
    passed=$((passed + ok))
    failed=$((failed + bad))
}

# user_format <decimal separator> <thousands separator>: the regional format of programs that start from now on.
user_format() {
    local key='HKCU\Control Panel\International' value
    for value in "sDecimal $1" "sMonDecimalSep $1" "sThousand $2" "sMonThousandSep $2"; do
        wine_tool "$bitness" reg add "$key" /v "${value% *}" /d "${value#* }" /f >/dev/null
    done
}

for script in "$here"/*.vbs "$work/written"/*.vbs; do
    case "$(basename "$script" .vbs)" in
        lib | decimal-comma) ;;
        *) run_script "$script" "" ;;
    esac
done
user_format , .
for name in decimal-comma members settings walk; do run_script "$here/$name.vbs" ", decimal comma"; done
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
