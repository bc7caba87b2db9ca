#!/usr/bin/env python3
"""Measures whole commands over one kernel table beside those of ip, BIRD and FRR, as far as these
are installed: in a network namespace of its own, all in turn in each round, their output into a
pipe. `rova` asks the kernel, a snapshot of it, and the database that its agent keeps. Needs root.

    scripts/bench --against [ROUTES]
    bench/compare.py [ROUTES] [ROUNDS]
"""

import contextlib
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BIN = Path(__file__).resolve().parents[1] / "build/release/bin"
ROVA = BIN / "rova"
NAME = f"rova-compare-{os.getpid()}"
ADDRESS, PREFIX = "10.1.2.3", "10.0.0.0/8"
IP = ["ip", "-n", NAME]
BIRD = "router id 192.0.2.1;\nprotocol device {}\nprotocol kernel { learn; ipv4 { import all; }; }\n"

# What each peer is asked, and what `rova` is.
QUESTIONS = {
    "nothing": ({"ip": ["ip", "-V"]}, ["--version"]),
    "text": ({"ip": [*IP, "route", "show"], "birdc": ["birdc", "show route"],
              "vtysh": ["vtysh", "show ip route"]},
             ["show", "ip", "route"]),
    "JSON": ({"ip": [*IP, "-j", "route", "show"], "vtysh": ["vtysh", "show ip route json"]},
             ["--format", "json", "show", "ip", "route"]),
    "summary": ({"birdc": ["birdc", "show route count"],
                 "vtysh": ["vtysh", "show ip route summary"]},
                ["show", "ip", "route", "summary"]),
    "one address": ({"ip": [*IP, "route", "get", ADDRESS],
                     "birdc": ["birdc", f"show route for {ADDRESS}"],
                     "vtysh": ["vtysh", f"show ip route {ADDRESS}"]},
                    ["show", "ip", "route", ADDRESS]),
    "longer prefixes": ({"ip": [*IP, "route", "show", "root", PREFIX],
                         "birdc": ["birdc", f"show route in {PREFIX}"],
                         "vtysh": ["vtysh", f"show ip route {PREFIX} longer-prefixes"]},
                        ["show", "ip", "route", PREFIX, "longer-prefixes"]),
}


def ip(*words, **options):
    subprocess.run(["ip", *words], check=True, text=True, **options)


@contextlib.contextmanager
def table(routes, more="proto dhcp"):
    """A network namespace with that many routes to one next hop; `more` says what else they are. No
    daemon here takes those of DHCP for its own."""
    ip("netns", "add", NAME)
    try:
        ip("-n", NAME, "link", "add", "eth1", "type", "veth", "peer", "name", "eth2")
        ip("-n", NAME, "link", "set", "eth1", "up")
        ip("-n", NAME, "link", "set", "eth2", "up")
        ip("-n", NAME, "address", "add", "192.0.2.1/24", "dev", "eth1")
        lines = (f"route add {10 + (i >> 16)}.{i >> 8 & 255}.{i & 255}.0/24 via 192.0.2.2 {more}\n"
                 for i in range(routes))
        ip("-n", NAME, "-batch", "-", input="".join(lines))
        yield
    finally:
        ip("netns", "delete", NAME)


@contextlib.contextmanager
def daemon(*command):
    """A daemon in the namespace; none where it is not installed."""
    if not Path(command[0]).exists():
        yield
        return
    with subprocess.Popen(["ip", "netns", "exec", NAME, *command]) as process:
        try:
            yield
        finally:
            process.terminate()


def asked(tool, words, folder):
    """The command line of a tool; those with a daemon ask it."""
    if tool == "birdc":
        return ["birdc", "-s", f"{folder}/bird.ctl", *words[1:]]
    if tool == "vtysh":
        return ["vtysh", "--vty_socket", folder, "-c", words[1]]
    return words


def output(command):
    try:
        return subprocess.run(command, capture_output=True, check=False).stdout
    except FileNotFoundError:
        return b""


def await_routes(tool, folder, routes):
    """Waits until a daemon has read the whole table; false when it does not in two minutes."""
    command = asked(tool, QUESTIONS["text"][0][tool], folder)
    for _ in range(120):
        if output(command).count(b".0/24") >= routes:
            return True
        time.sleep(1)
    return False


def seconds(command):
    """How long a command takes whose output is read and dropped. It succeeds."""
    start = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        while os.read(process.stdout.fileno(), 1 << 20):
            pass
    if process.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: ended with status {process.returncode}")
    return time.monotonic() - start


def compare(peers, sources, folder, rounds):
    """Prints the median of each, and what `rova` takes of each peer's."""
    for question, (asks, words) in QUESTIONS.items():
        commands = {peer: asked(peer, asks[peer], folder) for peer in peers if peer in asks}
        for source, state in sources.items() if question != "nothing" else [("rova", "kernel")]:
            commands[source] = [ROVA, "--state", state, *words]
        times = {name: [] for name in commands}
        for _ in range(rounds):
            for name, command in commands.items():
                times[name].append(seconds(command))
        medians = {name: statistics.median(values) for name, values in times.items()}
        print(f"{question}: " + ", ".join(f"{name} {median * 1e3:.1f} ms"
                                          for name, median in medians.items()))
        for name in commands:
            if name not in asks:
                print(f"    {name:9}" + "".join(f"  {medians[name] / medians[peer]:.3f} of {peer}"
                                                for peer in peers if peer in asks), flush=True)


@contextlib.contextmanager
def agent(state):
    """The agent of the namespace, once it has the whole table."""
    command = [BIN / "rova-agent", "--netns", NAME, "--state", state]
    with subprocess.Popen(command, stderr=subprocess.DEVNULL) as process:
        try:
            while b'"agent"' not in output([ROVA, "--format", "json", "--state", state, "show", "state"]):
                time.sleep(0.5)
            yield
        finally:
            process.terminate()


def main():
    routes, rounds = (int(word) for word in (sys.argv[1:] + ["200000", "5"][len(sys.argv) - 1:]))
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that nothing stays behind
    with tempfile.TemporaryDirectory() as folder, table(routes):
        os.chmod(folder, 0o777)  # zebra gives root up
        Path(folder, "bird.conf").write_text(BIRD)
        Path(folder, "zebra.conf").write_text("")
        sources = {"kernel": f"kernel:{NAME}", "snapshot": f"{folder}/state.json",
                   "database": f"{folder}/state.db"}
        subprocess.run([ROVA, "--state", sources["kernel"], "snapshot", "save", sources["snapshot"]],
                       check=True)
        with daemon("/usr/sbin/bird", "-f", "-c", f"{folder}/bird.conf", "-s", f"{folder}/bird.ctl"), \
             daemon("/usr/lib/frr/zebra", "-f", f"{folder}/zebra.conf",
                    "-i", f"{folder}/zebra.pid", "-z", f"{folder}/zserv.api",
                    "--vty_socket", folder, "-P", "0"), agent(sources["database"]):
            peers = ["ip", *(peer for peer in ("birdc", "vtysh")
                             if await_routes(peer, folder, routes))]
            print(f"{routes:,} routes, {rounds} rounds, medians")
            compare(peers, sources, folder, rounds)


if __name__ == "__main__":
    main()
