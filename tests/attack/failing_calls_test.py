#!/usr/bin/env python3
"""Every call of the system, failed in its turn: a command then says so, or does all that it does
otherwise, and a file that it writes is the old one or the new one."""

import contextlib
import errno
import functools
import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from judge import ROOT, all_of, end_fault, program

# What is not mended yet: (part of the fault's text, why). Without its line a case counts.
KNOWN_FAULTS = []

# A failure that the command has to tell.
TOLD = [("read", "EIO"), ("write", "ENOSPC"), ("rename", "EACCES"), ("flock", "ENOLCK"),
        ("fchown", "EPERM"), ("fchmod", "EPERM"), ("flistxattr", "EIO"), ("fgetxattr", "EIO"),
        ("fsetxattr", "ENOSPC"), ("setns", "EPERM"), ("socket", "EMFILE"), ("bind", "EADDRINUSE"),
        ("sendto", "ENOBUFS"), ("recvmsg", "EIO")]
# One that it has to tell, or can do without what failed.
TOLD_OR_DONE = [("malloc", "ENOMEM"), ("open", "EACCES"), ("open", "EROFS"), ("open", "ENOENT"),
                ("fsync", "EIO"), ("close", "EIO"), ("stat", "EACCES"), ("stat", "ENOENT"),
                ("fstat", "EIO"), ("fgetxattr", "ERANGE")]
# One that it gets over; a write without an error takes one byte.
HARMLESS = [("read", "EINTR"), ("write", "EINTR"), ("write", "EAGAIN"), ("write", ""),
            ("open", "EINTR"), ("flock", "EINTR"), ("flistxattr", "ENOTSUP"),
            ("setsockopt", "EPERM"), ("recvmsg", "EINTR"), ("recvfrom", "EINTR"),
            ("recvfrom", "ENOBUFS")]

STATES = "tests/scenarios"
LISTING = f"--state {STATES}/vrfs/snapshot.json show ip route vrf all detail"
LINES = f"--state {STATES}/static-routes/snapshot.json show running-config static vrf all"
LOAD = "static load FOLDER/lines --into FOLDER/saved.json"
COMMANDS = [LISTING, LINES, LOAD,
            f"--state {STATES}/nexthop-group-ipv6/snapshot.json --format json show nexthop-group",
            f"--state {STATES}/vrfs/snapshot.json snapshot save -",
            f"--state {STATES}/vrfs/snapshot.json snapshot save FOLDER/saved.json"]
NAMESPACE = f"rova-calls-{os.getpid()}"
KERNEL = f"--state kernel:{NAMESPACE} show ip route vrf all"
NETWORK = """\
link set lo up
addr add 10.1.0.1/24 dev lo
nexthop add id 7 via 10.1.0.2 dev lo
route add 20.0.0.0/8 via 10.1.0.2
"""
# What is tried once more fails again.
LASTING = {("flock", "ENOLCK"), ("open", "EROFS")}
# Where each of the hundreds of allocations fails once.
WITHOUT_MEMORY = [LISTING, LINES, LOAD, KERNEL]
NOBODY = 65534
OLD = {"saved.json": b'{"rovaSnapshot": 1}\n', "lines": b"ip route 10.0.0.0/8 Null0\n"}


def give_traits(path):
    """What a new file has to take over from the old one, as far as we may make it and the folder's
    file system has it."""
    with contextlib.suppress(OSError):
        os.setxattr(path, "user.note", b"kept")
    if os.geteuid() == 0:
        os.chown(path, NOBODY, NOBODY)


