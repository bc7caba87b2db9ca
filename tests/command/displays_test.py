#!/usr/bin/env python3
"""No snapshot of the scenarios stops a display, whatever it was written for."""

import itertools
import unittest
from concurrent.futures import ThreadPoolExecutor

from support import HERE, CommandTest, run_program

SNAPSHOTS = sorted(HERE.rglob("snapshot.json"))
DISPLAYS = [
    *(["show", family, "route", *vrf, *what] for family in ("ip", "ipv6")
      for vrf in ([], ["vrf", "all"]) for what in ([], ["detail"], ["host"], ["summary"])),
    ["show", "nexthop-group"], ["show", "nexthop-group", "summary"],
    ["show", "running-config", "static", "vrf", "all"], ["show", "static"],
]
FORMATS = ("text", "json")
WORKERS = 2  # the machines that build have few processors, and other tests run beside this one


def run_display(case):
    snapshot, words, output_format = case
    return case, run_program(["--state", snapshot, "--format", output_format, *words])


class DisplaysTest(CommandTest):
    def test_every_display_of_every_snapshot_ends(self):
        self.assertTrue(SNAPSHOTS)
        cases = itertools.product(SNAPSHOTS, DISPLAYS, FORMATS)
        with ThreadPoolExecutor(WORKERS) as workers:
            for (snapshot, words, output_format), result in workers.map(run_display, cases):
                with self.subTest(f"{snapshot.relative_to(HERE)}: {words}, {output_format}"):
                    self.assert_ends(result, 0, b"")


if __name__ == "__main__":
    unittest.main()
