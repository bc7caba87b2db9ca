#!/usr/bin/env python3
"""The progress of what takes long: where it shows, and that it goes again."""

import os
import tempfile
import time
import unittest

from support import ROOT, STATE, CommandTest
from terminal import Terminal

REMOVAL = "\r\x1b[K"
READING = "\rreading the snapshot: 0 %\x1b[K" + REMOVAL
SELECTING = "\rselecting routes\x1b[K" + REMOVAL
SNAPSHOT = (ROOT / STATE).read_text()

# The text of a snapshot, whether it comes late, variables of the environment, and what the
# terminal of standard error then shows.
SHOWN = [
    (SNAPSHOT, True, {}, READING + SELECTING),
    (SNAPSHOT, False, {}, ""),
    (SNAPSHOT, True, {"TERM": "dumb"}, ""),
    ('{"rovaSnapshot": 2}', True, {"NO_COLOR": "1"}, READING.replace("0", "5") +
     "rova: standard input: $.rovaSnapshot: found 2, expected a number from 1 to 1\r\n"),
]


class ProgressTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def shown(self, text, is_late, **options):
        """What a terminal shows of a listing whose snapshot comes through a pipe, maybe late."""
        reading, writing = os.pipe()
        with open(reading, "rb") as state, open(writing, "w", encoding="utf-8") as writer:
            terminal = Terminal(self.folder, "--state", "-", "show", "ip", "route", stdin=state, **options)
            self.addCleanup(terminal.close)
            if is_late:
                time.sleep(0.6)  # a command of half a second shows its progress
            writer.write(text)
        terminal.end()
        return terminal.raw

    def test_standard_error(self):
        for text, is_late, environment, expected in SHOWN:
            with self.subTest((is_late, environment)), tempfile.TemporaryFile() as out:
                shown = self.shown(text, is_late, stdout=out, **environment)
                self.assertEqual(shown, expected)

    def test_nothing_where_nobody_looks(self):
        with tempfile.TemporaryFile() as err:
            shown = self.shown(SNAPSHOT, True, stderr=err)
            self.assertNotIn("reading", shown)
            self.assertIn("10.1.0.0/16", shown)
            err.seek(0)
            self.assertEqual(err.read(), b"")

    def test_it_is_gone_ahead_of_the_listing(self):
        shown = self.shown(SNAPSHOT, True)
        self.assertTrue(shown.startswith(READING + SELECTING), shown[:100])
        self.assertNotIn("\x1b[K", shown.removeprefix(READING + SELECTING))


if __name__ == "__main__":
    unittest.main()
