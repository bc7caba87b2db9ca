#!/usr/bin/env python3
"""Every call of the system, failed in its turn: a command then says so, or does all that it does
otherwise, and a file that it writes is the old one or the new one."""

import errno
import functools
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from judge import ROOT, all_of, end_fault, program

# What is not mended yet: (part of the fault's text, why). Without its line a case counts.
KNOWN_FAULTS = []

# A failure that the command has to tell, or that it can do without what failed.
FATAL = [("malloc", "ENOMEM"), ("open", "EACCES"), ("read", "EIO"), ("write", "ENOSPC"),
         ("fsync", "EIO"), ("close", "EIO"), ("rename", "EACCES")]
# One that it gets over; a write without an error takes one byte.
HARMLESS = [("read", "EINTR"), ("write", "EINTR"), ("write", "EAGAIN"), ("write", "")]
# What nothing can be done without.
NEEDED = {"read", "write", "rename"}

STATES = "tests/scenarios"
LISTING = f"--state {STATES}/vrfs/snapshot.json show ip route vrf all detail"
LINES = f"--state {STATES}/static-routes/snapshot.json show running-config static vrf all"
LOAD = "static load FOLDER/lines --into FOLDER/saved.json"
COMMANDS = [LISTING, LINES, LOAD,
            f"--state {STATES}/nexthop-group-ipv6/snapshot.json --format json show nexthop-group",
            f"--state {STATES}/vrfs/snapshot.json snapshot save -",
            f"--state {STATES}/vrfs/snapshot.json snapshot save FOLDER/saved.json"]
# Where each of the hundreds of allocations fails once.
WITHOUT_MEMORY = [LISTING, LINES, LOAD]
OLD = {"saved.json": b'{"rovaSnapshot": 1}\n', "lines": b"ip route 10.0.0.0/8 Null0\n"}


class Run:
    """A command in a folder of its own, with a call failed."""

    def __init__(self, words, call="", error="", at=0):
        with tempfile.TemporaryDirectory(prefix="rova-calls-") as folder:
            for name, content in OLD.items():
                (Path(folder) / name).write_bytes(content)
            environment = {
                **os.environ, "LD_PRELOAD": os.environ["FAILING_CALLS"], "FAIL_CALL": call,
                "FAIL_ERRNO": str(getattr(errno, error, 0)), "FAIL_AT": str(at),
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
    if run.status == 0 and call in NEEDED and (call, error) in FATAL:
        return "no word of it"
    torn = [name for name, content in run.files.items()
            if content not in (OLD.get(name), whole.files.get(name))]
    return f"left a file that is neither old nor new: {torn}" if torn else None


def faults_of(words):
    """The command as it is without failures, and all faults of it."""
    whole = Run(words)
    found = []
    for call, error in FATAL + HARMLESS:
        if call == "malloc" and words not in WITHOUT_MEMORY:
            continue
        count = Run(words, call).calls
        runs = all_of(functools.partial(Run, words, call, error), range(1, count + 1))
        faults = [fault_of(whole, call, error, run) for run in runs]
        found += [f"{words}: {call} {error}: {fault} (call {at} of {count})"
                  for at, fault in enumerate(faults, 1) if fault]
    return whole, found


class FailingCallsTest(unittest.TestCase):
    def test_every_call_may_fail(self):
        for words in COMMANDS:
            whole, faults = faults_of(words)
            with self.subTest(words):
                self.assertEqual((whole.status, whole.fault), (0, None))
                self.assertEqual([fault for fault in faults if not known(fault)], [])


def known(fault):
    return any(part in fault for part, _ in KNOWN_FAULTS)


if __name__ == "__main__":
    unittest.main()
