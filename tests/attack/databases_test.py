#!/usr/bin/env python3
"""State databases whose content nobody means: no display of one may be stopped by a signal, not even
by a fatal assertion.

    databases_test.py              a short run, always the same
    databases_test.py SEED COUNT   more of them
"""

import itertools
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from judge import CONTROL, HERE, all_of, parse_json, program
from mutator import Mutator
from snapshots_test import DISPLAYS

SEED, COUNT = 1, 60
TIMEOUT_SECONDS = 20
PAGE = 4096


def run(*words, data=None):
    return subprocess.run([program(), *words], input=data, capture_output=True, check=False,
                          timeout=TIMEOUT_SECONDS)


def faults_of(database):
    """What is wrong with the ends of the displays of a database, each with its command."""
    faults = []
    for words, model in itertools.product(["snapshot save -", *DISPLAYS], (False, True)):
        options = ["--format", "json"] if model else []
        try:
            result = run("--state", database, *options, *words.split())
        except subprocess.TimeoutExpired:
            faults.append((words, "hang"))
            continue
        err = result.stderr.decode("utf-8", "replace")
        if result.returncode not in (0, 1) or (result.returncode == 1 and not result.stdout and
                                               err.count("\n") != 1):
            faults.append((words, f"ended with {result.returncode}: {err}"))
        elif CONTROL.search(err):
            faults.append((words, f"control character in the message: {err!r}"))
    os.remove(database)
    return faults


class DatabasesTest(unittest.TestCase):
    seed, count = SEED, COUNT

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.random = random.Random(self.seed)

    def path(self, number):
        return str(Path(self.folder.name) / f"{number}.db")

    def assert_shows(self, databases):
        self.assertGreater(len(databases), 0)
        for database, faults in zip(databases, all_of(faults_of, databases)):
            for words, fault in faults:
                with self.subTest(database=database, words=words, seed=self.seed):
                    self.fail(fault)

    def test_states_that_nobody_means(self):
        whole = [parse_json(path.read_bytes()) for path in sorted(HERE.rglob("snapshot.json"))]
        mutator = Mutator(whole, self.random)
        loaded = []
        for number in range(2 * self.count):
            data = mutator.mutated(mutator.random.choice(whole))
            result = run("snapshot", "load", "-", "--into", self.path(number), data=data)
            self.assertIn(result.returncode, (0, 1), result.stderr)
            if result.returncode == 0:
                loaded.append(self.path(number))
        self.assert_shows(loaded)

    def damaged(self, original, number):
        """A copy in which bits are turned, pages stand in each other's place, or the end lacks."""
        path = self.path(number)
        shutil.copyfile(original, path)
        data = bytearray(Path(path).read_bytes())
        kind = self.random.randrange(4)
        if kind == 0:
            del data[self.random.randrange(len(data)):]
        elif kind == 1:
            one, other = (PAGE * self.random.randrange(len(data) // PAGE) for _ in range(2))
            data[one:one + PAGE], data[other:other + PAGE] = data[other:other + PAGE], data[one:one + PAGE]
        else:
            for _ in range(self.random.randrange(1, 12)):
                data[self.random.randrange(len(data))] ^= 1 << self.random.randrange(8)
        Path(path).write_bytes(data)
        return path

    def test_damaged_files(self):
        originals = []
        for name in ("leaf", "tunnels", "nexthop-group-counters", "static-routes"):
            original = self.path(name)
            if run("snapshot", "load", str(HERE / name / "snapshot.json"), "--into",
                   original).returncode == 0:
                originals.append(original)
        self.assert_shows([self.damaged(self.random.choice(originals), number)
                           for number in range(self.count // 2)])


if __name__ == "__main__":
    if len(sys.argv) > 1:
        DatabasesTest.seed = int(sys.argv[1])
        DatabasesTest.count = int(sys.argv[2]) if len(sys.argv) > 2 else COUNT
    unittest.main(argv=sys.argv[:1])
