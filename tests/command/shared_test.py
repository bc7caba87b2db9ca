#!/usr/bin/env python3
"""A snapshot that several commands change at once, and what it keeps beside its bytes."""

import fcntl
import os
import resource
import shutil
import signal
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import ROOT, TIMEOUT_SECONDS, CommandTest, program, rova, snapshot_file

NOBODY = 65534
LINE = "ip route 10.{}.0.0/16 Null0\n"
INTERFACES = {"allIntfConfig": {"Ethernet1": {}}}
# An access control list as the system keeps it: version 2, then tag, rights and user of each entry.
ACL = struct.pack("<I" + "HHI" * 5, 2, 1, 6, 2**32 - 1, 2, 4, NOBODY, 4, 4, 2**32 - 1,
                  16, 4, 2**32 - 1, 32, 0, 2**32 - 1)


class SharedTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.path = snapshot_file(folder.name, {"routingConfig": {"routes": []}}, **INTERFACES)

    def start(self, *words, line="", **options):
        """Starts a command on the snapshot; `line` goes into it."""
        process = subprocess.Popen([program(), "--state", self.path, *words], stdin=subprocess.PIPE,
                                   stdout=options.pop("stdout", subprocess.PIPE),
                                   stderr=subprocess.PIPE, **options)
        self.addCleanup(process.communicate)
        process.stdin.write(line.encode())
        process.stdin.close()
        process.stdin = None
        return process

    def load(self, number, **options):
        return self.start("static", "load", "-", line=LINE.format(number), **options)

    def lines(self):
        return rova("show", "running-config", "static", state=self.path).stdout

    def test_no_change_is_lost(self):
        for round_ in range(5):
            loads = [self.load(8 * round_ + number) for number in range(8)]
            for process in loads:
                process.communicate(timeout=TIMEOUT_SECONDS)
                self.assertEqual(process.returncode, 0)
        self.assertEqual(self.lines(), "".join(LINE.format(number) for number in range(40)))

    def test_a_command_waits_and_then_reads_what_is_there(self):
        other = self.folder / "other.json"
        for words, line, left in (
                ("static load -", LINE.format(2), LINE.format(1) + LINE.format(2)),
                ("clear static interface Ethernet1", "", LINE.format(1)),
                (f"clear static interface Ethernet1 --into {other}", "", None),
                (f"snapshot save {other}", "", None)):
            with self.subTest(words):
                shutil.copy(self.path, other)
                waited_for = other if str(other) in words else self.path
                with waited_for.open() as old:
                    fcntl.flock(old, fcntl.LOCK_EX)
                    process = self.start(*words.split(), line=line)
                    self.assertEqual(process.stderr.readline().decode(),
                                     f"rova: {waited_for}: waiting for another process that "
                                     "changes it\n")
                    new = snapshot_file(tempfile.mkdtemp(dir=self.folder), {"routingConfig": {
                        "routes": [{"prefix": "10.1.0.0/16", "type": "drop"}]}}, **INTERFACES)
                    os.replace(new, waited_for)
                _, err = process.communicate(timeout=TIMEOUT_SECONDS)
                self.assertEqual((process.returncode, err), (0, b""))
                if left:
                    self.assertEqual(self.lines(), left)

    def test_an_interrupt_ends_the_wait(self):
        with self.path.open() as old:
            fcntl.flock(old, fcntl.LOCK_EX)
            process = self.load(1)
            process.stderr.readline()
            process.send_signal(signal.SIGINT)
            self.assertEqual((process.wait(TIMEOUT_SECONDS), process.stderr.read()), (130, b""))
        self.assertEqual(self.lines(), "")

    def test_what_another_owner_has_stays(self):
        if os.geteuid() != 0:
            self.skipTest("needs root, to own files as somebody else")
        os.chown(self.path, NOBODY, NOBODY)
        self.path.chmod(0o640)
        os.setxattr(self.path, "user.note", b"kept")
        self.assertEqual(self.load(1).wait(TIMEOUT_SECONDS), 0)
        status = self.path.stat()
        self.assertEqual((status.st_uid, status.st_gid, status.st_mode & 0o7777),
                         (NOBODY, NOBODY, 0o640))
        self.assertEqual(os.getxattr(self.path, "user.note"), b"kept")

    def test_rights_are_those_of_the_old_file(self):
        access, default = "system.posix_acl_access", "system.posix_acl_default"
        try:
            os.setxattr(self.folder, default, ACL)
        except OSError as error:
            self.skipTest(f"the folder takes no access control list: {error}")
        for acl in (None, ACL):
            self.path.chmod(0o640)
            if acl:
                os.setxattr(self.path, access, acl)
            self.assertEqual(self.load(1).wait(TIMEOUT_SECONDS), 0)
            has = access in os.listxattr(self.path)
            self.assertEqual(os.getxattr(self.path, access) if has else None, acl)
            self.assertEqual(self.path.stat().st_mode & 0o7777, 0o640)

    def test_an_owner_that_cannot_be_kept(self):
        if os.geteuid() != 0:
            self.skipTest("needs root, to run as somebody else")
        self.folder.chmod(0o777)
        self.path.chmod(0o666)
        process = self.load(1, user=NOBODY, group=NOBODY, extra_groups=[])
        out, err = process.communicate(timeout=TIMEOUT_SECONDS)
        self.assertEqual(
            (process.returncode, out, err.decode()),
            (1, b"", f"rova: {self.path}: cannot be replaced, for its owner and group (0:0) cannot "
             "be kept: Operation not permitted\n"))
        self.assertEqual(self.lines(), "")

    def test_a_link_to_a_file_that_is_not_there_yet(self):
        link = self.folder / "link"
        link.symlink_to("target")
        self.assert_ends(rova("snapshot", "save", link, state=self.path), 0, "")
        self.assertTrue(link.is_symlink())
        self.assertEqual((self.folder / "target").read_bytes()[:1], b"{")

    def test_nothing_changes_where_the_lines_cannot_be_shown(self):
        before = self.path.read_bytes()
        with open("/dev/full", "wb") as full:
            process = self.load(1, stdout=full)
            self.assertEqual((process.wait(TIMEOUT_SECONDS), self.path.read_bytes()), (1, before))
        closed = subprocess.run(
            ["sh", "-c", f'echo "ip route 10.1.0.0/16 Null0" | "$0" --state "$1" static load - >&-',
             program(), self.path], capture_output=True, timeout=TIMEOUT_SECONDS, check=False)
        self.assertEqual((closed.returncode, self.path.read_bytes()), (1, before))
        self.assertRegex(closed.stderr, rb"\Arova: [^\n]*Bad file descriptor\n\Z")

    def test_a_reader_of_the_lines_may_go_away(self):
        reading, writing = os.pipe()
        os.close(reading)
        process = self.load(1, stdout=writing)
        os.close(writing)
        self.assertEqual((process.wait(TIMEOUT_SECONDS), process.stderr.read()), (0, b""))
        self.assertEqual(self.lines(), LINE.format(1))

    def test_a_limit_of_file_sizes(self):
        before = self.path.read_bytes()
        process = self.load(1, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10, 10)))
        _, err = process.communicate(timeout=TIMEOUT_SECONDS)
        self.assertEqual((process.returncode, err.decode(), self.path.read_bytes()),
                         (1, f"rova: {self.path}: cannot be written: File too large\n", before))


if __name__ == "__main__":
    unittest.main()
