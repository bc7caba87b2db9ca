"""What the tests of the Python package share."""

import json
import shlex
from pathlib import Path

import pytest

import rova

ROOT = Path(__file__).resolve().parents[2]
SCENARIOS = ROOT / "tests" / "scenarios"


def open_scenario(name):
    """The device of a scenario's snapshot."""
    return rova.open(SCENARIOS / name / "snapshot.json")


@pytest.fixture
def vrfs_device():
    """Two VRFs, default and red, one route of each family in each."""
    return open_scenario("vrfs")


class Listing:
    """A scenario of the command: its words and the model that people reviewed."""

    def __init__(self, folder):
        self.name = str(folder.relative_to(SCENARIOS))
        self.state = next(path / "snapshot.json" for path in (folder, folder.parent)
                          if (path / "snapshot.json").exists())
        lines = (folder / "command").read_text().splitlines()
        self.words = shlex.split(next(line for line in lines if line and line[0] != "#"))
        self.expected = json.loads((folder / "expected.json").read_text())


def listings(*begin):
    """The scenarios whose command begins with the words, and that print a model."""
    folders = sorted(path.parent for path in SCENARIOS.rglob("expected.json"))
    found = [Listing(folder) for folder in folders]
    return [listing for listing in found if listing.words[:len(begin)] == list(begin)]