class Run:
    """A command in a folder of its own, with a call failed."""

    def __init__(self, words, call="", error="", at=0):
        with tempfile.TemporaryDirectory(prefix="rova-calls-") as folder:
            for name, content in OLD.items():
                (Path(folder) / name).write_bytes(content)
            give_traits(Path(folder) / "saved.json")
            environment = {
                **os.environ, "LD_PRELOAD": os.environ["FAILING_CALLS"], "FAIL_CALL": call,
                "FAIL_ERRNO": str(getattr(errno, error, 0)), "FAIL_AT": str(at),
                "FAIL_LASTS": str(int((call, error) in LASTING)),
                "FAIL_COUNT": f"{folder}/count"}
            command = [program(), *words.replace("FOLDER", folder).split()]
            result = subprocess.run(command, cwd=ROOT, env=environment, capture_output=True,
                                    check=False, timeout=30)
            count = Path(folder) / "count"
            self.calls = int(count.read_text()) if count.exists() else 0
            count.unlink(missing_ok=True)
            self.files = {path.name: path.read_bytes() for path in Path(folder).iterdir()}
        self.status, self.out, self.fault = result.returncode, result.stdout, end_fault(result)


def fault_of(whole, call, error, run):
    """What is wrong with a run of which the call failed."""
    if run.fault:
        return run.fault
    if run.status == 0 and (run.out, run.files) != (whole.out, whole.files):
        return "other output, and no word of it"
    if run.status != 0 and (call, error) in HARMLESS:
        return "refused"
    if run.status == 0 and (call, error) in TOLD:
        return "no word of it"
    torn = [name for name, content in run.files.items()
            if content not in (OLD.get(name), whole.files.get(name))]
    return f"left a file that is neither old nor new: {torn}" if torn else None


def is_tried(words, call, error):
    """No signal interrupts a call for what stands in /proc, which never waits."""
    if call == "malloc":
        return words in WITHOUT_MEMORY
    return words != KERNEL or (call, error) not in (("read", "EINTR"), ("open", "EINTR"))


def faults_of(words):
    """The command as it is without failures, and all faults of it."""
    whole = Run(words)
    found = []
    for call, error in TOLD + TOLD_OR_DONE + HARMLESS:
        if not is_tried(words, call, error):
            continue
        count = Run(words, call).calls
        runs = all_of(functools.partial(Run, words, call, error), range(1, count + 1))
        faults = [fault_of(whole, call, error, run) for run in runs]
        found += [f"{words}: {call} {error}: {fault} (call {at} of {count})"
                  for at, fault in enumerate(faults, 1) if fault]
    return whole, found


def ip(*words, **options):
    return subprocess.run(["ip", *words], check=False, capture_output=True, text=True, **options)


class FailingCallsTest(unittest.TestCase):
    maxDiff = None

    def check(self, words):
        whole, faults = faults_of(words)
        with self.subTest(words):
            self.assertEqual((whole.status, whole.fault), (0, None))
            self.assertEqual([fault for fault in faults if not known(fault)], [])

    def test_every_call_may_fail(self):
        for words in COMMANDS:
            self.check(words)

    @unittest.skipUnless(os.geteuid() == 0 and shutil.which("ip"), "needs root and iproute2")
    def test_every_call_to_the_kernel_may_fail(self):
        if ip("netns", "add", NAMESPACE).returncode:
            self.skipTest("this machine makes no network namespaces")
        self.addCleanup(ip, "netns", "del", NAMESPACE)
        self.assertEqual(ip("-n", NAMESPACE, "-batch", "-", input=NETWORK).stderr, "")
        self.check(KERNEL)


class SleepTest(unittest.TestCase):
    def test_a_listing_of_many_routes_never_sleeps(self):
        """Nobody else in the program waits for the turns that a long walk gives."""
        routes = {f"10.{i // 256}.{i % 256}.0/24": {"type": "static", "fec": "0.1"}
                  for i in range(5000)}
        state = {"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": routes}}}
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            json.dump(state, file)
            file.flush()
            run = Run(f"--state {file.name} show ip route", "nanosleep")
        self.assertEqual((run.status, run.fault, run.calls), (0, None, 0))
        self.assertIn(b"10.19.135.0/24", run.out)


def known(fault):
    return any(part in fault for part, _ in KNOWN_FAULTS)


if __name__ == "__main__":
    unittest.main()
