#!/usr/bin/env python3
"""The examples of the documents: each is run again, and prints what its document shows."""

import re
import shlex
import unittest

from support import ROOT, CommandTest, run_program

DOCUMENTS = ["docs/guide.md", "docs/output.md", "docs/python.md", "README.md"]
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PROMPT = "$ rova "
# Only states of the scenarios, and what needs no state, are the same on every machine.
STARTS = (PROMPT + "--state tests/scenarios/", PROMPT + "diff tests/scenarios/", PROMPT + "types",
          PROMPT + "help")


def examples(document):
    """The commands of a document's console blocks on states of scenarios, with their outputs."""
    for block in BLOCK.findall(document):
        if not block.startswith(STARTS):
            continue
        for part in re.split(rf"^(?={re.escape(PROMPT)})", block, flags=re.MULTILINE)[1:]:
            command, _, output = part.partition("\n")
            yield command, output


class DocsTest(CommandTest):
    def test_examples(self):
        found = 0
        for name in DOCUMENTS:
            path = ROOT / name
            if not path.exists():
                continue
            for command, output in examples(path.read_text()):
                with self.subTest(f"{name}: {command}"):
                    result = run_program(shlex.split(command.removeprefix(PROMPT)))
                    shown = (result.stdout + result.stderr).decode()
                    # A block may leave out the blank line at the end of a listing.
                    self.assertEqual(shown.rstrip("\n"), output.rstrip("\n"))
                found += 1
        self.assertGreater(found, 0, "no examples found")

    def test_the_guide_has_every_command_and_option(self):
        words = run_program(["--help"]).stdout.decode()
        guide = (ROOT / "docs/guide.md").read_text()
        names = re.findall(r"^  ((?:[a-z-]+ )*[a-z-]+)(?: .*)?\n      ", words, re.MULTILINE)
        options = re.findall(r"^  (--[a-z-]+)", words, re.MULTILINE)
        self.assertGreater(min(len(names), len(options)), 5)
        for name in (*names, *options):
            self.assertTrue(re.search(rf"(?m)^\| `{re.escape(name)}\b", guide), f"no row of {name}")


if __name__ == "__main__":
    unittest.main()
