#!/usr/bin/env python3
"""rova static load: what the saver writes loads into another snapshot, all of it or nothing."""

import json
import pathlib
import tempfile
import unittest

from support import CommandTest, rova

ROUTES = "tests/scenarios/static-routes/snapshot.json"
CHECKS = "tests/scenarios/static-checks/snapshot.json"


class LoadTest(CommandTest):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.snapshot = str(pathlib.Path(self.folder.name) / "state.json")
        self.lines = pathlib.Path(self.folder.name) / "lines.txt"
        pathlib.Path(self.snapshot).write_text(json.dumps(
            {"rovaSnapshot": 1, "vrfs": {"default": {}, "red": {"id": 3}}}))

    def test_what_is_saved_loads_again(self):
        saved = rova("show", "running-config", "static", "vrf", "all", state=ROUTES).stdout
        self.lines.write_text("! a note\n\n" + saved)
        loaded = rova("static", "load", str(self.lines), "--into", self.snapshot,
                      state="kernel")
        self.assert_ends(loaded, 0, "")
        self.assertEqual(loaded.stdout, saved)
        again = rova("show", "running-config", "static", "vrf", "all", state=self.snapshot)
        self.assertEqual(again.stdout, saved)
        self.assertEqual(rova("static", "load", str(self.lines), "--into", self.snapshot,
                      state="kernel").stdout, "")

    def test_a_bad_line_writes_nothing(self):
        before = pathlib.Path(self.snapshot).read_text()
        self.lines.write_text("ip route 10.0.0.0/8 Null0\nip route 10.1.0.0/16 Null0 256\n")
        result = rova("static", "load", str(self.lines), "--into", self.snapshot,
                      state="kernel")
        self.assert_ends(result, 1, f"""rova: {self.lines} line 2: "256": expected a number from 0 to 255
  ip route 10.1.0.0/16 Null0 256
                             ^
""")
        self.assertEqual(pathlib.Path(self.snapshot).read_text(), before)

    def test_an_unknown_vrf_is_told_with_its_line(self):
        text = "! a note\nip route vrf rde 10.0.0.0/8 Null0\n"
        self.lines.write_text(text)
        for path, name, given in ((str(self.lines), self.lines, None),
                                  ("-", "standard input", text)):
            result = rova("static", "load", path, "--dry-run", state=self.snapshot, stdin=given)
            self.assert_ends(result, 1, f"""rova: {name} line 2: there is no VRF "rde"; did you mean "red"? The VRFs are default, red
  ip route vrf rde 10.0.0.0/8 Null0
               ^
""")

    def test_a_snapshot_from_standard_input(self):
        self.lines.write_text("ip route 10.0.0.0/8 Null0\n")
        given = {"state": "-", "stdin": pathlib.Path(self.snapshot).read_text()}
        load = ("static", "load", str(self.lines))
        self.assert_ends(rova(*load, **given), 2,
                         "rova: static load changes a snapshot: with one from standard input, "
                         "--into names the file that it goes to\n")
        self.assert_ends(rova("static", "load", "-", **given), 2,
                         "rova: static load cannot read both its lines and the snapshot from "
                         "standard input: one of them needs a file\n")
        self.assertEqual(rova(*load, "--into", self.snapshot, **given).stdout,
                         self.lines.read_text())
        self.assertEqual(rova("show", "running-config", "static", state=self.snapshot).stdout,
                         self.lines.read_text())

    def test_the_devices_own_address_is_no_next_hop(self):
        self.lines.write_text("ip route 10.9.0.0/16 10.0.1.1\n")
        result = rova("static", "load", str(self.lines), "--dry-run", state=CHECKS)
        self.assert_ends(result, 1, f"""rova: {self.lines} line 1: 10.0.1.1 is an address of this device in VRF default
  ip route 10.9.0.0/16 10.0.1.1
                       ^
""")

    def test_a_name_that_nobody_can_have_typed_is_refused(self):
        self.lines.write_text("ip route 10.9.0.0/16 10.0.1.9 name c\u202eo\x1bre\n")
        result = rova("static", "load", str(self.lines), "--dry-run", state=CHECKS)
        self.assert_ends(result, 1, f"""rova: {self.lines} line 1: "c\\u202eo\\x1bre": expected a name without control characters
  ip route 10.9.0.0/16 10.0.1.9 name c\\u202eo\\x1bre
                                      ^
""")

    def test_it_needs_a_snapshot(self):
        result = rova("static", "load", str(self.lines), state="kernel")
        self.assert_ends(result, 2, "rova: static load changes a snapshot: --into names the file of "
                         "one\n")


if __name__ == "__main__":
    unittest.main()
