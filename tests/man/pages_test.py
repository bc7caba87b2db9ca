#!/usr/bin/env python3
"""The manual pages against the programs: every command and option has its entry and no other is
there, every page is one that readers of pages take, and the words for programs are in both places."""

import json
import os
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILT = ROOT / "build/release/bin"
ROVA = os.environ.get("ROVA", str(BUILT / "rova"))
AGENT = os.environ.get("ROVA_AGENT", str(BUILT / "rova-agent"))
SCDOC, MANDOC = shutil.which("scdoc"), shutil.which("mandoc")
PAGES = sorted((ROOT / "man").glob("*.scd"))


def run(*words, stdin=None):
    return subprocess.run(words, input=stdin, capture_output=True, text=True, check=False)


def help_of(*words):
    result = run(*words)
    assert result.returncode == 0, result.stderr
    return result.stdout


def section(page, title):
    """The lines of a section, without what makes letters bold or underlined."""
    text = (ROOT / "man" / f"{page}.scd").read_text()
    found = re.search(rf"^# {title}\n(.*?)(?=^# |\Z)", text, re.MULTILINE | re.DOTALL)
    assert found, f"{page} has no section {title}"
    return re.sub(r"(?<!\\)\*|\\|(?<![a-z])_|_(?![a-z])", "", found[1]).splitlines()


def entries(page, title):
    """What the entries of a section are headed by."""
    lines = section(page, title)
    return [line.removesuffix("++") for line, below in zip(lines, lines[1:])
            if line and not line.startswith("\t") and (line.endswith("++") or below.startswith("\t"))]


def options_of(text):
    """The left sides of a table of options."""
    return re.findall(r"^  (-.*?)(?:  .*)?$", text, re.MULTILINE)


class PagesTest(unittest.TestCase):
    maxDiff = None

    def test_every_command_with_all_that_may_stand_in_it(self):
        commands = help_of(ROVA, "help").partition("\noptions:\n")[0]
        syntax = re.findall(r"^  (\S.*)$", commands, re.MULTILINE)
        self.assertGreater(len(syntax), 10)
        self.assertEqual(sorted(entries("rova.1", "COMMANDS")), sorted(syntax))

    def test_every_option(self):
        cases = [("rova.1", help_of(ROVA, "help").partition("\noptions:\n")[2].partition("\n\n")[0]),
                 ("rova-agent.8", help_of(AGENT, "--help"))]
        for page, text in cases:
            with self.subTest(page):
                options = [option.replace("--help, -h", "--help") for option in options_of(text)]
                self.assertGreater(len(options), 5)
                heads = [head.replace("--help, -h", "--help") for head in entries(page, "OPTIONS")]
                self.assertEqual(sorted(heads), sorted(options))

    def test_every_protocol(self):
        help_text = help_of(ROVA, "help", "show", "ip", "route")
        protocols = re.findall(r"^    ([a-z0-9]+)  ", help_text, re.MULTILINE)
        self.assertIn("ospf3", protocols)
        shown = " ".join(section("rova.1", "QUERIES")).partition("of a protocol:")[2].partition(".")[0]
        self.assertEqual(re.findall(r"[a-z0-9]+", re.sub(r"\(.*?\)", "", shown).replace(" or ", " ")),
                         protocols)

    def test_every_field_of_expressions(self):
        types = "prefix|address|number|name|word|yes or no"
        fields = re.findall(rf"^  ([a-z-]+) +({types})  +(.+)$", help_of(ROVA, "help", "where"), re.MULTILINE)
        self.assertGreater(len(fields), 20)
        table = " ".join(section("rova.1", "EXPRESSIONS")).partition("|[ field :[ type :[ values ")[2]
        shown = re.findall(rf"\|\[ (\S+) :\[ ({types}) :\[ ([^|]+?) *(?=\||$)", table)
        self.assertEqual(shown, fields)

    def test_every_section_of_a_snapshot(self):
        schema = json.loads((ROOT / "docs/snapshot.schema.json").read_text())
        shown = {name for head in entries("rova-snapshot.5", "SECTIONS") for name in head.split(", ")}
        self.assertEqual(shown, set(schema["properties"]))

    @unittest.skipUnless(SCDOC and MANDOC, "scdoc or mandoc is not installed")
    def test_every_page_is_one(self):
        self.assertGreaterEqual(len(PAGES), 5)
        for page in PAGES:
            with self.subTest(page.name):
                made = run(SCDOC, stdin=page.read_text())
                self.assertEqual((made.returncode, made.stderr), (0, ""))
                # What is below an error is about how scdoc writes, not about what is written.
                checked = run(MANDOC, "-T", "lint", "-W", "error", stdin=made.stdout)
                self.assertEqual((checked.returncode, checked.stdout), (0, ""))


if __name__ == "__main__":
    sys.exit(unittest.main())
