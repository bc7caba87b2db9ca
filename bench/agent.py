#!/usr/bin/env python3
"""Measures the agent beside a kernel table of many routes, in a network namespace of its own: its first
load in turn with `ip route show`, how soon a change shows, what it takes at rest, and how many changes
it keeps up with. Needs root; `scripts/bench --agent` builds it first.

    bench/agent.py [ROUTES] [--json]
"""

import contextlib
import json
import os
import signal
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import compare
from compare import NAME, ROVA

AGENT = ROVA.with_name("rova-agent")
LOADS = 3
TURNS, CHANGES = 4, 6  # turns without and with readers, and the changes that each waits for
READERS = 4
REPLACED = 50_000
REST_SECONDS = 10
# Those of no routing protocol would be configured routes too, which nobody has a million of.
PROTOCOL = "proto bgp"
SETTLES = 5  # seconds behind a load
PATIENCE = 60  # seconds, for whatever must come


def usage_of(command):
    """Seconds and peak memory of a command."""
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        sys.exit(f"bench/agent.py: {' '.join(map(str, command))}: status {process.returncode}")
    return time.monotonic() - start, usage.ru_maxrss * 1024


def first_load(folder):
    ours, theirs, peaks = [], [], []
    for turn in range(LOADS):
        theirs.append(usage_of(["ip", "-n", NAME, "route", "show"])[0])
        taken, peak = usage_of([AGENT, "--netns", NAME, "--state", f"{folder}/{turn}.db", "--once"])
        os.remove(f"{folder}/{turn}.db")
        ours.append(taken)
        peaks.append(peak)
    return {"agent": statistics.median(ours), "ip": statistics.median(theirs), "peakMemory": max(peaks)}


@contextlib.contextmanager
def running_agent(file):
    """An agent that has loaded."""
    log = file + ".log"
    with open(log, "w+", encoding="utf-8") as errors, \
         subprocess.Popen([AGENT, "--netns", NAME, "--state", file], stderr=errors) as process:
        try:
            await_that(lambda: "loaded" in Path(log).read_text(encoding="utf-8"))
            yield process
        finally:
            process.terminate()


def await_that(holds):
    """Seconds until it does."""
    start = time.monotonic()
    while not holds():
        if time.monotonic() - start > PATIENCE:
            sys.exit(f"bench/agent.py: nothing came in {PATIENCE} s")
        time.sleep(0.001)
    return time.monotonic() - start


def processor_seconds(process):
    return int(Path(f"/proc/{process.pid}/schedstat").read_text().split()[0]) / 1e9


@contextlib.contextmanager
def readers(file, count):
    loop = ["sh", "-c", f"while :; do {ROVA} --state {file} show ip route > /dev/null || exit 1; done"]
    processes = [subprocess.Popen(loop, start_new_session=True) for _ in range(count)]
    try:
        time.sleep(1 if count else 0)  # until they are under way
        yield
        if any(process.poll() is not None for process in processes):
            sys.exit("bench/agent.py: a reader ended")
    finally:
        for process in processes:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


class Database:
    """What a person sees of the file."""

    def __init__(self, file):
        self.connection = sqlite3.connect(f"file:{file}?mode=ro", uri=True)

    def number(self, statement, *values):
        row = self.connection.execute(statement, values).fetchone()
        return row[0] if row else None

    def fec_of(self, address):
        last = int.from_bytes(map(int, address.split(".")), "big") | 255
        return self.number("select fec from route4 where vrf = 0 and last = ? and rest = 8", last)


def time_to_visible(database, addresses):
    """Of that many routes that are added one by one."""
    times = []
    for address in addresses:
        time.sleep(0.15)  # so that none comes into the batch of the one before
        compare.ip("-n", NAME, "route", "add", f"{address}/24", "via", "192.0.2.2")
        times.append(await_that(lambda: database.fec_of(address)))  # pylint: disable=cell-var-from-loop
    return times


def visibility(file, database):
    """Without and with readers, in turn."""
    alone, among = [], []
    for turn in range(TURNS):
        for times, count in ((alone, 0), (among, READERS)):
            with readers(file, count):
                times += time_to_visible(database, [f"9.{turn}.{bool(count) * 100 + i}.0" for i in range(CHANGES)])
    return {"alone": statistics.median(alone), "withReaders": statistics.median(among)}


def churn(process, database, routes):
    """All routes of a range replaced by one batch of `ip`."""
    count = min(REPLACED, routes)
    prefixes = [f"{10 + (i >> 16)}.{i >> 8 & 255}.{i & 255}.0" for i in range(count)]
    before, used = database.fec_of(prefixes[-1]), processor_seconds(process)
    start = time.monotonic()
    compare.ip("-n", NAME, "-batch", "-",
               input="".join(f"route replace {prefix}/24 via 192.0.2.3 {PROTOCOL}\n" for prefix in prefixes))
    batch = time.monotonic() - start
    await_that(lambda: database.fec_of(prefixes[-1]) != before)
    now = database.fec_of(prefixes[-1])
    await_that(lambda: database.number("select count(*) from route4 where fec = ?", now) == count)
    taken = time.monotonic() - start
    return {"changes": count, "ip": count / batch, "agent": count / taken,
            "cpuPerChange": (processor_seconds(process) - used) / count}


def at_rest(process):
    time.sleep(SETTLES)
    used = processor_seconds(process)
    time.sleep(REST_SECONDS)
    return (processor_seconds(process) - used) / REST_SECONDS


def measure(routes):
    with tempfile.TemporaryDirectory() as folder, compare.table(routes, PROTOCOL):
        report = {"routes": routes, "load": first_load(folder)}
        file = f"{folder}/state.db"
        with running_agent(file) as process:
            database = Database(file)
            report["atRest"] = at_rest(process)
            report["visible"] = visibility(file, database)
            report["churn"] = churn(process, database, routes)
    return report


def print_report(report):
    load, visible, changes = report["load"], report["visible"], report["churn"]
    print(f"agent beside {report['routes']:,} IPv4 routes of the kernel, medians:")
    print(f"  first load: {load['agent']:.2f} s, {load['agent'] / load['ip']:.2f} of ip route show "
          f"({load['ip']:.2f} s); peak memory {load['peakMemory'] / 1e6:.0f} MB")
    print(f"  at rest: {report['atRest'] * 1e3:.2f} ms of processor time a second")
    print(f"  from a change to its being visible: {visible['alone'] * 1e3:.0f} ms; with {READERS} readers "
          f"that list in a loop {visible['withReaders'] * 1e3:.0f} ms, "
          f"{visible['withReaders'] / visible['alone']:.2f} of that")
    print(f"  {changes['changes']:,} routes replaced by ip -batch at {changes['ip']:,.0f} a second: all visible "
          f"at {changes['agent']:,.0f} a second, {changes['agent'] / changes['ip']:.2f} of that; "
          f"{changes['cpuPerChange'] * 1e6:.1f} us of the agent's processor time each")


def main():
    words = [word for word in sys.argv[1:] if word != "--json"]
    if os.geteuid() != 0:
        sys.exit("bench/agent.py: needs root, which makes network namespaces")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that nothing stays behind
    report = measure(int(words[0]) if words else 1_000_000)
    print(json.dumps(report)) if "--json" in sys.argv else print_report(report)


if __name__ == "__main__":
    main()
