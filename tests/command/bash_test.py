#!/usr/bin/env python3
"""The completion of bash."""

import json
import os
import pty
import re
import select
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import ROOT, STATE, TIMEOUT_SECONDS, CommandTest, program, run_program

GROUPS = "tests/scenarios/nexthop-groups/snapshot.json"

# The line up to the cursor, and the words that bash may put in the place of the last one.
BASH = [
    ("rova sh", ["show"]),
    ("rova show ip r", ["route"]),
    ("rova show ", ["ip", "ipv6", "nexthop-group", "running-config", "static", "state"]),
    (f"rova --state {STATE} show ip route vrf ", ["all", "default", "red"]),
    (f"rova --state {STATE} show ip route interface ", ["Ethernet1"]),
    (f"rova --state {GROUPS} show nexthop-group c", ["core"]),
    (f"rova --state {STATE} show ipv6 route 2001:db8::/32 lo", ["longer-prefixes"]),
    (f"rova --state={STATE} show ip route vrf r", ["red"]),
    ("rova --state tests/scenarios/vr", ["tests/scenarios/vrfs/"]),
    ("rova --state 'tests/scenarios/vr", ["tests/scenarios/vrfs/"]),
    ("rova --fo", ["--format"]),
    ("rova --format ", ["text", "json"]),
    ("rova foo b", []),
    ("rova --state /nowhere show ip route vrf r", []),
    ("rova comp", []),
]

ASK_BASH = """
PATH=$1:$PATH
source command/rova.bash
COMP_LINE=$2 COMP_POINT=${#2}
COMP_WORDS=("${@:3}")
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
compopt() { :; }
_rova
printf '%s\\n' "${COMPREPLY[@]}"
"""


def words_of_bash(line):
    """As bash parts them: at blanks, and around ":" and "="."""
    words = re.findall(r"[:=]+|'[^']*|[^\s:=]+", line)
    return words + [""] if line.endswith(" ") else words


class BashTest(CommandTest):
    def ask(self, line):
        """What bash is told, a candidate a line."""
        result = subprocess.run(
            ["bash", "-c", ASK_BASH, "bash", str(Path(program()).parent), line, *words_of_bash(line)],
            cwd=ROOT, capture_output=True, text=True, check=False)
        self.assertEqual(result.stderr, "")
        return result.stdout

    def test_completion(self):
        for line, expected in BASH:
            with self.subTest(line):
                self.assertEqual(self.ask(line).split(), expected)

    def test_names_that_mean_something_to_bash(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "snapshot.json")
            names = ["default", "x$(touch y)", "x;reboot", "x:y", "x y", "x\x1b[2J"]
            path.write_text(json.dumps({"rovaSnapshot": 1, "vrfs": {
                name: {"id": number} for number, name in enumerate(names)}}))
            for typed, expected in (("x;", "x\\;reboot\n"), ("x:", "y\n"), ("x$", "\n"), ("x\x1b", "\n")):
                with self.subTest(typed):
                    self.assertEqual(self.ask(f"rova --state {path} show ip route vrf {typed}"), expected)

    def test_an_interactive_bash(self):
        """Bash parts the words itself."""
        master, slave = pty.openpty()
        with subprocess.Popen(["bash", "--norc", "--noprofile", "-i"], cwd=ROOT, stdin=slave, stdout=slave,
                              stderr=slave, start_new_session=True,
                              env={**os.environ, "PATH": f"{Path(program()).parent}:{os.environ['PATH']}",
                                   "TERM": "dumb"}) as bash:
            os.close(slave)
            os.write(master, b"source command/rova.bash\n")
            os.write(master, f"rova --state {STATE} show ipv6 route 2001:db8:2::/48 vr\tr\t| wc -l; exit\n".encode())
            screen = b""
            while select.select([master], [], [], TIMEOUT_SECONDS)[0]:
                try:
                    screen += os.read(master, 1 << 16)
                except OSError:
                    break
            bash.wait(TIMEOUT_SECONDS)
        os.close(master)
        self.assertIn(b"2001:db8:2::/48 vrf red | wc -l", screen)

    def test_a_listing_of_candidates_says_nothing_of_errors(self):
        for words in (["show", "foo", ""], ["--state", "/nowhere", "show", "ip", "route", "vrf", ""], []):
            self.assert_ends(run := run_program(["complete", "--", *words]), 0, b"")
            self.assertEqual(run.stdout, b"")


if __name__ == "__main__":
    unittest.main()
