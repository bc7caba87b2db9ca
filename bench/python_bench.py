#!/usr/bin/env python3
"""Measure what the Python package costs: attributes, values, a listing as Python objects.

  PYTHONPATH=build/release/python /usr/bin/python3 bench/python_bench.py [ROUTES]

ROUTES is 1,000,000 unless given. The routes are those of bench_listing, which must be built.
Times are processor time, the lowest of several runs; no collection of garbage is left out.
"""

import gc
import json
import os
import subprocess
import sys
import tempfile
import time
import timeit
from pathlib import Path

import rova
from rova._rova import _model_of_text

GENERATOR = Path(__file__).resolve().parents[1] / "build" / "release" / "bin" / "bench_listing"
REPEATS = 3
MODEL = 2


def nanoseconds(statement, **names):
    """One execution of a statement, without the loop around it."""
    def lowest(text):
        timer = timeit.Timer(text, globals=names, timer=time.process_time)
        count = 200_000
        return min(timer.repeat(5, count)) / count * 1e9
    return lowest(statement) - lowest("pass")


def seconds(work, prepare=lambda: None):
    """One run of `work` on what `prepare` gives, which is not measured."""
    times = []
    for _ in range(REPEATS):
        prepared = prepare()
        gc.collect()
        start = time.process_time()
        result = work(prepared)
        times.append(time.process_time() - start)
        del result, prepared
    return min(times)


def without_collector(work):
    def run(prepared):
        gc.disable()
        try:
            return work(prepared)
        finally:
            gc.enable()
    return run


def calls(device):
    via = rova.CachedVia(hop="10.0.0.1", viaIndex=3)
    sorter = rova.RouteSorter(device.ip(), prefix="0.0.0.0/0")
    return [
        ("read a number, via.viaIndex", nanoseconds("via.viaIndex", via=via)),
        ("read a text, via.intfId", nanoseconds("via.intfId", via=via)),
        ("read an address, via.hop", nanoseconds("via.hop", via=via)),
        ("read a handle, sorter.tunnelFib", nanoseconds("sorter.tunnelFib", sorter=sorter)),
        ("write a number, via.viaIndex = 4", nanoseconds("via.viaIndex = 4", via=via)),
        ("build a value, CachedVia()", nanoseconds("make()", make=rova.CachedVia)),
        ("build a value, CachedVia(hop='10.0.0.1', viaIndex=3)",
         nanoseconds("make(hop='10.0.0.1', viaIndex=3)", make=rova.CachedVia)),
        ("call a method, sorter.legend()", nanoseconds("sorter.legend()", sorter=sorter)),
    ]


def render(sorter, path):
    with open(path, "wb") as file:
        sorter.printRoutes(file.fileno(), MODEL)


def listings(device, folder):
    def sorter():
        return rova.RouteSorter(device.ip())

    path = Path(folder) / "listing.json"
    render(sorter(), path)
    fragment = path.read_bytes()
    document = b"{" + fragment + b"}"
    assert _model_of_text(fragment) == json.loads(document)
    return len(document), [
        ("render to /dev/null", seconds(lambda made: render(made, os.devnull), sorter)),
        ("model()", seconds(lambda made: made.model(), sorter)),
        ("the reading in it", seconds(lambda _: _model_of_text(fragment))),
        ("json.loads of the same text", seconds(lambda _: json.loads(document))),
        ("the same without the collector",
         seconds(without_collector(lambda _: json.loads(document)))),
    ]


def main(routes):
    with tempfile.TemporaryDirectory() as folder:
        snapshot = Path(folder) / "state.json"
        with snapshot.open("wb") as file:
            subprocess.run([GENERATOR, "snapshot", "--routes", str(routes)], stdout=file,
                           check=True)
        device = rova.open(snapshot)
        print("ns of processor time")
        for name, cost in calls(device):
            print(f"{cost:10.0f}  {name}")
        size, costs = listings(device, folder)
        print(f"\n{routes:,} routes, {size / 1e6:.0f} MB of JSON: seconds of processor time")
        for name, cost in costs:
            print(f"{cost:10.2f}  {name}")


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000)
