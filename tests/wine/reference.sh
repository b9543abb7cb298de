#!/usr/bin/env bash
# Checks that docs/members.md and docs/framework.md tell what the built type libraries hold.
# usage: reference.sh 64|32
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

built="$build/$(preset_of "$1")"
passed=0 failed=0

# page <name> <library>...
page() {
    local page="$1" libraries=()
    shift
    for library in "$@"; do libraries+=("$(windows_path "$built/idl/$library.tlb")"); done
    if wine_run "$built/bin/print-members.exe" "${libraries[@]}" 2>/dev/null | tr -d '\r' | diff -u "$root/docs/$page" -; then
        passed=$((passed + 1))
    else
        say "docs/$page is out of date: make it anew with build/windows-x64/bin/print-members.exe"
        failed=$((failed + 1))
    fi
}

page members.md XTarn4x
page framework.md Seamlib Seamcfg Conduit
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
