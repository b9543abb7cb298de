#!/usr/bin/python3
"""The same property read with other programs, as their users would write it: others.py PORT

PORT is that of a simulated receiver. A read is the error queue and one query. Prints as bench-dialogue does."""
import re
import subprocess
import sys
import time

import pyvisa

PORT = int(sys.argv[1])
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


def with_lxi(query):
    command = ["lxi", "scpi", "--address", "127.0.0.1", "--port", str(PORT), "--raw", query]
    return subprocess.run(command, check=True, capture_output=True).stdout


def with_lxi_benchmark():
    """The program's own count of queries in a second, on one connection."""
    command = ["lxi", "benchmark", "--address", "127.0.0.1", "--port", str(PORT), "--raw", "--count", "1000"]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return float(re.search(r"Result: ([0-9.]+) requests/second", output).group(1))


report("pyvisa-py", with_pyvisa())
report("lxi scpi", timed(lambda: [with_lxi(query) for query in QUERIES], 50))
report("lxi benchmark", [len(QUERIES) / with_lxi_benchmark()])
