#!/usr/bin/env bash
# Checks that docs/members.md tells what the built type library holds.
# usage: reference.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

built="$build/$(preset_of "$1")"
if wine_run "$built/bin/print-members.exe" "$(windows_path "$built/idl/XTarn4x.tlb")" 2>/dev/null | tr -d '\r' |
    diff -u "$root/docs/members.md" -; then
    say "1 passed, 0 failed"
else
    say "docs/members.md is out of date: make it anew with build/windows-x64/bin/print-members.exe"
    say "0 passed, 1 failed"
    exit 1
fi
