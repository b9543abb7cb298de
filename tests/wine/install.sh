#!/usr/bin/env bash
# Registers, installs and removes the components of both bitnesses in a Wine prefix of its own, and compares the
# registry before and after. Everything is done once, with both bitnesses.
# usage: install.sh 64
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
. "$root/tools/wine.sh"

work="$(mktemp -d "$build/install.XXXXXX")"
trap 'stop_simulator; rm -rf "$work"' EXIT
"$root/package"
export WINEPREFIX="$build/wine-install"
passed=0 failed=0

# check <name> <command>...
check() {
    local name="$1" code=0
    shift
    "$@" >"$work/output" 2>&1 </dev/null || code=$?
    if [ "$code" -eq 0 ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        say "FAILED: $name (exit code $code)" "$(head -n 20 "$work/output")"
    fi
}
unless() { ! "$@"; }

# prints <text> <command>...: the command's output holds the text.
prints() {
    "${@:2}" | tr -d '\r' | tee "$work/printed" || echo "(exit code $?)"
    grep -qF -- "$1" "$work/printed"
}

# sections <expression>: an exported registry without the keys whose name matches.
sections() { perl -00 -ne 'BEGIN { $no = shift } print unless /^\[[^\n]*$no/' "$1"; }

# export_key HKLM|HKCU <key>: the key and everything below it, in both bitnesses, as text; without times and the
# installer's own books. Nothing for a key that does not exist.
export_key() {
    local code=0 absent=2
    rm -f "$work/export"
    wine_run "$build/windows-x64/bin/save-key.exe" "$1" "$2" "$(windows_path "$work/export")" || code=$?
    [ "$code" -eq 0 ] || return "$((code == absent ? 0 : code))"
    KEY="$1\\$2" perl -ne 's/^\[(.*)\] \d+$/"[$ENV{KEY}\\" . $1 =~ s,\\\\,\\,gr . "]"/e; print unless /^(#time=|;;)/' \
        "$work/export" | sections '\\Installer[]\\]'
}
classes() { export_key HKLM 'Software\Classes'; }
# unchanged <name> [<state>]: the machine's classes are those of that state, the clean one unless told.
unchanged() { check "the classes: $1" diff "$work/${2:-clean}" <(classes); }
own_files() { find "$WINEPREFIX/drive_c" -ipath '*xtarn4x*' -o -ipath '*seamlib*'; }

# regsvr <bitness> [<option>...]: with all four components.
regsvr() {
    local files=()
    mapfile -t files < <(server_files "$1" | while read -r file; do windows_path "$file"; echo; done)
    wine_tool "$1" regsvr32 /s "${@:2}" "${files[@]}"
}

# diagnose <bitness>: without the waits that a real instrument needs.
sed '/^If CreateDriver() Then/a CreateObject("Seamlib.clsApplication").DelayScale = 0' \
    "$root/examples/diagnose.vbs" >"$work/diagnose.vbs"
diagnose() { script_host "$1" "$work/diagnose.vbs" /host:127.0.0.1 "/port:$simulator_port"; }

ensure_prefix
if classes | grep -qiE 'seamlib|xtarn4x'; then
    say "An earlier run has left something registered: making the prefix anew."
    make_prefix
fi
wineserver -p60 >/dev/null 2>&1 </dev/null || true
start_simulator --seed 1
# A script host writes to the registry when it runs for the first time.
for bitness in $(bitnesses); do
    check "diagnosis with nothing registered" prints "FAILED  Conduit.clsEthernet is not registered." diagnose "$bitness"
done
classes >"$work/clean"
check "there are classes" grep -q '^\[HKLM.Software.Classes.CLSID' "$work/clean"

# Every state is reached in every way, and looks the same each time. A move is bitness, option, what is registered then.
cp "$work/clean" "$work/state-"
moves=(64::64 64:/u:)
[ "$(bitnesses | wc -l)" -eq 1 ] ||
    moves=(64::64 "32::32 64" 64:/u:32 "64::32 64" 32:/u:64 64:/u: 32::32 32:/u:)
for move in "${moves[@]}"; do
    IFS=: read -r bitness option state <<<"$move"
    check "regsvr32 $option in $bitness bits" regsvr "$bitness" ${option:+"$option"}
    if [ -f "$work/state-$state" ]; then
        unchanged "after $move" "state-$state"
        continue
    fi
    classes >"$work/state-$state"
    for created in $state; do
        check "diagnosis in $created bits, with $state registered" prints "All is well" diagnose "$created"
    done
done
check "unregistering twice" regsvr 64 /u

# Another file. (What is registered for one user, Wine does not find: nothing is created for one here.)
mkdir "$work/other"
cp "$build/windows-x64/bin/Seamlib.dll" "$work/other/"
other="$(windows_path "$work/other/Seamlib.dll")"
regsvr 64
check "regsvr32 refuses" unless wine_tool 64 regsvr32 /s "$other"
unchanged "a refusal" "state-64"
check "regsvr32 /i:force" wine_tool 64 regsvr32 /s /i:force "$other"
check "unregistering what the other file has taken over" regsvr 64 /u
check "the other file is left alone" prints "$other" script_host 64 "$root/examples/diagnose.vbs"
check "unregistering the other file" wine_tool 64 regsvr32 /s /u "$other"
check "registering for one user" regsvr 64 /n /i:user
unchanged "another file, one user"
check "unregistering for one user" regsvr 64 /u /n /i:user

# The installer
msi="$(windows_path "$(echo "$root"/dist/*.msi)")"
export_key HKLM 'Software' >"$work/software"
check "installing" wine_run msiexec /i "$msi" /qn
for bitness in $(bitnesses); do
    check "diagnosis in $bitness bits, installed" prints "All is well" diagnose "$bitness"
    check "measuring in $bitness bits, installed" prints "Crest factor, present" \
        script_host "$bitness" "$root/examples/first-measurement.vbs" "/port:$simulator_port" /simulated
done
check "a receiver that does not answer" prints "port 1 does not answer: No connection to 127.0.0.1:1: " \
    script_host 64 "$root/examples/diagnose.vbs" /host:127.0.0.1 /port:1
stop_simulator
rm -f "$build/serial/com1"
check "a computer without a serial port" \
    prints "this PC has no free serial port" script_host 64 "$root/examples/diagnose.vbs"
start_simulator --seed 1
# What the installer writes is what regsvr32 writes, with other folders; a key without values gets an empty one, and Wine
# writes keys that both bitnesses share into the 32-bit ones once more.
normalised() {
    sections '\\Wow6432Node\\(Component Categories|[A-Za-z0-9]*\.cls)' |
        sed -E 's/"[^"]*\\((XTarn4x|Seamlib|Seamcfg|Conduit)\.dll)"/"\1"/; /^@=""$/d'
}
check "the installer's rows" diff <(normalised <"$work/state-$(bitnesses | sort | xargs)") <(classes | normalised)
check "uninstalling" wine_run msiexec /x "$msi" /qn
unchanged "uninstalled"
check "everything else afterwards" diff "$work/software" <(export_key HKLM 'Software')
check "the files afterwards" unless grep . <(own_files)

# The installer beside another product's framework
vendor='{01234567-89AB-CDEF-0123-456789ABCDEF}'
vendors_class() { check "the other product's class, $1" prints "$vendor" export_key HKLM 'Software\Classes\Seamlib.clsApplication'; }
wine_run reg add 'HKCR\Seamlib.clsApplication\CLSID' /ve /d "$vendor" /f >/dev/null
check "installing beside" wine_run msiexec /i "$msi" /qn
vendors_class "installed"
check "no Seamlib.dll" unless grep Seamlib.dll <(own_files)
check "but XTarn4x.dll" grep XTarn4x.dll <(own_files)
check "uninstalling beside" wine_run msiexec /x "$msi" /qn
vendors_class "uninstalled"
wine_run reg delete 'HKCR\Seamlib.clsApplication' /f >/dev/null

# Without registration
unzip -q "$root"/dist/*.zip -d "$work"
for platform in "$work"/XTarn4x/x*; do
    check "measuring through the manifests of $(basename "$platform")" \
        prints "MER (rms)" wine_run "$platform/measure.exe" 127.0.0.1 "$simulator_port"
done
unchanged "the registry is as it was"

# The files
check "checksums" env -C "$root/dist" sha256sum -c SHA256SUMS
needed() { objdump -p "$work"/XTarn4x/x*/*.dll | sed -nE 's/.*DLL Name: //p' | sort -fu; }
check "only Windows' own DLLs are needed" \
    unless grep -viE '^(kernel32|advapi32|ole32|oleaut32|user32|msvcrt|ws2_32)\.dll$' <(needed)
check "the version resources" unless grep -LP "$(sed 's/./&\\0/g' <<<OLESelfRegister)" "$work"/XTarn4x/x*/*.dll

say "A computer without a serial port"
stop_simulator
rm -f "$build/serial/com1"
check "installing with a placeholder" wine_run msiexec /i "$msi" /qn INSTALLLEVEL=2
check "tarn4x lists it" prints "COM16   none" wine_run 'C:\Program Files\XTarn4x\tarn4x.exe' ports
wine_run reg delete 'HKCU\Software\Conduit' /f >/dev/null
check "diagnosis names one" prints "Serial ports: COM16=16" script_host 64 "$root/examples/diagnose.vbs" /placeholder
check "uninstalling all of it" wine_run msiexec /x "$msi" /qn
check "neither placeholder nor Start menu stay" unless grep . <(export_key HKCU 'Software\Conduit' && own_files)

say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
