#!/usr/bin/env python3
"""State databases: displays are those of the snapshot, and what writes where."""

import fcntl
import json
import os
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

from support import (ROOT, STATE, CommandTest, all_scenarios, program, rova, run_program,
                     snapshot_file)

REFUSED = ("no word", "no FEC, which", "a FEC that is in no table, which", "no known kind")


def load(snapshot, database):
    return rova("snapshot", "load", str(snapshot), "--into", str(database), state="kernel")


class DatabaseTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.path = self.folder / "state.db"

    def test_displays_are_those_of_the_snapshot(self):
        databases, shown = {}, 0
        for scenario in all_scenarios():
            if scenario.words[0] in ("static", "clear"):
                continue # they change the snapshot
            snapshot = scenario.snapshot
            if snapshot not in databases:
                databases[snapshot] = self.folder / f"{len(databases)}.db"
                result = load(snapshot, databases[snapshot])
                if result.returncode != 0:
                    self.assertTrue(any(text in result.stderr for text in REFUSED), result.stderr)
                    databases[snapshot] = None
            if not databases[snapshot]:
                continue
            for options in ([], ["--format", "json"]):
                with self.subTest(scenario.name, options=options):
                    here = run_program(["--state", databases[snapshot], *options, *scenario.words])
                    there = scenario.run(*options)
                    name = str(snapshot).encode(), str(databases[snapshot]).encode()
                    self.assertEqual(here.returncode, there.returncode, here.stderr)
                    self.assertEqual(here.stderr, there.stderr.replace(*name))
                    if b" seconds." not in there.stdout:
                        self.assertEqual(here.stdout, there.stdout)
                    shown += 1
        self.assertGreater(shown, 200)

    def test_snapshots_come_back_byte_for_byte(self):
        self.assert_ends(load(STATE, self.path), 0, "")
        before, after = (rova("snapshot", "save", "-", state=state) for state in (STATE, self.path))
        self.assert_ends(after, 0, "")
        self.assertEqual(after.stdout, before.stdout)

    def test_a_person_can_ask_it(self):
        load(STATE, self.path)
        connection = sqlite3.connect(f"file:{self.path}?mode=ro", uri=True)
        self.addCleanup(connection.close)
        rows = connection.execute("select vrf, prefix, type, nexthops, interfaces, hardware "
                                  "from ip_route union all select vrf, prefix, type, nexthops, "
                                  "interfaces, hardware from ipv6_route").fetchall()
        state = json.loads((ROOT / STATE).read_text())
        listed = {(vrf, prefix, route["type"])
                  for vrf, fields in state["vrfs"].items()
                  for table in ("routingStatus", "routing6Status")
                  for prefix, route in fields.get(table, {}).items()}
        self.assertEqual({row[:3] for row in rows}, listed)
        hops = {via["hop"] for table in ("forwardingStatus", "forwarding6Status")
                for fec in state.get(table, {}).values() for via in fec.get("vias", []) if "hop" in via}
        self.assertTrue(all(hop in hops for row in rows for hop in row[3].split()
                            if hop not in ("0.0.0.0", "::")), rows)

    def test_what_is_shown_of_it(self):
        load(STATE, self.path)
        text = rova("show", "state", state=self.path)
        self.assert_succeeds(text)
        self.assertIn(f"Source              {self.path}\nKind                database\n", text.stdout)
        model = json.loads(rova("--format", "json", "show", "state", state=self.path).stdout)
        self.assertEqual(model["of"], STATE)
        self.assertEqual(model["tables"]["route4"]["rows"], 2)
        self.assertNotIn("agent", model)
        self.assertLess(model["changedAge"], 60)
        connection = sqlite3.connect(self.path)
        now = time.time()
        for key, value in (("agent", 4711), ("agent_since", (now - 86400) * 1000), ("reason", "start"),
                           ("synchronised", (now - 100) * 1000), ("changed", (now + 50) * 1000)):
            connection.execute("insert or replace into meta values (?, ?)",
                               (key, value if isinstance(value, str) else int(value)))
        connection.commit()
        connection.close()
        model = json.loads(rova("--format", "json", "show", "state", state=self.path).stdout)
        self.assertIn(model["synchronisedAge"] - 100, range(10))
        self.assertIn(model["agentSinceAge"] - 86400, range(10))
        self.assertEqual(model["changedAge"], 0, "a clock that was set back")
        text = rova("show", "state", state=self.path).stdout
        self.assertRegex(text, r"\nLast read anew      20[-0-9T:]*Z, 10\d s ago\nWhy                 start\n")
        self.assertEqual(json.loads(rova("--format", "json", "show", "state").stdout)["kind"],
                         "snapshot")

    def test_what_a_change_of_it_meets(self):
        load(STATE, self.path)
        before = self.path.read_bytes()
        refused = f"rova: {self.path}: is a state database, which its agent alone changes; --into " \
                  "names the file of a snapshot\n"
        lines = self.folder / "lines"
        lines.write_text("ip route 10.99.0.0/16 192.0.2.1\n")
        for words in (["static", "load", str(lines)], ["clear", "static", "interface", "Ethernet1"],
                      ["snapshot", "save", str(self.path)]):
            with self.subTest(words):
                self.assert_ends(rova(*words, state=self.path), 1, refused)
        into = self.folder / "into.json"
        self.assertEqual(rova("static", "load", str(lines), "--into", str(into),
                              state=self.path).returncode, 0)
        self.assertIn("10.99.0.0/16", into.read_text())
        self.assertEqual(self.path.read_bytes(), before)
        self.assertEqual(rova("snapshot", "load", STATE).returncode, 2, "without --into")
        other = self.folder / "other.db"
        sqlite3.connect(other).execute("create table mine(x)")
        self.assert_ends(load(STATE, other), 1,
                         f"rova: {other}: found another database, expected one of rova-agent\n")

    def test_a_writer_keeps_others_out(self):
        load(STATE, self.path)
        with open(f"{self.path}-lock", "r+", encoding="ascii") as lock:
            fcntl.lockf(lock, fcntl.LOCK_EX)
            self.assert_ends(load(STATE, self.path), 1,
                             f"rova: {self.path}: process {os.getpid()} writes it; stop that one "
                             "first\n")
            self.assert_succeeds(rova("show", "ip", "route", state=self.path))

    @unittest.skipUnless(os.geteuid() == 0, "becoming another user needs root")
    def test_a_reader_who_may_not_write(self):
        load(STATE, self.path)
        self.folder.chmod(0o755)

        def listed():
            return subprocess.run(["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                                   program(), "--state", self.path, "show", "ip", "route"],
                                  capture_output=True, text=True, check=False)
        if listed().returncode != 0:
            self.skipTest("other users do not reach the program")
        # A writer that is killed leaves its log, and the index that readers need of it.
        subprocess.run([sys.executable, "-c", "import os, sqlite3\n"
                        f"connection = sqlite3.connect({str(self.path)!r}, isolation_level=None)\n"
                        "connection.execute('pragma journal_mode = wal')\n"
                        "connection.execute('update route4 set metric = 9')\n"
                        "os._exit(0)"], check=True)
        self.assertIn("/9]", listed().stdout)
        Path(f"{self.path}-shm").unlink()
        self.assert_ends(listed(), 1, f"rova: {self.path}-shm: cannot be read: No such file or directory; "
                         "a reader that may not write here needs it, and its writer makes it\n")
        self.path.chmod(0o600)
        self.assert_ends(listed(), 1, f"rova: {self.path}: cannot be read: Permission denied\n")

    def test_a_state_whose_agent_is_gone_says_so(self):
        load(STATE, self.path)
        connection = sqlite3.connect(self.path)
        connection.execute("update meta set value = 4711 where key = 'agent'")
        connection.execute("update meta set value = 1700000000000 where key = 'changed'")
        connection.commit()
        connection.close()
        os.utime(f"{self.path}-lock", (1700000001, 1700000001))
        result = rova("show", "ip", "route", state=self.path)
        self.assertRegex(result.stderr, rf"^rova: {self.path}: its agent is gone; the state is that "
                                        r"of 2023-11-14T22:13:21Z, \d+ s ago\n$")
        model = json.loads(rova("--format", "json", "show", "ip", "route", state=self.path).stdout)
        self.assertEqual((model["state"]["agent"], model["state"]["currentAt"]),
                         ("gone", "2023-11-14T22:13:21Z"))
        self.assertGreater(model["state"]["age"], 10 ** 7)
        with open(f"{self.path}-lock", "r+", encoding="ascii") as lock:
            fcntl.lockf(lock, fcntl.LOCK_EX)
            self.assertIn("its agent is silent;", rova("show", "ip", "route", state=self.path).stderr)
            os.utime(f"{self.path}-lock")
            self.assert_succeeds(rova("show", "ip", "route", state=self.path))

    def test_a_listing_is_one_state_while_others_write(self):
        """Two routes that change together are never seen apart. ROVA_CHURN_SECONDS asks for more."""
        routes = {f"10.0.{i}.0/24": {"type": "static", "fec": "0.1"} for i in range(200)}
        snapshot = snapshot_file(self.folder, {"routingStatus": routes},
                                 forwardingStatus={"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}})
        load(snapshot, self.path)
        ended = threading.Event()

        def change():
            connection = sqlite3.connect(self.path, isolation_level=None)
            connection.execute("pragma journal_mode = wal")
            metric = 0
            while not ended.is_set():
                metric += 1
                # The first and the last route of a listing.
                connection.execute("update route4 set metric = ? where last in (?, ?)",
                                   (metric, 0x0a0000ff, 0x0a00c7ff))
            connection.close()

        writer = threading.Thread(target=change)
        writer.start()
        self.addCleanup(writer.join)
        self.addCleanup(ended.set)
        until, seen = time.monotonic() + float(os.environ.get("ROVA_CHURN_SECONDS", "2")), set()
        while time.monotonic() < until:
            result = rova("--format", "json", "show", "ip", "route", state=self.path)
            self.assert_succeeds(result)
            shown = json.loads(result.stdout)["vrfs"]["default"]["routes"]
            self.assertEqual(len(shown), len(routes))
            metrics = {shown[prefix]["metric"] for prefix in ("10.0.0.0/24", "10.0.199.0/24")}
            self.assertEqual(len(metrics), 1, metrics)
            seen |= metrics
        self.assertGreater(len(seen), 3)

    @unittest.skipUnless(os.geteuid() == 0, "mounting needs root")
    def test_a_full_disk_loses_nothing(self):
        small = {f"10.0.{i}.0/24": {"type": "static", "fec": "0.1"} for i in range(50)}
        large = {f"10.{i >> 8}.{i & 255}.0/24": {"type": "static", "fec": "0.1"}
                 for i in range(40_000)}
        fec = {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}}
        one = snapshot_file(self.folder, {"routingStatus": small}, forwardingStatus=fec)
        before = one.read_text()
        other = self.folder / "large.json"
        other.write_text(before.replace(json.dumps(small), json.dumps(large)))
        disk = self.folder / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=800k", "none", disk],
                                 check=False, capture_output=True)
        if mounted.returncode != 0:
            self.skipTest("nothing can be mounted here")
        self.addCleanup(subprocess.run, ["umount", disk], check=True)
        database = disk / "state.db"
        self.assert_ends(load(one, database), 0, "")
        self.assert_ends(load(other, database), 1, f"rova: {database}: database or disk is full\n")
        shown = [rova("snapshot", "save", "-", state=state).stdout for state in (one, database)]
        self.assertEqual(shown[0], shown[1])

    def default(self, **facts):
        """What `show state` chooses with the database in the place of this machine's."""
        connection = sqlite3.connect(self.path)
        for key, value in facts.items():
            connection.execute("insert or replace into meta values (?, ?)", (key, value))
        connection.commit()
        connection.close()
        result = subprocess.run([program(), "--format", "json", "show", "state"], check=True,
                                capture_output=True, env={**os.environ, "ROVA_STATE_DB": str(self.path)})
        model = json.loads(result.stdout)
        return model["source"], model["chosen"]

    def test_a_source_that_is_not_there_has_no_state(self):
        missing = self.folder / "missing.db"
        self.assert_ends(rova("show", "state", state=missing), 1,
                         f"rova: {missing}: cannot be read: No such file or directory\n")

    def test_the_source_for_who_names_none(self):
        missing = self.folder / "missing.db"
        environment = {**os.environ, "ROVA_STATE_DB": str(missing)}
        result = subprocess.run([program(), "show", "state"], check=True, capture_output=True,
                                env=environment)
        self.assertIn(f"there is no state database at {missing}", result.stdout.decode())
        load(STATE, self.path)
        boot = Path("/proc/sys/kernel/random/boot_id").read_text(encoding="ascii").strip()
        network = os.stat("/proc/self/ns/net")
        ours = {"source": "kernel", "boot": boot, "network": f"{network.st_dev}:{network.st_ino}"}
        self.assertEqual(self.default(**ours), ("kernel", f"no agent keeps {self.path}"))
        with open(f"{self.path}-lock", "r+", encoding="ascii") as lock:
            fcntl.lockf(lock, fcntl.LOCK_EX)
            self.assertEqual(self.default()[0], str(self.path))
            for key, why in (("boot", "is of another boot"),
                             ("network", "is of another network namespace"),
                             ("source", "is not the state of a kernel")):
                self.assertEqual(self.default(**{**ours, key: "other"}),
                                 ("kernel", f"{self.path} {why}"))


if __name__ == "__main__":
    unittest.main()
