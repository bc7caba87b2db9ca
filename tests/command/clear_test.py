#!/usr/bin/env python3
"""Clearing static routes: what is written, where, and when nothing is."""

import json
import tempfile
import unittest
from pathlib import Path

from support import CommandTest, rova, snapshot_file

CONFIG = {"routes": [
    {"prefix": "10.0.0.0/8", "vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"},
                                      {"hop": "192.0.2.5", "interface": "Ethernet2"}]},
    {"prefix": "10.1.0.0/16", "vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]},
]}
CLEAR = ("clear", "static", "interface", "Ethernet1")
GONE = "ip route 10.0.0.0/8 Ethernet1 192.0.2.1\nip route 10.1.0.0/16 Ethernet1 192.0.2.1\n"
LEFT = "ip route 10.0.0.0/8 Ethernet2 192.0.2.5\n"


def config_of(path):
    return rova("show", "running-config", "static", state=path).stdout


class ClearTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.path = snapshot_file(folder.name, {"routingConfig": CONFIG},
                                  allIntfConfig={"Ethernet1": {}, "Ethernet9": {"description": "kept"}})
        self.before = self.path.read_bytes()

    def assert_clears(self, *options):
        result = rova(*CLEAR, *options, state=self.path)
        self.assert_ends(result, 0, "")
        self.assertEqual(result.stdout, GONE)

    def test_takes_the_place_of_the_snapshot(self):
        reader = self.path.open("rb")
        self.addCleanup(reader.close)
        self.assert_clears()
        self.assertEqual(config_of(self.path), LEFT)
        self.assertEqual(json.loads(self.path.read_text())["allIntfConfig"],
                         {"Ethernet1": {}, "Ethernet9": {"description": "kept"}})
        self.assertEqual(reader.read(), self.before, "the old file is left as it was to a reader")
        self.assertEqual([path.name for path in self.folder.iterdir()], [self.path.name])
        again = rova(*CLEAR, state=self.path)
        self.assert_ends(again, 0, "")
        self.assertEqual(again.stdout, "", "nothing is left to go")

    def test_into_another_file(self):
        other = self.folder / "other.json"
        self.assert_clears("--into", str(other))
        self.assertEqual(self.path.read_bytes(), self.before)
        self.assertEqual(config_of(other), LEFT)

    def test_dry_run_writes_nothing(self):
        other = self.folder / "other.json"
        self.assert_clears("--dry-run")
        self.assert_clears("--dry-run", "--into", str(other))
        self.assertEqual(self.path.read_bytes(), self.before)
        self.assertFalse(other.exists())

    def test_a_snapshot_from_standard_input_goes_into_a_file(self):
        other = self.folder / "other.json"
        given = {"state": "-", "stdin": self.before.decode()}
        self.assert_ends(rova(*CLEAR, **given), 2,
                         "rova: clear static changes a snapshot: with one from standard input, "
                         "--into names the file that it goes to\n")
        self.assertEqual(rova(*CLEAR, "--dry-run", **given).stdout, GONE)
        self.assertEqual(rova(*CLEAR, "--into", str(other), **given).stdout, GONE)
        self.assertEqual(config_of(other), LEFT)

    def test_a_file_that_cannot_be_written_shows_no_lines(self):
        result = rova(*CLEAR, "--into", str(self.folder / "nowhere" / "x.json"), state=self.path)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, r"\Arova: [^\n]*x\.json[^\n]*No such file or directory\n\Z")
        self.assertEqual(self.path.read_bytes(), self.before)

    def test_a_kernel_is_refused(self):
        for state in ("kernel", "kernel:none"):
            self.assert_ends(rova(*CLEAR, state=state), 1,
                             f"rova: {state}: static routes are cleared in snapshots alone; "
                             "--state names the file of one\n")
            self.assert_ends(rova("check", "rd", "1:1", "vrf", "red", state=state), 1,
                             f"rova: {state}: has no route distinguishers to check against; "
                             "--state names the file of a snapshot\n")


if __name__ == "__main__":
    unittest.main()
