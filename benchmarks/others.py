#!/usr/bin/python3
"""The same property read with tarn4x and with other programs, as their users would write it: others.py PORT TARN4X

PORT is that of a simulated receiver. A read is the error queue and one query. Prints as bench-dialogue does."""
import re
import subprocess
import sys
import time

import pyvisa

PORT, TARN4X = int(sys.argv[1]), sys.argv[2]
QUERIES = ["SYST:ERR?", "READ:RF:LEVEL?"]


def report(name, seconds):
    seconds.sort()
    middle, high = seconds[len(seconds) // 2], seconds[len(seconds) * 99 // 100]
    print(f"{name}\t{middle * 1e6:.4f}\t{high * 1e6:.4f}\tus", flush=True)


def timed(read, count):
    taken = []
    for _ in range(count):
        start = time.perf_counter()
        read()
        taken.append(time.perf_counter() - start)
    return taken


def with_pyvisa():
    manager = pyvisa.ResourceManager("@py")
    receiver = manager.open_resource(f"TCPIP::127.0.0.1::{PORT}::SOCKET", read_termination="\n", write_termination="\n")
    return timed(lambda: [receiver.query(query) for query in QUERIES], 500)


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def with_tarn4x(*receiver):
    return timed(lambda: output_of(TARN4X, *receiver, "get", "MeasureRfLevel"), 50)


def with_lxi():
    command = ["lxi", "scpi", "--address", "127.0.0.1", "--port", str(PORT), "--raw"]
    return timed(lambda: [output_of(*command, query) for query in QUERIES], 50)


def with_lxi_benchmark():
    """The program's own count of queries in a second, on one connection."""
    output = output_of("lxi", "benchmark", "--address", "127.0.0.1", "--port", str(PORT), "--raw", "--count", "1000")
    return float(re.search(r"Result: ([0-9.]+) requests/second", output).group(1))


report("pyvisa-py", with_pyvisa())
report("tarn4x", with_tarn4x("--host", f"127.0.0.1:{PORT}", "--no-waits"))
report("tarn4x simulated", with_tarn4x("--simulated"))
report("lxi scpi", with_lxi())
report("lxi benchmark", [len(QUERIES) / with_lxi_benchmark()])
