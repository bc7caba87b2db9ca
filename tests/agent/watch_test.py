#!/usr/bin/env python3
"""Who watches: the first listing with all changes applied is the last listing, whatever happens between
them. ROVA_AGENT_SEED makes it another run ("random" any), ROVA_AGENT_OPERATIONS a longer one.
ROVA_WATCH_RATE (changes a second, with ROVA_WATCH_SECONDS) has a writer without a kernel change routes
as fast."""

import json
import os
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
# pylint: disable=wrong-import-position
from random_operations import Operations
from support import PATIENCE, ROVA, AgentTest, check_model, run

GIVEN = os.environ.get("ROVA_AGENT_SEED", "1")
SEED = random.randrange(1 << 32) if GIVEN == "random" else int(GIVEN)
COUNT = int(os.environ.get("ROVA_AGENT_OPERATIONS", 120))
RATE = int(os.environ.get("ROVA_WATCH_RATE", 0))
HINT = f"ROVA_AGENT_SEED={SEED}"
CHECKED_LINES = 500  # of a watcher, against the schema

QUERIES = ["ip route vrf all", "ip route vrf all detail", "ip route 20.4.0.0/14 longer-prefixes",
           "ip route 20.5.0.1", "ip route bgp", "ip route interface eth1", "ip route vrf table-70",
           "ipv6 route vrf all", "ipv6 route fd20:5::1 detail", "ipv6 route static"]


class Copy:
    """The routes of a listing by their VRFs, kept current by the lines of a watcher."""

    def __init__(self):
        self.vrfs, self.seq, self.gaps, self.ops = {}, None, 0, []
        self.wrong = ""

    def apply(self, line):
        change = json.loads(line)
        if len(self.ops) < CHECKED_LINES:
            self.check(change)
        op, vrf = change["op"], self.vrfs.get(change.get("vrf"), {})
        self.seq = change["seq"]
        self.ops.append(op)
        if op == "gap":
            self.gaps += 1
            self.vrfs = {}
        elif op == "listing":
            self.vrfs[change["vrf"]] = change["routes"]
        elif op == "removed":
            vrf.pop(change["prefix"], None)
        else:
            self.vrfs.setdefault(change["vrf"], {})[change["prefix"]] = change["route"]

    def check(self, change):
        """What is wrong is told by `routes`: this is in a thread of its own."""
        try:
            check_model(change)
        except AssertionError as error:
            self.wrong = self.wrong or str(error)

    def routes(self):
        assert not self.wrong, self.wrong
        return {vrf: routes for vrf, routes in self.vrfs.items() if routes}


class Watcher:
    """A running `rova watch`, whose lines go into a copy."""

    def __init__(self, state, query, *words, copy=None, reads=True):
        self.query, self.copy = query, copy or Copy()
        self.errors = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([ROVA, "--state", state, "--format", "json", "watch", *query.split(),
                                         *words], stdout=subprocess.PIPE, stderr=self.errors)
        self.thread = threading.Thread(target=self.read, daemon=True)
        if reads:
            self.thread.start()

    def read(self):
        for line in self.process.stdout:
            if line.endswith(b"\n"):  # what was killed may leave half a line
                self.copy.apply(line)

    def end(self, number=signal.SIGINT):
        """Its status; what it has written is read then."""
        self.process.send_signal(number)
        status = self.process.wait(PATIENCE)
        if self.thread.is_alive():
            self.thread.join()
        self.process.stdout.close()
        return status

    def told(self):
        self.errors.seek(0)
        return self.errors.read()


def listing(state, query):
    """The routes that `show` has, and the default route at its place among them, where text puts it ahead."""
    result = run(ROVA, "--state", state, "--format", "json", "show", *query.split())
    if result.returncode != 0:
        return {}  # the VRF is gone
    vrfs = json.loads(result.stdout)["vrfs"]
    return {name: vrf["routes"] for name, vrf in vrfs.items() if vrf["routes"]}


