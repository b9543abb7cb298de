# shellcheck shell=bash
# What the scripts of this repository share. Sourced after `set -euo pipefail`; sets `root` and `build`.

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build"
logs="$build/log"
mkdir -p "$logs"

say() { printf '%s\n' "$*"; }
note() { printf '%s\n' "$*" >&2; }

can_be_root() { [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; }
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

# step <log name> <text> <command>...: prints the text, runs the command quietly, shows the end of its output when it
# fails, and returns its exit code.
step() {
    local log="$logs/$1.log" text="$2" started=$SECONDS code=0
    shift 2
    printf '%s ...' "$text"
    "$@" >"$log" 2>&1 </dev/null || code=$?
    if [ "$code" -eq 0 ]; then
        printf ' %d s\n' $((SECONDS - started))
    else
        printf ' failed\n'
        tail -n 40 "$log"
        say "(the whole output: $log)"
    fi
    return "$code"
}

# build_preset <preset> [<target>...]
build_preset() {
    local preset="$1" targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    cd "$root" && cmake --preset "$preset" && cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"
}

# start_simulator [<argument>...]: starts the simulated receiver on a free port of the loopback interface and on the
# pseudo-terminal that is COM1 of the Wine prefix. Sets simulator_port, which programs find in their environment, and
# simulator_pid; stop_simulator ends it. `simulator` is the program, of whichever build.
simulator="${simulator:-$build/native/bin/tarn4x-sim}"
start_simulator() {
    local output
    output="$(mktemp "$logs/simulator.XXXXXX")"
    mkdir -p "$build/serial"
    "$simulator" --port 0 --serial "$build/serial/com1" "$@" >"$output" 2>&1 </dev/null &
    simulator_pid=$!
    export simulator_port=""
    for _ in $(seq 100); do
        simulator_port="$(sed -nE 's/^listening on .*:([0-9]+)$/\1/p' "$output")"
        [ -z "$simulator_port" ] || [ ! -e "$build/serial/com1" ] || return 0
        kill -0 "$simulator_pid" 2>/dev/null || break
        sleep 0.05
    done
    note "The simulated receiver did not start:"
    cat "$output" >&2
    stop_simulator
    return 1
}

stop_simulator() {
    [ -n "${simulator_pid:-}" ] || return 0
    kill "$simulator_pid" 2>/dev/null || true
    wait "$simulator_pid" 2>/dev/null || true
    simulator_pid=""
}
