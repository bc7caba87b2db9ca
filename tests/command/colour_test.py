#!/usr/bin/env python3
"""Colours: which values have one, and where there are none."""

import re
import tempfile
import unittest
from pathlib import Path

from support import ROOT, STATE, CommandTest, rova
from terminal import Terminal

LEAF = "tests/scenarios/leaf/snapshot.json"
HOSTS = "tests/scenarios/host/router/snapshot.json"
GROUPS = "tests/scenarios/nexthop-group-counters/snapshot.json"
COLOUR = re.compile(r"\x1b\[[0-9;]*m")

# Lines with R, B, M, C for the start of a colour (red, bold, magenta, cyan) and 0 for its end.
MARKS = {"{R}": "\x1b[1;31m", "{B}": "\x1b[1m", "{M}": "\x1b[35m", "{C}": "\x1b[36m", "{0}": "\x1b[0m"}
LINES = [
    (LEAF, "show ip route", [
        "{R}WARNING: Some of the routes are not programmed in     {0}",
        " B E      {B}0.0.0.0/0{0} [20/0] via {M}192.0.2.1{0}, {C}Ethernet1{0}",
        "                           via {M}192.0.2.3{0}, {C}Ethernet2{0}",
        "{R}*{0}B E      {B}10.1.7.0/24{0} [20/0] via {M}192.0.2.1{0}, {C}Ethernet1{0}",
        " S L      {B}10.9.0.0/16{0} [1/0] (source VRF blue) via {M}203.0.113.9{0}, {C}Vlan100{0}",
        " C        {B}192.0.2.0/31{0} is directly connected, {C}Ethernet1{0}",
    ]),
    (LEAF, "show ipv6 route", [
        " B        {B}2001:db8:1::/48{0} [20/0]",
        "           via {M}2001:db8::1{0}, {C}Ethernet1{0}",
    ]),
    (HOSTS, "show ip route host", [
        " F  {B}10.255.0.2{0} via {M}192.0.2.1{0} on {C}Ethernet1{0}",
        "               via {M}192.0.2.5{0} on {C}Ethernet2{0}",
    ]),
    ("tests/scenarios/static-routes/snapshot.json", "show static vrf red", [
        "F    {B}10.9.0.0/16{0} [1]",
        "      via {M}192.0.2.9{0}",
    ]),
    (GROUPS, "show nexthop-group entries", [
        "    0  {M}198.51.100.1{0}",
        "         Via {M}192.0.2.1{0}, {C}Ethernet1{0}  ({B}198.51.100.0/24{0})",
    ]),
]

# The variables of a terminal's environment, more words, and whether there are colours.
TERMINALS = [
    ({}, [], True),
    ({"NO_COLOR": ""}, [], True),
    ({"NO_COLOR": "1"}, [], False),
    ({"TERM": "dumb"}, [], False),
    ({"NO_COLOR": "1"}, ["--color", "always"], True),
    ({"TERM": "dumb"}, ["--color=always"], True),
    ({}, ["--color", "never"], False),
    ({}, ["--color", "auto"], True),
    ({}, ["|", "json"], False),
]


class ColourTest(CommandTest):
    def terminal(self, *words, **options):
        shown = Terminal(tempfile.gettempdir(), "--state", *words, **options)
        self.addCleanup(shown.close)
        return shown

    def test_lines(self):
        for state, line, expected in LINES:
            out = rova("--color", "always", *line.split(), state=state).stdout.splitlines()
            for row in expected:
                for mark, escape in MARKS.items():
                    row = row.replace(mark, escape)
                self.assertIn(row, out)

    def test_nothing_else_changes(self):
        for folder in sorted((ROOT / "tests/scenarios").iterdir()):
            if not (folder / "snapshot.json").exists() or not (folder / "command").exists():
                continue
            lines = [line for line in (folder / "command").read_text().splitlines() if not line.startswith("#")]
            words = lines[0].split()
            if "--timing" in words or any("'" in word or '"' in word for word in words):
                continue
            with self.subTest(folder.name):
                state = folder / "snapshot.json"
                plain, coloured = (rova(*words, "--color", choice, state=state) for choice in ("never", "always"))
                self.assertEqual(COLOUR.sub("", coloured.stdout), plain.stdout)
                self.assertNotIn("\x1b", plain.stdout + rova(*words, state=state).stdout)
                models = [rova(*words, "--format=json", "--color", choice, state=state).stdout
                          for choice in ("never", "always")]
                self.assertEqual(*models)

    def test_where(self):
        for environment, words, expected in TERMINALS:
            with self.subTest((environment, words)):
                shown = self.terminal(LEAF, "show", "ip", "route", *words, **environment)
                self.assertEqual(shown.end(), 0)
                self.assertIn("10.1.7.0/24", shown.screen)
                self.assertEqual("\x1b" in shown.raw, expected)

    def test_errors(self):
        for words, expected in ((["show", "foo"], 2), (["show", "ip", "route", "vrf", "blue"], 1)):
            for choice, coloured in (("auto", True), ("never", False)):
                shown = self.terminal(STATE, *words, "--color", choice)
                self.assertEqual(shown.end(), expected)
                self.assertEqual(shown.raw.startswith("\x1b[1;31mrova:\x1b[0m "), coloured)
                self.assertIn("rova: ", shown.screen)
        self.assertTrue(rova("show", "foo", "--color", "always").stderr.startswith("\x1b[1;31mrova:\x1b[0m "))
        self.assertTrue(rova("show", "foo").stderr.startswith("rova: "))

    def test_shell(self):
        prompt = "snapshot.json> "
        shell = self.terminal(LEAF)
        shell.wait(prompt)
        for line, expected in (("show ip route 10.1.7.9", True), ("show ip route 10.1.7.9 | include via", False),
                               ("show ip route 10.1.7.9 | no-more", True),
                               ("show ip route 10.1.7.9 --color never", False),
                               ("show ip route 10.1.7.9 --color always | include 'via 192.0.2.1, Eth'", True)):
            with self.subTest(line):
                shell.raw = ""
                self.assertIn("[20/0] via 192.0.2.1", shell.run(line, prompt))
                self.assertEqual("\x1b[35m" in shell.raw, expected)
        self.assertNotIn("\x1b", rova(state=LEAF, stdin="show ip route").stdout)

    def test_words_that_are_none(self):
        self.assert_ends(rova("--color", "red", "show", "ip", "route"), 2,
                         'rova: option --color takes auto, always or never, found "red"\n'
                         "  rova --help lists the options\n")


if __name__ == "__main__":
    unittest.main()
