"""A scenario: a command on a snapshot, and what it prints as text and as JSON.

A scenario is a folder with

    command         comments that say what it shows (#), then the command line, without the
                    program's name and --state
    snapshot.json   the state; a folder without one uses that of the folder above, so that commands
                    on one state stand side by side
    expected.txt    the text; <SECONDS> stands for a time
    expected.json   the model, compared as values: its layout and the order of keys are free
    expected.status, expected.err
                    the exit status and the standard error

A file that is not there stands for no output, for an exit status of 0.
"""

import json
import os
import re
import shlex
import subprocess
from pathlib import Path

from output_schema import check_output

ROOT = Path(__file__).resolve().parents[2]
HERE = Path(__file__).resolve().parent
DEFAULT_PROGRAM = ROOT / "build" / "release" / "bin" / "rova"
# A command that hangs fails its test instead of stopping all of them.
TIMEOUT_SECONDS = 30


def program():
    """The program under test: $ROVA, or that of the release build."""
    return os.environ.get("ROVA", str(DEFAULT_PROGRAM))


def run_program(arguments, **options):
    """Runs the program in the project's root; the result has bytes. JSON fits its schema."""
    result = subprocess.run([program(), *map(str, arguments)], cwd=ROOT, capture_output=True,
                            timeout=TIMEOUT_SECONDS, check=False, **options)
    check_output(result.stdout)
    return result


def _unique(pairs):
    keys = [key for key, _ in pairs]
    twice = sorted({key for key in keys if keys.count(key) > 1})
    if twice:
        raise ValueError(f"keys that stand twice in one object: {', '.join(twice)}")
    return dict(pairs)


def _no_constant(word):
    raise ValueError(f"{word} is no JSON number")


def parse_json(text):
    """Parses JSON strictly: valid UTF-8, one document, no key twice, no NaN or Infinity."""
    if isinstance(text, bytes):
        text = text.decode("utf-8")
    return json.loads(text, object_pairs_hook=_unique, parse_constant=_no_constant)


def without_times(text):
    """The text with <SECONDS> in place of its times."""
    return re.sub(r"(?<=: )-?\d+\.\d{6}(?= seconds\.$)", "<SECONDS>", text, flags=re.MULTILINE)


class Scenario:
    """One folder."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.name = str(self.folder.relative_to(HERE))
        lines = (self.folder / "command").read_text().splitlines()
        commands = [line for line in lines if line and not line.startswith("#")]
        if len(commands) != 1:
            raise ValueError(f"{self.folder / 'command'}: found {len(commands)} command lines, "
                             "expected one")
        self.words = shlex.split(commands[0])

    @property
    def snapshot(self):
        own = self.folder / "snapshot.json"
        path = own if own.exists() else self.folder.parent / "snapshot.json"
        return path.relative_to(ROOT)

    def run(self, *options):
        return run_program(["--state", self.snapshot, *options, *self.words])

    def expected(self, name, default):
        path = self.folder / f"expected.{name}"
        return path.read_text() if path.exists() else default


def all_scenarios():
    return [Scenario(path.parent) for path in sorted(HERE.rglob("command"))]
