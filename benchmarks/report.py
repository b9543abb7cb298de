#!/usr/bin/python3
"""Makes docs/performance.md of what ./bench has measured, and prints the figures that have bounds:
report.py FOLDER PAGE"""
import collections
import datetime
import json
import pathlib
import re
import statistics
import subprocess
import sys

FOLDER, PAGE = map(pathlib.Path, sys.argv[1:])
NATIVE, X64, X86, OTHERS = "native", "x64", "x32", "others"
SYSTEMS = {NATIVE: "Linux", X64: "Wine, 64-bit", X86: "Wine, 32-bit"}


class Figure:
    """One case: p50 and p99 of each round."""

    def __init__(self):
        self.p50s, self.p99s, self.unit = [], [], ""

    p50 = property(lambda self: statistics.median(self.p50s))
    p99 = property(lambda self: statistics.median(self.p99s))


def read_rounds():
    figures = collections.defaultdict(Figure)
    for line in (FOLDER / "results").read_text().splitlines():
        where, name, p50, p99, unit = line.split("\t")
        figure = figures[where, name]
        figure.p50s.append(float(p50))
        figure.p99s.append(float(p99))
        figure.unit = unit
    return figures


def read_core():
    """Median nanoseconds and allocations of each case."""
    cases = {}
    for entry in json.loads((FOLDER / "core.json").read_text())["benchmarks"]:
        if entry.get("aggregate_name") == "median" and "allocations" in entry:
            cases[entry["run_name"]] = (entry["cpu_time"], entry["allocations"])
    natural = lambda name: [int(part) if part.isdigit() else part for part in re.split(r"(\d+)", name)]
    return {name: cases[name] for name in sorted(cases, key=natural)}


FIGURES, CORE = read_rounds(), read_core()


def paired(where, name, other, combine):
    """The median over the rounds of what two cases of the same round give."""
    one, two = FIGURES[where, name].p50s, FIGURES[where, other].p50s
    return statistics.median(map(combine, one, two))


def ratio(where, name, other):
    return paired(where, name, other, lambda a, b: a / b)


def difference(where, name, other):
    return paired(where, name, other, lambda a, b: a - b)


def bounds():
    """Name, value and limit; the value may not be above the limit."""
    yield "read-over-bare-linux", ratio(NATIVE, "read", "bare"), 1.05
    yield "read-minus-bare-linux-us", difference(NATIVE, "read", "bare"), 3
    for where, name in ((X64, "wine64"), (X86, "wine32")):
        if (where, "read") not in FIGURES:
            continue
        yield f"read-over-bare-{name}", ratio(where, "read", "bare"), 1.10
        for member in ("Prefix", "MeasureMode"):
            yield f"{member}-table-{name}-ns", 1000 * FIGURES[where, f"{member}, function table"].p50, 100
            yield f"{member}-invoke-{name}-ns", 1000 * FIGURES[where, f"{member}, Invoke"].p50, 400
        yield f"late-bound-last-over-first-{name}", ratio(where, "ValueCodeRate, by name", "ResponseString, by name"), 1.1
        yield f"late-bound-late-over-early-read-{name}", ratio(where, "MeasureCodeRate, by name", "MeasureTsBitrate, by name"), 1.1
    for where, name in ((NATIVE, "linux"), (X64, "wine64"), (X86, "wine32")):
        if (where, "read") not in FIGURES:
            continue
        yield f"log-on-minus-off-{name}-us", difference(where, "read, log on", "read"), 10
        yield f"throughput-of-1-driver-over-8-{name}", ratio(where, "1 drivers", "8 drivers"), 1.0
        yield f"throughput-of-64-bare-over-drivers-{name}", ratio(where, "64 bare", "64 drivers"), 1.1
        yield f"memory-of-a-driver-64-over-8-{name}", ratio(where, "64 drivers, memory of one", "8 drivers, memory of one"), 1.1
    yield "tarn4x-get-simulated-ms", FIGURES[OTHERS, "tarn4x simulated"].p50 / 1000, 50
    yield "tarn4x-get-minus-read-ms", (FIGURES[OTHERS, "tarn4x"].p50 - FIGURES[NATIVE, "read"].p50) / 1000, 30
    yield "parse-bare-ns", CORE["ParseNumber/bare"][0], 150
    yield "parse-typical-ns", CORE["ParseNumber/typical"][0], 150
    yield "parse-allocations", max(CORE["ParseNumber/bare"][1], CORE["ParseNumber/typical"][1]), 0
    long, longest = CORE["ParseLongNumber/1024"][0] / 1024, CORE["ParseLongNumber/65536"][0] / 65536
    yield "parse-per-character-64K-over-1K", longest / long, 1.5