class Watched(AgentTest):
    """A namespace with watchers."""

    def setUp(self):
        print(HINT, file=sys.stderr)
        super().setUp()
        self.operations = Operations(SEED)
        self.watchers = []
        self.addCleanup(self.kill_watchers)

    def kill_watchers(self):
        for watcher in self.watchers:
            if watcher.process.poll() is None:
                watcher.end(signal.SIGKILL)
            watcher.process.stdout.close()
            watcher.errors.close()

    def watch(self, query, *words, state=None, **options):
        self.watchers.append(Watcher(state or self.file, query, *words, **options))
        return self.watchers[-1]

    def change(self, count, *kinds):
        for line in self.operations.some(count, *kinds):
            self.netns.ip(line)

    def assert_follows(self, *watchers):
        """The copy of each comes to be the listing of the kernel, which rests meanwhile."""
        for watcher in watchers:
            end = time.monotonic() + PATIENCE
            expected = listing(self.kernel(), watcher.query)
            while watcher.copy.routes() != expected and time.monotonic() < end:
                time.sleep(0.02)
            self.assertEqual(lines_of(watcher.copy.routes()) ^ lines_of(expected), set(),
                             f"{watcher.query}; {HINT}; {watcher.told()}")

    def wait_for_listing(self, *watchers):
        for watcher in watchers:
            self.wait_until(lambda w=watcher: w.copy.seq is not None, PATIENCE)

    def routes(self, first, count, hop="10.1.0.2 dev eth1", verb="replace"):
        self.netns.batch([f"route {verb} 30.{first}.{i >> 8}.{i & 255}/32 via {hop} proto bgp"
                          for i in range(count)])


def lines_of(vrfs):
    return {f"{vrf} {prefix} {route}" for vrf, routes in vrfs.items() for prefix, route in routes.items()}


