# shellcheck shell=bash
# The Wine prefix of this repository: how it is made, what is registered in it, how programs run in it.
# Sourced after tools/lib.sh.

# shellcheck disable=SC2154 # tools/lib.sh sets build and logs.
export WINEPREFIX="$build/wine"
# File names and the user's language are the same on every machine.
export LC_ALL=C.UTF-8
export WINEDEBUG="${WINEDEBUG:--all}"
# No offers to download browser engines, no menu entries in the user's desktop, no debugger that waits beside a program
# that crashed.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d"

# Seconds after which a program under Wine is taken for hung.
wine_limit=120

# Wine needs the page at 0x7FFE0000, and its loader lies at 0x7D000000. Linux puts the heap at random within a gigabyte
# behind a program: one start in some thousands finds the page taken and ends with exit code 1 and no text. Without that
# randomness the heap begins right behind the loader, for all processes that this one starts too.
fixed_layout=(setarch -R)
"${fixed_layout[@]}" true 2>/dev/null || fixed_layout=()

servers=(Seamcfg Seamlib Conduit XTarn4x)
programs=(tarn4x tarn4x-sim)
wine_libraries="/usr/lib/x86_64-linux-gnu/wine"

has_wine32() { [ -f "$wine_libraries/i386-windows/ntdll.dll" ]; }

# The bitnesses that this machine can run.
bitnesses() {
    echo 64
    ! has_wine32 || echo 32
}

# preset_of <bitness>
preset_of() { if [ "$1" = 32 ]; then echo windows-x86; else echo windows-x64; fi; }

# wine_run <program> <argument>...: the output goes through files, because the processes that Wine starts behind a
# program hold its output open for as long as they live, and whoever reads from a pipe would wait for them.
wine_run() {
    local output code=0
    output="$(mktemp -d "$logs/wine.XXXXXX")"
    wineserver -p30 >/dev/null 2>&1 </dev/null || true
    timeout -k 5 "$wine_limit" "${fixed_layout[@]}" wine "$@" >"$output/1" 2>"$output/2" || code=$?
    cat "$output/1"
    cat "$output/2" >&2
    rm -rf "$output"
    return "$code"
}

# windows_path <absolute path>: the same file as Windows programs name it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# wine_tool <bitness> <name> <argument>...: runs one of Windows' own programs.
wine_tool() {
    local folder='system32' bitness="$1" name="$2"
    shift 2
    [ "$bitness" = 64 ] || folder='syswow64'
    wine_run "C:\\windows\\$folder\\$name.exe" "$@"
}

# script_host <bitness> <script> <argument>...: runs a VBScript or JScript file.
script_host() {
    local bitness="$1" script
    script="$(windows_path "$(realpath "$2")")"
    shift 2
    wine_tool "$bitness" cscript //nologo "$script" "$@"
}

# The registry of the prefix. COM1 to COM255 are names in build/serial, whether such a file exists or not, so that Wine
# does not give these ports to the serial ports of this machine; the simulated receiver creates com1.
prefix_registry() {
    local n folder="$build/serial"
    printf 'Windows Registry Editor Version 5.00\n\n'
    # Windows and message loops without a display.
    printf '[HKEY_CURRENT_USER\\Software\\Wine\\Drivers]\n"Graphics"="null"\n\n'
    printf '[HKEY_LOCAL_MACHINE\\Software\\Wine\\Ports]\n'
    for n in $(seq 255); do
        printf '"COM%d"="%s/com%d"\n' "$n" "$folder" "$n"
    done
}

prefix_recipe() {
    wine --version
    bitnesses
    prefix_registry
}

make_prefix() {
    [ ! -d "$WINEPREFIX" ] || timeout 30 wineserver -k || true
    rm -rf "$WINEPREFIX"
    prefix_registry >"$build/prefix.reg"
    wine_run wineboot -i &&
        wine_run regedit /S "$(windows_path "$build/prefix.reg")" &&
        # The COM ports take effect when the prefix starts again.
        { timeout 30 wineserver -k || true; } &&
        timeout 30 wineserver -w &&
        wine_run cmd /c exit &&
        prefix_recipe >"$WINEPREFIX/recipe"
}

# ensure_prefix: makes the prefix when there is none or its recipe changed.
ensure_prefix() {
    [ "$(prefix_recipe)" != "$(cat "$WINEPREFIX/recipe" 2>/dev/null)" ] || return 0
    step prefix "Making the Wine prefix build/wine" make_prefix
}

server_files() {
    local bitness="$1" name
    for name in "${servers[@]}"; do
        printf '%s\n' "$build/$(preset_of "$bitness")/bin/$name.dll"
    done
}

register_servers() {
    local bitness="$1" file
    while read -r file <&3; do
        echo "$file"
        wine_tool "$bitness" regsvr32 /s /n /i:force "$(windows_path "$file")" || {
            echo "regsvr32 failed with $?"
            return 1
        }
    done 3< <(server_files "$bitness")
}

# ensure_registered [<bitness>...]: registers the four components of each bitness with that bitness's own regsvr32, when
# they changed.
ensure_registered() {
    local bitness stamp sums all
    mapfile -t all < <(bitnesses)
    for bitness in "${@-${all[@]}}"; do
        stamp="$WINEPREFIX/registered-$bitness"
        sums="$(server_files "$bitness" | tr '\n' '\0' | xargs -0 sha256sum)"
        [ "$sums" != "$(cat "$stamp" 2>/dev/null)" ] || continue
        rm -f "$stamp"
        step "register-$bitness" "Registering the $bitness-bit components" register_servers "$bitness" || return 1
        printf '%s\n' "$sums" >"$stamp"
    done
}
