#!/usr/bin/env python3
"""The scripts for a fresh machine: what they ask for and build, seen by stand-ins for the tools."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import ROOT

# Each writes down how it was called. All packages are installed; cmake leaves what it is asked for.
TOOLS = {
    "dpkg-query": 'echo "install ok installed"',
    "cmake": """mkdir -p build/release/bin
touch build/release/build.ninja
ln -sf /bin/true build/release/bin/rova""",
}


class ScriptsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        shutil.copytree(ROOT / "scripts", self.folder / "scripts")
        tools = self.folder / "tools"
        tools.mkdir()
        for name, body in TOOLS.items():
            path = tools / name
            path.write_text(f'#!/bin/sh\necho "{name} $*" >>"{self.folder}/calls"\n{body}\n')
            path.chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}"}

    def calls(self, script, *words):
        """The calls that a script makes, by tool."""
        (self.folder / "calls").write_text("")
        subprocess.run([self.folder / "scripts" / script, *words], check=True, timeout=30,
                       env=self.environment, stdout=subprocess.DEVNULL)
        lines = (self.folder / "calls").read_text().splitlines()
        return {tool: [line for line in lines if line.startswith(tool)] for tool in TOOLS}

    def test_the_demonstration_needs_the_command_alone(self):
        calls = self.calls("demo")
        configured, built = calls["cmake"]
        self.assertIn("-DROVA_BUILD_TESTS=OFF", configured)
        self.assertTrue(built.endswith("--target rova"), built)
        asked = [line.split()[-1] for line in calls["dpkg-query"]]
        self.assertIn("libsimdjson-dev", asked)
        self.assertNotIn("libgtest-dev", asked)
        self.assertNotIn("python3-pytest", asked)

    def test_the_build_takes_in_again_what_the_demonstration_left_out(self):
        self.calls("demo")
        configured, built = self.calls("build")["cmake"]
        self.assertNotIn("OFF", configured)
        self.assertTrue(built.endswith("--target all"), built)
        # A folder that has its tests keeps them.
        self.assertEqual(len(self.calls("demo")["cmake"]), 1)

    def test_setup_knows_its_groups(self):
        asked = [line.split()[-1] for line in self.calls("setup")["dpkg-query"]]
        self.assertIn("g++", asked)
        self.assertIn("libgtest-dev", asked)
        self.assertNotIn("clang", asked)
        with self.assertRaises(subprocess.CalledProcessError):
            self.calls("setup", "nonsense")

    def fuzz(self, *words, status=0):
        """What fuzzing says; its fuzzer of the kernel's messages ran 7 inputs and ends so."""
        fuzzer = self.folder / "build/fuzz/bin/netlink_fuzzer"
        fuzzer.parent.mkdir(parents=True, exist_ok=True)
        fuzzer.write_text(
            f"#!/bin/sh\necho 'stat::number_of_executed_units: 7' >&2\nexit {status}\n")
        fuzzer.chmod(0o755)
        return subprocess.run([self.folder / "scripts/fuzz", *words], env=self.environment,
                              capture_output=True, text=True, timeout=30, check=False)

    def test_fuzzing_takes_targets_and_seconds(self):
        shutil.copytree(ROOT / "fuzz", self.folder / "fuzz")
        result = self.fuzz("netlink", "2")
        self.assertEqual((result.returncode, result.stdout),
                         (0, "netlink: 7 executions in 2 seconds, no findings\n"))
        self.assertTrue((self.folder / "calls").read_text().endswith("--target netlink_fuzzer\n"))
        result = self.fuzz("netlink", status=77)
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.endswith("netlink: 7 executions, 1 finding\n"))
        self.assertEqual(self.fuzz("nonsense").returncode, 2)


if __name__ == "__main__":
    unittest.main()
