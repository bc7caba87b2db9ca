#!/usr/bin/env python3
"""Measures whole commands over one kernel table beside those of ip, BIRD and FRR, as far as these
are installed: in a network namespace of its own, each against `ip` in the same round. Needs root.

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

ROVA = Path(__file__).resolve().parents[1] / "build/release/bin/rova"
NAME = f"rova-compare-{os.getpid()}"
ADDRESS = "10.1.2.3"
IP = ["ip", "-n", NAME]
OWN = [ROVA, "--state", f"kernel:{NAME}"]
BIRD = "router id 192.0.2.1;\nprotocol device {}\nprotocol kernel { learn; ipv4 { import all; }; }\n"

DISPLAYS = {
    "listing, text": {"ip": [*IP, "route", "show"], "rova": [*OWN, "show", "ip", "route"],
                      "birdc": ["birdc", "show", "route"], "vtysh": ["vtysh", "show ip route"]},
    "listing, JSON": {"ip": [*IP, "-j", "route", "show"],
                      "rova": [*OWN, "--format", "json", "show", "ip", "route"],
                      "vtysh": ["vtysh", "show ip route json"]},
    "one address": {"ip": [*IP, "route", "get", ADDRESS],
                    "rova": [*OWN, "show", "ip", "route", ADDRESS],
                    "birdc": ["birdc", f"show route for {ADDRESS}"],
                    "vtysh": ["vtysh", f"show ip route {ADDRESS}"]},
}


def ip(*words, **options):
    subprocess.run(["ip", *words], check=True, text=True, **options)


@contextlib.contextmanager
def table(routes, more=""):
    """A network namespace with that many routes to one next hop; `more` says what else they are."""
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
    """Waits until a daemon has read the whole table; false when it does not in a minute."""
    command = asked(tool, DISPLAYS["listing, text"][tool], folder)
    for _ in range(60):
        if output(command).count(b".0/24") >= routes:
            return True
        time.sleep(1)
    return False


def seconds(command):
    start = time.monotonic()
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    return time.monotonic() - start


def compare(tools, folder, rounds):
    for display, rows in DISPLAYS.items():
        times = {tool: [] for tool in tools if tool in rows}
        for _ in range(rounds):
            for tool in times:
                times[tool].append(seconds(asked(tool, rows[tool], folder)))
        medians = {tool: statistics.median(values) for tool, values in times.items()}
        print(f"{display:15}" + "".join(f"  {tool} {median:.3f} s, {median / medians['ip']:.2f} of ip"
                                        for tool, median in medians.items()))


def main():
    routes, rounds = (int(word) for word in (sys.argv[1:] + ["200000", "5"][len(sys.argv) - 1:]))
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that nothing stays behind
    with tempfile.TemporaryDirectory() as folder, table(routes):
        os.chmod(folder, 0o777)  # zebra gives root up
        Path(folder, "bird.conf").write_text(BIRD)
        Path(folder, "zebra.conf").write_text("")
        with daemon("/usr/sbin/bird", "-f", "-c", f"{folder}/bird.conf", "-s", f"{folder}/bird.ctl"), \
             daemon("/usr/lib/frr/zebra", "-f", f"{folder}/zebra.conf",
                    "-i", f"{folder}/zebra.pid", "-z", f"{folder}/zserv.api",
                    "--vty_socket", folder, "-P", "0"):
            tools = ["ip", "rova", *(tool for tool in ("birdc", "vtysh")
                                     if await_routes(tool, folder, routes))]
            compare(tools, folder, rounds)


if __name__ == "__main__":
    main()
