"""The examples of the package's document print what it shows."""

import doctest
import re
import shlex
import subprocess
import sys

import pytest

from conftest import ROOT

DOCUMENT = (ROOT / "docs" / "python.md").read_text()
PROMPT = "$ python3 docs/"


def blocks(language):
    return re.findall(rf"^```{language}\n(.*?)^```$", DOCUMENT, re.MULTILINE | re.DOTALL)


COMMANDS = [block for block in blocks("console") if block.startswith(PROMPT)]


@pytest.mark.parametrize("block", COMMANDS, ids=lambda block: shlex.split(block)[2])
def test_commands(block):
    command, _, output = block.partition("\n")
    words = [sys.executable, *shlex.split(command)[2:]]
    result = subprocess.run(words, cwd=ROOT, capture_output=True, text=True, check=False)
    assert (result.stdout, result.stderr) == (output, "")


def test_every_example_is_shown():
    examples = {path.name for path in (ROOT / "docs" / "examples").glob("*.py")}
    assert {shlex.split(block)[2].rpartition("/")[2] for block in COMMANDS} == examples


@pytest.mark.parametrize("example", sorted((ROOT / "docs" / "examples").glob("*.py")),
                         ids=lambda path: path.name)
def test_an_example_without_a_state_says_how_it_is_used(example):
    result = subprocess.run([sys.executable, example], capture_output=True, text=True, check=False)
    assert result.returncode == 1 and f"{example.name} STATE" in result.stderr


def test_interpreter_blocks(monkeypatch):
    """The blocks belong together: names of one are used in the next."""
    monkeypatch.chdir(ROOT)
    text = "\n".join(blocks("pycon"))
    test = doctest.DocTestParser().get_doctest(text, {}, "docs/python.md", None, 0)
    report = []
    results = doctest.DocTestRunner().run(test, out=report.append)
    assert results.attempted > 20 and not results.failed, "".join(report)
