#!/usr/bin/env python3
"""One call of the system fails, each in its turn: a command does all of its work or says that it
did not, in one line, and leaves files whole."""

import itertools
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import HERE, ROOT, TIMEOUT_SECONDS, CommandTest, program

ROUTES = ROOT / "tests/scenarios/static-routes/snapshot.json"
LINES = "ip route 10.200.0.0/16 Null0\nipv6 route 2001:db8:200::/48 Null0\n"

# Commands on the file STATE, some of which write it or OTHER.
SHOWS = ["show running-config static vrf all", "--format json show ip route vrf all"]
CHANGES = ["static load LINES --into OTHER", "clear static interface Ethernet1",
           "snapshot save OTHER"]


class FailingTest(CommandTest):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.library = f"{folder.name}/failing.so"
        subprocess.run(["cc", "-shared", "-fPIC", "-o", cls.library,
                        HERE.parent / "support/failing.c"], check=True)
        loaded = subprocess.run([program(), "--version"], env={"LD_PRELOAD": cls.library},
                                capture_output=True, check=False)
        if loaded.returncode or loaded.stderr:
            raise unittest.SkipTest("the program cannot be loaded behind another library")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.seen = self.folder / "seen"
        self.places = {word: str(self.folder / "files" / word) for word in ("STATE", "OTHER", "LINES")}

    def run_failing(self, command, call, at):
        """The status, texts and files that the command leaves when a call fails."""
        files = self.folder / "files"
        shutil.rmtree(files, ignore_errors=True)
        files.mkdir()
        for word in ("STATE", "OTHER"):
            shutil.copy(ROUTES, self.places[word])
        Path(self.places["LINES"]).write_text(LINES)
        self.seen.unlink(missing_ok=True)
        words = [self.places.get(word, word) for word in f"--state STATE {command}".split()]
        result = subprocess.run(
            [program(), *words], capture_output=True, timeout=TIMEOUT_SECONDS, check=False,
            env={"LD_PRELOAD": self.library, "FAILING_CALL": call, "FAILING_AT": str(at),
                 "FAILING_SEEN": str(self.seen)})
        left = {path.name: path.read_bytes() for path in files.iterdir()}
        return result.returncode, result.stdout, result.stderr.decode(), left

    def assert_all_or_nothing(self, command, call, least=1):
        """Fails the calls of a kind one by one, of which there must be some."""
        _, _, _, old = self.run_failing("--version", call, 0)
        status, shown, err, new = self.run_failing(command, call, 0)  # none fails
        self.assertEqual((status, err), (0, ""))
        for at in itertools.count(1):
            status, out, err, left = self.run_failing(command, call, at)
            if not self.seen.exists():
                return self.assertGreater(at, least)
            with self.subTest(command, call=call, at=at):
                if status == 0:
                    self.assertEqual((out, err, left), (shown, "", new))
                else:
                    self.assertEqual(status, 1, err)
                    self.assertRegex(err, r"\A[^\n]+\n\Z")
                    self.assertIn(left, (old, new))

    def test_allocations(self):
        for command in SHOWS + CHANGES:
            self.assert_all_or_nothing(command, "malloc", 100)

    def test_reads(self):
        for command in SHOWS + CHANGES:
            self.assert_all_or_nothing(command, "read")

    def test_reads_of_the_kernels_settings(self):
        for at in (1, 2):  # whether IPv4 and IPv6 are forwarded
            status, out, err, _ = self.run_failing("--state kernel show ip route", "read", at)
            self.assertEqual((status, out), (1, b""), err)
            self.assertRegex(err, r"\Arova: /proc/[^\n]+: cannot be read: Input/output error\n\Z")

    def test_calls_that_write(self):
        for command in CHANGES:
            for call in ("write", "fsync", "fchmod", "flock", "rename"):
                self.assert_all_or_nothing(command, call)


if __name__ == "__main__":
    unittest.main()
