#!/usr/bin/env python3
"""The pager: what goes through it, and how a listing ends that does."""

import tempfile
import unittest
from pathlib import Path

from support import LONG_LISTING_ROUTES, CommandTest, rova, static_routes
from terminal import CTRL_C, CTRL_D, Terminal

PROMPT = "snapshot.json> "
ROUTES = 40  # a listing of them has 11 lines more

# Variables of the environment, words ahead of the command, and whether the pager shows a listing
# that is longer than the screen.
CHOICES = [
    ({"ROVA_PAGER": "PAGER"}, [], True),
    ({"ROVA_PAGER": "PAGER with arguments"}, [], True),
    ({"ROVA_PAGER": "true; PAGER | cat"}, [], True),
    ({"ROVA_PAGER": "PAGER", "PAGER": "cat"}, [], True),
    ({"ROVA_PAGER": "PAGER"}, ["--no-pager"], False),
    ({"ROVA_PAGER": "PAGER", "TERM": "dumb"}, [], False),
    ({"ROVA_PAGER": "", "PAGER": "PAGER"}, [], False),
    ({"ROVA_PAGER": "cat", "PAGER": "PAGER"}, [], False),
]


class PagerTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.log = self.folder / "log"
        self.pager = self.folder / "pager"
        self.pager.write_text(f"#!/bin/sh\necho paged >> {self.log}\ncat\n")
        self.pager.chmod(0o755)
        self.state = static_routes(self.folder, ROUTES)
        self.listing = rova("show", "ip", "route", state=self.state).stdout

    def terminal(self, *words, **options):
        options.setdefault("ROVA_PAGER", str(self.pager))
        shown = Terminal(self.folder, "--state", self.state, "--color", "never", *words, **options)
        self.addCleanup(shown.close)
        return shown

    def paged(self):
        """How many outputs were, since this was asked before."""
        count = self.log.read_text().count("paged") if self.log.exists() else 0
        self.log.unlink(missing_ok=True)
        return count

    def test_choice(self):
        for environment, words, expected in CHOICES:
            with self.subTest((environment, words)):
                environment = {name: value.replace("PAGER", str(self.pager)) for name, value in environment.items()}
                shown = self.terminal("show", "ip", "route", *words, size=(24, 200), **environment)
                self.assertEqual((shown.end(), self.paged()), (0, int(expected)))
                self.assertEqual(shown.screen, self.listing)

    def test_length(self):
        rows = self.listing.count("\n")
        longest = max(map(len, self.listing.splitlines()))
        for size, expected in (((rows + 1, 200), 0), ((rows, 200), 1), ((rows + 1, longest), 0),
                               ((rows + 1, longest - 1), 1), ((0, 0), 0)):
            for colour in ("never", "always"):  # escapes take no room
                with self.subTest((size, colour)):
                    shown = self.terminal("show", "ip", "route", "--color", colour, size=size)
                    self.assertEqual((shown.end(), self.paged()), (0, expected))

    def test_colours_are_those_of_the_terminal(self):
        shown = self.terminal("show", "ip", "route", "--color", "auto", size=(24, 200))
        self.assertEqual((shown.end(), self.paged()), (0, 1))
        self.assertIn("\x1b[35m192.0.2.1\x1b[0m", shown.raw)

    def test_a_pager_that_is_not_there(self):
        shown = self.terminal("show", "ip", "route", size=(24, 200), ROVA_PAGER="/nowhere/pager -x")
        self.assertEqual(shown.end(), 0)
        self.assertEqual(shown.screen, 'rova: the pager "/nowhere/pager -x" cannot be started: No such file or '
                         "directory; ROVA_PAGER names another one, or none when it is empty\n" + self.listing)

    def test_a_pager_that_is_left(self):
        self.state = static_routes(self.folder, LONG_LISTING_ROUTES)
        for words in (["show", "ip", "route"], ["show", "ip", "route", "|", "json"]):
            shown = self.terminal(*words, size=(24, 80), ROVA_PAGER="head -n 1")
            self.assertEqual(shown.end(), 0)
            self.assertEqual(shown.screen.count("\n"), 1)
            self.assertNotIn("rova:", shown.screen)

    def test_failures_keep_their_status(self):
        shown = self.terminal("show", "ip", "route", "vrf", "nosuch")
        self.assertEqual((shown.end(), self.paged()), (1, 0))
        self.assertIn('there is no VRF "nosuch"', shown.screen)

    def test_shell(self):
        shell = self.terminal(size=(24, 200))
        shell.wait(PROMPT)
        for line, expected in (("show ip route", 1), ("show ip route | no-more", 0), ("show ip route 10.0.0.0", 0),
                               ("show ip route | include via", 1), ("show ip route | include via | no-more", 0),
                               ("show ip route | count", 0), ("show ip route --no-pager", 0)):
            with self.subTest(line):
                shell.run(line, PROMPT)
                self.assertEqual(self.paged(), expected)
        shell.keys(CTRL_D)
        self.assertEqual(shell.end(), 0)

    def test_a_file_of_commands_is_not_paged(self):
        with tempfile.TemporaryFile("w+") as lines:
            lines.write("show ip route\n")
            lines.seek(0)
            shown = self.terminal(size=(24, 200), stdin=lines)
            self.assertEqual((shown.end(), self.paged()), (0, 0))
        self.assertEqual(shown.screen, self.listing)

    def test_keys_are_the_pagers(self):
        """Ctrl-C ends the listing and not the pager, which leaves the terminal as it was."""
        self.state = static_routes(self.folder, LONG_LISTING_ROUTES)
        shell = self.terminal(size=(24, 80), ROVA_PAGER="less -FRSX")
        shell.wait(PROMPT)
        shell.keys("show ip route\r")
        shell.wait(r"10\.0\.0\.0/24[^:]*\n:")
        shell.keys(" ")
        shell.wait(r"\n:")
        shell.keys(CTRL_C)
        self.assertFalse(shell.read(0.2) and PROMPT in shell.screen)
        shell.leave_pager(lambda: PROMPT in shell.screen)
        shell.wait(PROMPT)
        self.assertIn("snapshot", shell.run("\x15show state | include Kind", PROMPT))

    def test_the_terminal_is_left_as_it_was(self):
        self.state = static_routes(self.folder, LONG_LISTING_ROUTES)
        for keys in ("", CTRL_C):
            shown = self.terminal("show", "ip", "route", size=(24, 80), ROVA_PAGER="less -FRSX")
            flags = shown.local_flags()
            shown.wait(r"10\.0\.0\.0/24[^:]*\n:")
            self.assertNotEqual(shown.local_flags(), flags)
            shown.keys(keys)
            shown.leave_pager(shown.ended)
            self.assertEqual((shown.end(), shown.local_flags()), (0, flags))


if __name__ == "__main__":
    unittest.main()