class WatchTest(Watched):
    """Beside an agent."""

    def test_changes_make_the_last_listing(self):
        self.netns.ip("route add 20.0.0.0/8 via 10.1.0.2 table 70")
        self.start()
        for query in QUERIES:
            self.watch(query)
        self.wait_for_listing(*self.watchers)
        for _ in range(4):
            self.change(COUNT // 4)
            self.assert_current(HINT)
            self.assert_follows(*self.watchers)
        for watcher in self.watchers:
            self.assertEqual((watcher.end(), watcher.copy.gaps), (130, 0), watcher.query)

    def test_restarts_miss_nothing(self):
        """Killed at any time, and resumed behind the last line that came."""
        pick = random.Random(SEED)
        self.start()
        for query in ("ip route vrf all", "ip route bgp", "ip route 20.5.0.1"):
            watcher = self.watch(query)
            self.wait_for_listing(watcher)
            for _ in range(6):
                self.change(COUNT // 8, self.operations.route)
                self.routes(pick.randrange(3), 300, f"10.1.0.{pick.randrange(2, 9)} dev eth1")
                time.sleep(pick.random() / 5)
                watcher.end(signal.SIGKILL)
                self.change(COUNT // 8, self.operations.route)
                watcher = self.watch(query, "--from", str(watcher.copy.seq), copy=watcher.copy)
            self.assert_current(HINT)
            self.assert_follows(watcher)

    def test_what_resuming_tells(self):
        self.routes(0, 2)
        self.start()
        watcher = self.watch("ip route bgp")
        self.wait_for_listing(watcher)
        watcher.end()
        self.netns.batch(["route add 40.0.0.0/8 via 10.1.0.2 proto bgp", "route add 41.0.0.0/8 via 10.1.0.2 proto bgp",
                          "route del 41.0.0.0/8", "route del 30.0.0.0/32", "route change 30.0.0.1 via 10.1.0.3 proto bgp",
                          "route add 42.0.0.0/8 via 10.1.0.2 proto static"])
        self.assert_current(HINT)
        later = self.watch("ip route bgp", "--from", str(watcher.copy.seq), copy=watcher.copy)
        self.assert_follows(later)
        self.assertEqual(sorted(later.copy.ops[1:]), ["added", "changed", "removed"])

    def test_a_log_that_is_too_short_is_a_gap(self):
        self.start()
        watcher = self.watch("ip route")
        self.wait_for_listing(watcher)
        watcher.end()
        self.routes(0, 10)
        self.assert_current(HINT)
        run("sqlite3", self.file, "delete from change_log where seq <= (select max(seq) - 5 from change_log)")
        for since in (watcher.copy.seq, 0, watcher.copy.seq + 1000):
            later = self.watch("ip route", "--from", str(since))
            self.assert_follows(later)
            self.assertEqual(later.copy.ops, ["gap", "listing"])

    def test_from_now(self):
        self.start()
        watcher = self.watch("ip route", "--from", "now")
        hops = iter(range(2, 250))
        # Until it has begun.
        self.wait_until(lambda: watcher.copy.ops or not self.netns.ip(
            f"route replace 40.0.0.0/8 via 10.1.0.{next(hops)}"))
        self.assertIn(watcher.copy.ops[0], ("added", "changed"))

    def test_an_agent_that_starts_again(self):
        """With the file as it was, and with another one."""
        self.start()
        watcher = self.watch("ip route")
        self.wait_for_listing(watcher)
        self.kill()
        self.routes(0, 10)
        self.start()
        self.assert_follows(watcher)
        self.assertEqual(watcher.copy.gaps, 0)
        self.kill()
        for suffix in ("", "-wal", "-shm"):
            os.remove(self.file + suffix)
        self.routes(1, 10)
        self.start()
        self.assert_follows(watcher)
        self.assertEqual(watcher.copy.gaps, 1)

    def test_a_slow_reader(self):
        """Holds nobody back, and takes no more memory than another."""
        self.start()
        quick, slow = self.watch("ip route"), self.watch("ip route", reads=False)
        self.wait_for_listing(quick)
        for turn in range(6):
            self.routes(0, 5000, f"10.1.0.{turn + 2} dev eth1")
            self.assert_follows(quick)
        before = self.memory(slow)
        for turn in range(6):
            self.routes(0, 5000, f"10.1.0.{turn + 2} dev eth1")
            self.assert_follows(quick)
        self.assertLess(self.memory(slow), before + 1000)
        slow.thread.start()
        self.assert_follows(slow)
        self.assertLess(len(slow.copy.ops), len(quick.copy.ops))

    def memory(self, watcher):
        """In KiB."""
        status = Path(f"/proc/{watcher.process.pid}/status").read_text(encoding="ascii")
        return int(status.split("VmRSS:")[1].split()[0])

    def test_ends(self):
        """By an interrupt while it waits and while nobody reads, and when its reader goes away."""
        self.routes(0, 5000)
        self.start()
        waiting, blocked, left = (self.watch("ip route", reads=reads) for reads in (True, False, False))
        self.wait_for_listing(waiting)
        self.assertEqual((waiting.end(), blocked.end()), (130, 130))
        left.process.stdout.close()
        self.assertEqual((left.process.wait(PATIENCE), left.told()), (0, ""))

    def test_a_reader_that_goes_while_nothing_happens(self):
        self.start()
        watcher = self.watch("ip route", "--from", "now", reads=False)
        time.sleep(0.5)
        watcher.process.stdout.close()
        self.assertEqual((watcher.process.wait(PATIENCE), watcher.told()), (0, ""))

    def test_an_agent_that_goes_is_told(self):
        self.start()
        watcher = self.watch("ip route")
        self.wait_for_listing(watcher)
        self.kill()
        self.wait_until(lambda: "its agent is gone" in watcher.told(), PATIENCE)

    def test_changes_show_soon(self):
        self.start()
        watcher = self.watch("ip route")
        self.wait_for_listing(watcher)
        times = []
        for i in range(20):
            self.netns.ip(f"route add 31.0.{i}.0/24 via 10.1.0.2")
            begin, lines = time.monotonic(), len(watcher.copy.ops)
            self.wait_until(lambda: len(watcher.copy.ops) > lines)  # pylint: disable=cell-var-from-loop
            times.append(time.monotonic() - begin)
        # 0.1 s of gathering, and some milliseconds; a machine that does much else at once adds its own.
        print(f"median {sorted(times)[10]:.3f} s", file=sys.stderr)
        self.assertLess(sorted(times)[10], 0.5)

    def test_text(self):
        self.netns.ip("route add 40.0.0.0/8 via 10.1.0.2 proto bgp")
        self.start()
        process = subprocess.Popen([ROVA, "--state", self.file, "watch", "ip", "route", "bgp"],
                                   stdout=subprocess.PIPE, text=True)
        head = []
        while not head or "40.0.0.0" not in head[-1]:
            head.append(process.stdout.readline())
        route = head[-1][:-1]
        self.assertEqual((head[0], process.stdout.readline()), ("VRF: default\n", "\n"))
        for line, expected in [
                ("route add 41.0.0.0/8 via 10.1.0.2 proto bgp", "+ " + route.replace("40.", "41.")),
                ("route replace 40.0.0.0/8 via 10.1.0.3 proto bgp", "~ " + route.replace("0.2", "0.3")),
                ("route del 41.0.0.0/8", "- 41.0.0.0/8")]:
            self.netns.ip(line)
            self.assertEqual(process.stdout.readline()[:-1], expected)
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(PATIENCE), 130)
        process.stdout.close()


class KernelTest(Watched):
    """Without an agent."""

    def folders(self):
        return set(Path(tempfile.gettempdir()).glob("rova-watch-*"))

    def test_a_kernel(self):
        before = self.folders()
        self.routes(0, 10)
        watchers = [self.watch(query, state=self.kernel()) for query in ("ip route vrf all", "ipv6 route")]
        self.wait_for_listing(*watchers)
        self.change(COUNT // 2)
        self.assert_follows(*watchers)
        self.assertEqual(len(self.folders() - before), 2)
        self.assertEqual(watchers[0].end(), 130)
        watchers[1].end(signal.SIGKILL)
        self.wait_until(lambda: self.folders() == before)

    def test_a_namespace_that_goes(self):
        watcher = self.watch("ip route", state=self.kernel())
        self.wait_for_listing(watcher)
        self.netns.remove()
        self.assertEqual(watcher.process.wait(PATIENCE), 1)
        self.assertEqual(watcher.told(), f'rova: network namespace "{self.netns.name}" is gone\n')


@unittest.skipUnless(RATE, "ROVA_WATCH_RATE is not set")
class RateTest(unittest.TestCase):
    """A writer without a kernel, which changes routes as fast as it is asked to."""

    def test_changes_at_a_rate(self):
        seconds = int(os.environ.get("ROVA_WATCH_SECONDS", 10))
        with tempfile.TemporaryDirectory() as folder:
            file = f"{folder}/state.db"
            writer = subprocess.Popen(
                [Path(ROVA).with_name("test_sources"), "--gtest_filter=FastWriter.*"], text=True,
                stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                env={**os.environ, "ROVA_FAST_WRITER": f"{file} {RATE} {seconds}"})
            while writer.stdout.readline() != "ready\n":
                self.assertIsNone(writer.poll())
            watcher = Watcher(file, "ip route", "--older-nexthop-groups")
            while watcher.copy.seq is None:
                time.sleep(0.05)
            begin = time.monotonic()
            out, _ = writer.communicate("\n")
            written = time.monotonic() - begin
            expected = listing(file, "ip route")
            while watcher.copy.routes() != expected and time.monotonic() < begin + seconds + PATIENCE:
                time.sleep(0.05)
            behind = time.monotonic() - begin - written
            usage = Path(f"/proc/{watcher.process.pid}/schedstat").read_text(encoding="ascii").split()[0]
            print(f"{out.splitlines()[0]}; {written:.2f} s; behind the end {behind:.2f} s; "
                  f"{len(watcher.copy.ops)} lines; {int(usage) / 1e9:.2f} s of processor", file=sys.stderr)
            self.assertEqual(watcher.copy.routes(), expected)
            self.assertGreater(len(watcher.copy.ops), RATE)
            self.assertEqual((watcher.end(), watcher.copy.gaps), (130, 0))
            watcher.errors.close()


class RefusalTest(unittest.TestCase):
    """What cannot be watched."""

    def test_messages(self):
        with tempfile.NamedTemporaryFile("w", suffix=".json") as snapshot:
            snapshot.write('{"rovaSnapshot": 1}')
            snapshot.flush()
            refusal = (": a snapshot does not change: expected a state database, kernel or kernel:NAME; "
                       "rova snapshot load makes a database of a snapshot\n")
            for words, status, message in [
                    (["--state", snapshot.name, "watch", "ip", "route"], 1, f"rova: {snapshot.name}{refusal}"),
                    (["--state", "-", "watch", "ip", "route"], 1, f"rova: standard input{refusal}"),
                    (["--state", "/no/such.db", "watch", "ip", "route"], 1,
                     "rova: /no/such.db: cannot be read: No such file or directory\n"),
                    (["--state", "kernel:", "watch", "ip", "route"], 1,
                     'rova: "kernel:" lacks the name of a network namespace: expected kernel:NAME, or '
                     "kernel for this machine's own\n"),
                    (["--from", "then", "watch", "ip", "route"], 2,
                     'option --from takes now, or the number of a change, found "then"')]:
                result = run(ROVA, *words)
                self.assertEqual((result.returncode, result.stdout), (status, ""), words)
                self.assertIn(message, result.stderr)


if __name__ == "__main__":
    sys.exit(unittest.main())
