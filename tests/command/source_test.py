#!/usr/bin/env python3
"""States that cannot be shown: one line on standard error, and status 1."""

import signal
import tempfile
import unittest
from pathlib import Path

from support import STATE, CommandTest, rova, snapshot_file

# The text of a snapshot, and what is told about it; what else is refused is tested without the
# command.
BAD_SNAPSHOTS = [
    ('{"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {"10.0.0.0/8": '
     '{"type": "static", "preference": 300}}}}}',
     '$.vrfs.default.routingStatus["10.0.0.0/8"].preference: '
     "found 300, expected a number from 0 to 255"),
    ("", "line 1"),
    ("\0", ""),
]


class SourceTest(CommandTest):
    def test_unknown_vrf(self):
        for family in ("ip", "ipv6"):
            self.assert_ends(rova("show", family, "route", "vrf", "blue"), 1,
                             f'rova: {STATE}: there is no VRF "blue"; '
                             "the VRFs are default, red\n")

    def test_vrf_names_are_not_abbreviated(self):
        self.assertEqual(rova("show", "ip", "route", "vrf", "re").returncode, 1)

    def test_unreadable_file(self):
        for path, reason in (("/nowhere/x.json", "No such file or directory"),
                             ("/tmp", "Is a directory")):
            self.assert_ends(rova("show", "ip", "route", state=path), 1,
                             f"rova: {path}: cannot be read: {reason}\n")

    def test_bad_snapshots_have_one_line(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "bad.json"
            for text, told in BAD_SNAPSHOTS:
                with self.subTest(text):
                    path.write_text(text)
                    result = rova("show", "ip", "route", state=path)
                    self.assertEqual((result.returncode, result.stdout), (1, ""))
                    self.assertRegex(result.stderr, r"\Arova: [^\n]*bad\.json: [^\n]+\n\Z")
                    self.assertIn(told, result.stderr)

    def test_an_ipv6_route_kept_without_its_fec_is_an_internal_failure(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, {"routing6Status": {"::/0": {"type": "nexthopGroup"}}})
            result = rova("show", "ipv6", "route", state=path)
            self.assertEqual(result.returncode, -signal.SIGABRT)
            self.assertIn("Assertion failed", result.stderr)


if __name__ == "__main__":
    unittest.main()
