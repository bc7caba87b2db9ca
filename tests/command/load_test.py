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

    def test_the_devices_own_address_is_no_next_hop(self):
        self.lines.write_text("ip route 10.9.0.0/16 10.0.1.1\n")
        result = rova("static", "load", str(self.lines), "--dry-run", state=CHECKS)
        self.assert_ends(result, 1, f"""rova: {self.lines} line 1: 10.0.1.1 is an address of this device in VRF default
  ip route 10.9.0.0/16 10.0.1.1
                       ^
""")

    def test_it_needs_a_snapshot(self):
        result = rova("static", "load", str(self.lines), state="kernel")
        self.assert_ends(result, 2, "rova: static load changes a snapshot: --into names the file of "
                         "one\n")


if __name__ == "__main__":
    unittest.main()
