#!/usr/bin/env bash
# Runs scripts.vbs in the script host of one bitness.
# usage: scripts.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

work="$(mktemp -d "$build/scripts.XXXXXX")"
trap 'stop_simulator; rm -rf "$work"' EXIT
# The first Wine program starts the server, which must not inherit the pipes of a test.
wineserver -p60 >/dev/null 2>&1 || true
start_simulator --seed 1
script_host "$1" "$root/tests/wine/scripts.vbs" "$simulator_port" "$(windows_path "$work/screen.pcx")" 2>&1 | tr -d '\r'