def first_line(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()[0]


def machine():
    with open("/proc/cpuinfo") as info:
        cpu = [line.split(":", 1)[1].strip() for line in info if line.startswith("model name")]
    yield "Machine", f"{len(cpu)} processors, {cpu[0]}"
    yield "System", first_line("uname", "-sr") + ", " + first_line("wine", "--version")
    compilers = ("g++", "x86_64-w64-mingw32-g++-posix", "i686-w64-mingw32-g++-posix")
    yield "Compilers", "; ".join(first_line(name, "--version") for name in compilers)
    packages = ("lxi-tools", "python3-pyvisa-py", "libbenchmark-dev")
    yield "Compared with", ", ".join(first_line("dpkg-query", "-W", "-f=${Package} ${Version}\n", name) for name in packages)
    yield "Date", datetime.date.today().isoformat()


def table(*rows):
    header, *body = [[str(cell) for cell in row] for row in rows]
    lines = [header, ["---"] + ["--:"] * (len(header) - 1), *body]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def microseconds(figure, digits=1):
    return f"{figure.p50:,.{digits}f} / {figure.p99:,.{digits}f}"


def compared(rows, digits=1):
    """Cases (text and name), each on every system that has it, as p50 / p99."""
    present = [where for where in SYSTEMS if any((where, name) in FIGURES for _, name in rows)]
    yield ["", *(SYSTEMS[where] for where in present)]
    for text, name in rows:
        yield [text, *(microseconds(FIGURES[where, name], digits) if (where, name) in FIGURES else ""
                       for where in present)]


def many():
    yield ["at a time", "", *(f"{text}: reads/s" for text in SYSTEMS.values()), *(f"{text}: KiB each" for text in SYSTEMS.values())]
    for count in (1, 8, 64):
        for kind in ("bare", "drivers"):
            name = f"{count} {kind}"
            yield [count, kind,
                   *(f"{FIGURES[where, name].p50:,.0f}" if (where, name) in FIGURES else "" for where in SYSTEMS),
                   *(f"{FIGURES[where, name + ', memory of one'].p50:,.0f}"
                     if (where, name + ", memory of one") in FIGURES else "" for where in SYSTEMS)]


CALLS = [(name, name) for name in (
    "Prefix, function table", "MeasureMode, function table", "Prefix, Invoke", "MeasureMode, Invoke",
    "ResponseString, Invoke", "Postfix, Invoke", "ValueCodeRate, Invoke", "name of the first member",
    "name of the last member", "ResponseString, by name", "ValueCodeRate, by name", "MeasureTsBitrate, by name",
    "MeasureCodeRate, by name", "message log entry")]


def page(checked):
    rounds = len(FIGURES[NATIVE, "bare"].p50s)
    held = [["figure", "value", "limit", ""], *(
        [name, f"{value:.3g}", f"{limit:g}", "held" if value <= limit else "**missed**"] for name, value, limit in checked)]
    notes = (pathlib.Path(__file__).parent / "notes.md").read_text()
    return f"""# Performance

This page is made by `./bench`, which measures anew.

{table(["", ""], *machine())}

## Method

- {rounds} rounds. In a round every program runs once, and within a program the cases that are compared take turns, 50
  samples each. A figure is the median over the rounds of each round's p50 (and p99); a ratio or difference is taken
  within each round first.
- The simulated receiver answers over the loopback interface. With one driver, receiver, client and Wine's server share
  one processor, so that a figure does not depend on where the system puts whom; with many drivers all processors are
  free.
- "Bare" is the same two exchanges (the error queue and the query) in C over a socket of the same kind, waiting with the
  call that the driver waits with (`poll`; `select` on Windows). Under Wine the driver can cost less, because it asks for
  the answer first and waits only when there is none, and Wine's waits are dear.
- Linux is the driver and host classes as they are; Wine is the registered component, called by its function table
  unless the table says otherwise.

## Bounds

{table(*held)}

A figure holds when it is at most its limit. For throughput that is what one driver achieves of what 8 do, and what 64
bare connections achieve in relation to 64 drivers: the machine's limit; for memory what one of 64 drivers takes in
relation to one of 8.

## One property read, microseconds (p50 / p99)

{table(*compared([("bare, in C", "bare"), ("driver", "read"), ("driver, message log on", "read, log on"),
                  ("driver, message log in a file", "read, log in a file")]))}

The same two exchanges as a user of other programs has them, on Linux:

{table(["", "p50 / p99"],
       ["pyvisa-py, two `query` calls", microseconds(FIGURES[OTHERS, "pyvisa-py"])],
       ["`lxi benchmark`, two of its requests", f"{FIGURES[OTHERS, 'lxi benchmark'].p50:,.1f}"],
       ["`lxi scpi`, two calls from a program", microseconds(FIGURES[OTHERS, "lxi scpi"])],
       ["`tarn4x get`, a call from a program, without the pauses", microseconds(FIGURES[OTHERS, "tarn4x"])],
       ["`tarn4x --simulated get`, the same", microseconds(FIGURES[OTHERS, "tarn4x simulated"])])}

A call of `tarn4x` counts from its start to its end. Beside the read it goes on-line and off-line (three commands) and
asks for the unit of the level, each with a look at the error queue.

## Calls without the instrument, microseconds (p50 / p99)

{table(*compared(CALLS, 3))}

ResponseString is the first member that needs no instrument (the tenth of all), Postfix one of the same kind further
down, ValueCodeRate the last member; it has an argument and no text. "By name" looks the name up each time, as a script
does. MeasureTsBitrate (third member) and MeasureCodeRate (far down) ask the instrument.

## Larger operations, microseconds (p50 / p99)

{table(*compared([("32,000-byte screen, bare", "bare screen"), ("32,000-byte screen, driver", "screen"),
                  ("creating a driver and letting it go", "create")]))}

## Inside the driver, nanoseconds

{table(["", "time", "allocations"], *([name, f"{time:,.0f}", f"{allocations:.0f}"]
                                      for name, (time, allocations) in CORE.items()))}

ParseNumber is `ParseResponse` and the number in front: of `-45.3`, and of `"<1.0E-8 (4/10)"`. ParseLongNumber has an
answer of so many digits. SplitValues takes 1,000 numbers from a list. Exchange is a query with its drain through the
command channel, without a wire.

## Many drivers

A thread, an apartment and a simulated receiver for each.

{table(*many())}

{notes}"""


CHECKED = list(bounds())
PAGE.write_text(page(CHECKED))
print(f"Written: {PAGE}")
for name, value, limit in CHECKED:
    print(f"bound {name} {value:.4g} {limit:g} {'held' if value <= limit else 'missed'}")
