#!/usr/bin/env python3
"""Outputs that end early: the user's interrupt, a full disk, a reader that goes away."""

import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import ROOT, STATE, TIMEOUT_SECONDS, CommandTest, long_listing, program, snapshot_file, static_routes

FULL = "No space left on device"
WORDS = b"exiting interrupted by the user\n"


def read_bytes(stream, count):
    read = b""
    while len(read) < count:
        piece = stream.read(count - len(read))
        if not piece:
            raise AssertionError(f"the output ended after {len(read)} bytes")
        read += piece
    return read


class OutputTest(CommandTest):
    def test_interrupt(self):
        for options in ([], ["--format", "json"]):
            with self.subTest(options), long_listing(*options) as process:
                # Once this much was read, routes are on their way, and the listing cannot end
                # before the rest is read too.
                start = read_bytes(process.stdout, 100_000)
                process.send_signal(signal.SIGINT)
                rest, err = process.communicate(timeout=TIMEOUT_SECONDS)
                self.assertEqual((process.returncode, err), (130, b""))
                self.assertIn(b"10.0.0.0/24", start)
                # A pipe that is full takes no words.
                self.assertTrue(rest.endswith(WORDS) or WORDS not in rest, rest[-200:])
                self.assertNotIn(b"10.78.31.0/24", rest, "the listing went on to its last route")

    def test_an_interrupted_listing_says_so(self):
        with tempfile.TemporaryDirectory() as folder:
            state = static_routes(folder, 65_536)
            for _ in range(20):  # one that had ended when the interrupt came tells nothing
                path = Path(folder) / "listing"
                with path.open("wb") as out, subprocess.Popen(
                        [program(), "--state", state, "show", "ip", "route"], stdout=out) as process:
                    while process.poll() is None and path.stat().st_size == 0:
                        pass
                    process.send_signal(signal.SIGINT)
                listing = path.read_bytes()
                if b"10.255.255.0/24" not in listing:
                    break
            self.assertEqual(process.returncode, 130)
            self.assertTrue(listing.endswith(WORDS), listing[-200:])

    def test_closed_descriptors(self):
        for closed, status in (("<&-", 0), (">&-", 1), ("2>&-", 0), ("<&- >&- 2>&-", 1)):
            result = subprocess.run(["sh", "-c", f'"$0" --state {STATE} show ip route {closed}', program()],
                                    capture_output=True, cwd=ROOT, text=True, check=False)
            self.assertEqual(result.returncode, status, closed)
            if closed == ">&-":
                self.assertRegex(result.stderr, r"\Arova: [^\n]*Bad file descriptor\n\Z")

    def test_reader_that_goes_away(self):
        for options in ([], ["--format", "json"]):
            with self.subTest(options), long_listing(*options) as process:
                process.stdout.readline()
                process.stdout.close()
                err = process.stderr.read()
                self.assertEqual((process.wait(TIMEOUT_SECONDS), err), (0, b""))

    def test_long_listing_is_whole(self):
        with long_listing() as process:
            out, err = process.communicate(timeout=TIMEOUT_SECONDS)
            self.assertEqual((process.returncode, err), (0, b""))
            self.assertEqual(out.count(b" via 192.0.2.1, Ethernet1\n"), 20_000)

    def test_a_snapshot_on_its_way_to_a_pipe(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, {}, allIntfConfig={
                f"Ethernet{i}": {"description": "x" * 100} for i in range(5000)})
            whole = subprocess.run([program(), "--state", path, "snapshot", "save", "-"],
                                   capture_output=True, check=True).stdout
            for is_read in (True, False):
                reading, writing = os.pipe()
                os.set_blocking(writing, False)
                full = os.write(writing, b" " * 10_000_000)  # so that the first write has to wait
                with subprocess.Popen([program(), "--state", path, "snapshot", "save", "-"],
                                      stdout=writing, stderr=subprocess.PIPE) as process, \
                        open(reading, "rb") as pipe:
                    os.close(writing)
                    self.assertEqual(pipe.read(full + 1).lstrip(), b"{")
                    if is_read:
                        self.assertEqual(pipe.read(), whole[1:])
                    pipe.close()
                    self.assertEqual((process.wait(TIMEOUT_SECONDS), process.stderr.read()),
                                     (0, b""))

    def test_full_disk(self):
        for words in (["show", "ip", "route"], ["--format", "json", "show", "ip", "route"],
                      ["show", "ipv6", "route", "vrf", "all"], ["show", "ip", "route", "summary"],
                      ["snapshot", "save", "-"],
                      ["show", "static"], ["show", "running-config", "static", "| json"],
                      ["check", "next-hop", "10.0.0.1"],
                      ["--help"], ["--version"]):
            with self.subTest(words), open("/dev/full", "wb") as full:
                result = subprocess.run([program(), "--state", STATE, *words], stdout=full,
                                        stderr=subprocess.PIPE, cwd=ROOT, text=True,
                                        timeout=TIMEOUT_SECONDS, check=False)
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stderr, rf"\Arova: [^\n]*{FULL}\n\Z")


if __name__ == "__main__":
    unittest.main()
