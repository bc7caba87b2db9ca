"""What the tests of the command line share."""

import contextlib
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "scenarios"))
# pylint: disable=wrong-import-position,unused-import
from scenario import HERE, ROOT, TIMEOUT_SECONDS, all_scenarios, parse_json, program, run_program

# Two VRFs, default and red, one route of each family in each.
STATE = "tests/scenarios/vrfs/snapshot.json"

# Far more output than a pipe and the program's buffer hold together, so that a listing of it cannot
# end while nobody reads.
LONG_LISTING_ROUTES = 20_000


def rova(*words, state=STATE, stdin=None):
    """Runs `rova --state STATE WORDS...`, with a text as its input; the result has texts."""
    result = run_program(["--state", state, *words], input=stdin and stdin.encode())
    result.stdout, result.stderr = result.stdout.decode(), result.stderr.decode()
    return result


class CommandTest(unittest.TestCase):
    """Checks of results."""

    maxDiff = None

    def assert_ends(self, result, status, err):
        self.assertEqual((result.returncode, result.stderr), (status, err))

    def assert_succeeds(self, result):
        self.assert_ends(result, 0, "")
        self.assertNotEqual(result.stdout, "")


def snapshot_file(folder, vrf, **sections):
    """Writes a snapshot whose default VRF has the given fields."""
    path = Path(folder) / "snapshot.json"
    path.write_text(json.dumps({"rovaSnapshot": 1, "vrfs": {"default": vrf}, **sections}))
    return path


def static_routes(folder, count):
    """Writes a snapshot with so many IPv4 routes, 10.0.0.0/24 and on, all by one next hop."""
    routes = {f"10.{i >> 8}.{i & 255}.0/24": {"type": "static", "fec": "0.1"} for i in range(count)}
    fecs = {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}}
    return snapshot_file(folder, {"routingStatus": routes}, forwardingStatus=fecs)


@contextlib.contextmanager
def long_listing(*options):
    """Starts a listing too long for a pipe; yields the running process, with pipes."""
    with tempfile.TemporaryDirectory() as folder:
        path = static_routes(folder, LONG_LISTING_ROUTES)
        command = [program(), "--state", path, *options, "show", "ip", "route"]
        # Unbuffered: what is read ahead would be lost to communicate().
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              bufsize=0) as process:
            yield process
