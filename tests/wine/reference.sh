#!/usr/bin/env bash
# Checks that docs/members.md and docs/framework.md tell what the built type libraries hold, and docs/registration.md
# what the components register.
# usage: reference.sh 64
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

built="$build/$(preset_of "$1")"
passed=0 failed=0

# page <name> <command>...: the page is what the command prints.
page() {
    if "${@:2}" 2>/dev/null | tr -d '\r' | diff -u "$root/docs/$1" -; then
        passed=$((passed + 1))
    else
        say "docs/$1 is out of date: make it anew with print-members.exe or print-registration.exe"
        failed=$((failed + 1))
    fi
}

print() { wine_run "$built/bin/print-$1.exe" "${@:2}"; }
library() { windows_path "$built/idl/$1.tlb"; }
registered() {
    sed '/^```/q' "$root/docs/registration.md"
    for name in "${servers[@]}"; do print registration "$(windows_path "$built/bin/$name.dll")"; done
    echo '```'
}

page members.md print members "$(library XTarn4x)"
page framework.md print members "$(library Seamlib)" "$(library Seamcfg)" "$(library Conduit)"
page registration.md registered
say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
