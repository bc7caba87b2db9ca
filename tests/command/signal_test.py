#!/usr/bin/env python3
"""Signals end every command at once, wherever it is, and leave nothing behind."""

import fcntl
import json
import os
import signal
import struct
import subprocess
import tempfile
import termios
import time
import unittest
from pathlib import Path

from support import ROOT, TIMEOUT_SECONDS, CommandTest, long_listing, program

STATUSES = {signal.SIGINT: 130, signal.SIGTERM: 143, signal.SIGHUP: 129}
PIPE_BYTES = 64 * 1024


def wait_until(holds):
    """Looks again and again; the test's own timeout ends a wait that does not."""
    end = time.monotonic() + TIMEOUT_SECONDS
    while not holds():
        if time.monotonic() > end:
            raise AssertionError("waited in vain")
        time.sleep(0.002)


def is_waiting(process):
    """Whether it sleeps in a system call, with its handlers installed."""
    status = Path(f"/proc/{process.pid}/status").read_text()
    fields = dict(line.split(":\t", 1) for line in status.splitlines() if ":\t" in line)
    caught = int(fields["SigCgt"], 16) >> (signal.SIGINT - 1) & 1
    return caught and fields["State"].startswith("S")


def unread(pipe):
    return struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, b"\0" * 4))[0]


class SignalTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def start(self, *words, **streams):
        process = subprocess.Popen([program(), *words], cwd=ROOT, stderr=subprocess.PIPE,
                                   stdout=subprocess.DEVNULL, **streams)
        self.addCleanup(process.stderr.close)
        return process

    def assert_killed(self, process, number):
        process.send_signal(number)
        self.assertEqual(process.wait(TIMEOUT_SECONDS), STATUSES[number])

    def test_a_listing_whose_reader_has_stopped(self):
        for number in STATUSES:
            for options in ([], ["--format", "json"]):
                with self.subTest(number=number, options=options), \
                     long_listing(*options) as process:
                    wait_until(lambda: unread(process.stdout) >= PIPE_BYTES - 4096 and
                               is_waiting(process))
                    self.assert_killed(process, number)

    def test_a_snapshot_that_does_not_come(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        for number in STATUSES:
            with self.subTest("opening", number=number):
                process = self.start("--state", fifo, "show", "ip", "route")
                wait_until(lambda: is_waiting(process))
                self.assert_killed(process, number)
            with self.subTest("reading", number=number):
                reader, writer = os.pipe()
                process = self.start("--state", "-", "show", "ip", "route", stdin=reader)
                wait_until(lambda: is_waiting(process))
                self.assert_killed(process, number)
                os.close(reader)
                os.close(writer)

    def test_a_reader_of_a_snapshot_that_does_not_come(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        process = self.start("--state", "tests/scenarios/leaf/snapshot.json", "snapshot", "save", fifo)
        wait_until(lambda: is_waiting(process))
        self.assert_killed(process, signal.SIGINT)

    def test_no_unfinished_file_is_left(self):
        routes = {f"10.{i >> 8}.{i & 255}.0/24": {"type": "static"} for i in range(60_000)}
        state = self.folder / "state.json"
        state.write_text(json.dumps({"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": routes}}}))
        target = self.folder / "saved.json"
        for number, status in STATUSES.items():
            caught = 0
            for _ in range(30):
                process = self.start("--state", state, "snapshot", "save", target)
                wait_until(lambda: process.poll() is not None or
                           any(".new." in name for name in os.listdir(self.folder)))
                process.send_signal(number)
                caught += process.wait(TIMEOUT_SECONDS) == status
                self.assertEqual(set(os.listdir(self.folder)) - {"saved.json"}, {"state.json"})
                if caught == 3:
                    break
            self.assertGreater(caught, 0)

    def test_a_hangup_that_is_ignored_stays_so(self):
        process = subprocess.Popen(["nohup", program(), "--state", "-", "show", "ip", "route"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        wait_until(lambda: is_waiting(process))
        process.send_signal(signal.SIGHUP)
        snapshot = Path(ROOT, "tests/scenarios/leaf/snapshot.json").read_bytes()
        out, _ = process.communicate(snapshot, timeout=TIMEOUT_SECONDS)
        self.assertEqual(process.returncode, 0)
        self.assertIn(b"VRF: default", out)


if __name__ == "__main__":
    unittest.main()
