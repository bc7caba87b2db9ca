#!/usr/bin/env python3
"""The shell: lines from a file, and keys on a terminal."""

import os
import re
import signal
import stat
import subprocess
import tempfile
import termios
import time
import unittest
from pathlib import Path

from support import (LONG_LISTING_ROUTES, ROOT, STATE, TIMEOUT_SECONDS, CommandTest, program, rova,
                     run_program, snapshot_file, static_routes)
from terminal import CTRL_C, CTRL_D, UP, Terminal

GROUPS = "tests/scenarios/nexthop-groups/snapshot.json"
ROUTE_LINE = " S        10.1.0.0/16 [1/0] via 192.0.2.1, Ethernet1\n"
RED_LINE = " S        10.2.0.0/16 [1/0] via 192.0.2.1, Ethernet1\n"
PROMPT = "snapshot.json> "

# Lines of a file on the scenario of VRFs, and what the last of them prints.
BATCH = [
    ("show ip route | include 10.", ROUTE_LINE),
    ("sh ip ro | inc 10.", ROUTE_LINE),
    ("show ip route|include 10.", ROUTE_LINE),
    ("show ip route | include via 192.0.2.1", ROUTE_LINE),
    ("show ip route | include 'via 192.0.2.1'", ROUTE_LINE),
    ("show ip route | include via  192.0.2.1   # one blank", ROUTE_LINE),
    ("show ip route | include 10. | exclude Ethernet1", ""),
    ("show ip route | include 10. | count", "1\n"),
    ("show ip route | include nothing | count", "0\n"),
    ("show ip route | count | include 7 | exclude 7 | count", "0\n"),
    ("show ip route vrf all | include '/16 ' | no-more", ROUTE_LINE + RED_LINE),
    ("show ip route | include \"|\" | count", "0\n"),
    ("show ip route | include '#' | count", "0\n"),
    ("# nothing\n\n   \nshow ip route | include 10. # a comment\r", ROUTE_LINE),
    ("vrf red\nshow ip route | include 10.", RED_LINE),
    ("vrf red\nshow ip route vrf default | include 10.", ROUTE_LINE),
    ("vrf red\nvrf default\nshow ip route | include 10.", ROUTE_LINE),
    ("vrf red\nshow ip route 10.2.3.4 | include 10.", RED_LINE),
    ("exit\nshow ip route", ""),
    ("quit\nshow ip route", ""),
    (f"state {GROUPS}\nshow state | include Source", f"Source              {GROUPS}\n"),
    (f"--state {GROUPS} show state | include Source\nshow state | include Source",
     f"Source              {GROUPS}\nSource              {STATE}\n"),
    (f"vrf red\nstate {STATE}\nshow ip route | include 10.", ROUTE_LINE),
    ("exit --help | include Leave\nshow state | include Kind",
     "Leave the shell.\nKind                snapshot\n"),
]

NO_VRF = f'{STATE}: there is no VRF "blue"; the VRFs are default, red'
NO_SHOW = '"foo" is not understood: expected ip, ipv6, nexthop-group, running-config, static or state'
# Lines of a file, the status, and of each line that fails its number, its error, and the column
# that the error points at.
FAILING = [
    ("show foo\n", 2, [(1, NO_SHOW, 5)]),
    ("\nshow ip route vrf blue\nshow foo bar\nshow ip route | count\n", 1, [(2, NO_VRF, None), (3, NO_SHOW, 5)]),
    ("vrf blue\n", 1, [(1, NO_VRF, None)]),
    ("state /nowhere.json\n", 1, [(1, "/nowhere.json: cannot be read: No such file or directory", None)]),
    ("check next-hop 10.0.0.1 | no\nshow ip route | foo\n", 2,
     [(2, '"foo" is not understood: expected text, json, include, exclude, count or no-more', 16)]),
    ("show ip route | include\n", 2, [(1, "expected a text", 24)]),
    ("show ip route | count all\n", 2, [(1, '"all" is not understood: expected |', 22)]),
    ("show ip route | include 'x", 2, [(1, "the quotes are not closed", 24)]),
    ("state -\n", 2, [(1, "the shell reads its commands from standard input: expected the name of a file, or a kernel",
                       6)]),
]


def errors_of(lines, failing):
    """What standard error says of the lines that fail."""
    text = ""
    for number, error, column in failing:
        line = lines.splitlines()[number - 1]
        pointer = "" if column is None else f"  {line}\n  {'':{column}}^\n"
        text += f"rova: {error}\n{pointer}rova: line {number} failed: {line}\n"
    return text


# What is typed ahead of a Tab, and the line that it becomes.
TABS = [
    ("sh", "show"),
    ("show ip r", "show ip route"),
    ("sh ip ro su", "sh ip ro summary"),
    ("show ip route lon", "show ip route lon"),
    ("show ip route 10.0.0.0/8 lon", "show ip route 10.0.0.0/8 longer-prefixes"),
    ("show ip route vrf r", "show ip route vrf red"),
    ("vrf d", "vrf default"),
    ("show ip route --ti", "show ip route --timing"),
    ("types RouteSortK", "types RouteSortKey"),
    ("show ip route | inc", "show ip route | include"),
    ("show ip route | include 10. | j", "show ip route | include 10. | json"),
    ("state tests/scenarios/vr", "state tests/scenarios/vrfs/"),
    ("foo b", "foo b"),
]

# What is typed ahead of a "?", and rows that the answer has.
QUESTIONS = [
    ("show ip route ", [r"vrf +that VRF in place of the default one, or all", r"<cr> +the line as it is",
                        r"\| +another form of the output"]),
    ("sh ip r", [r"route +The IPv4 routing table of a VRF, its host route table, or a summary of"]),
    ("show ip route vrf ", [r"NAME\|all +that VRF in place of the default one, or all"]),
    ("show ip route | ", [r"json +a document for programs", r"include +the lines with a text in them",
                          r"count +how many lines there are"]),
    ("show ip route | include ", [r"TEXT +the lines with a text"]),
    ("", [r"show +What the state has, as displays\.", r"exit +Leave the shell\."]),
    ("foo ", [r'rova: "foo" is not understood: expected show, ']),
    ("show foo", [r'rova: "foo" is not understood: expected ip, ']),
]

# The words of a command that starts a shell, and all up to the end of its block.
SESSION = re.compile(r"^```console\n\$ rova (--state \S+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class ShellTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.history = self.folder / ".local/state/rova/history"

    def terminal(self, *words, prompt=PROMPT):
        """A shell whose first prompt stands; of the usual state where no words name another one."""
        shell = Terminal(self.folder, *(words or ("--state", STATE)))
        self.addCleanup(shell.close)
        shell.wait(re.escape(prompt))
        return shell

    def kind(self, shell):
        """What a shell that is well answers."""
        return shell.run("show state | include Kind", PROMPT)

    def fifo(self):
        """A state that a command waits for."""
        os.mkfifo(self.folder / "fifo")
        return self.folder / "fifo"


class FileTest(ShellTest):
    def test_lines(self):
        for lines, expected in BATCH:
            with self.subTest(lines):
                result = rova(stdin=lines)
                self.assert_ends(result, 0, "")
                self.assertEqual(result.stdout, expected)

    def test_output_is_that_of_the_command(self):
        for line in ("show ip route", "show ip route | json", "show ip route vrf all summary", "help show",
                     "show ip route | json | no-more", "types"):
            with self.subTest(line):
                words = line.removesuffix(" | no-more").split()
                self.assertEqual(rova(stdin=line).stdout, rova(*words).stdout)
        self.assertEqual(run_program(["--state", STATE, "--format=json"], input=b"show ip route").stdout.decode(),
                         rova("show", "ip", "route", "|", "json").stdout)

    def test_failing_lines(self):
        for lines, status, failing in FAILING:
            with self.subTest(lines):
                self.assert_ends(rova(stdin=lines), status, errors_of(lines, failing))

    def test_a_refused_check_is_a_failure(self):
        result = rova(stdin="check next-hop 10.0.1.1\ntypes | include RouteSortKey | count",
                      state="tests/scenarios/static-checks/snapshot.json")
        self.assert_ends(result, 1, "rova: line 1 failed: check next-hop 10.0.1.1\n")
        self.assertRegex(result.stdout, r"^refused: .*\n1\n$")

    def test_the_example_of_the_document(self):
        text = (ROOT / "docs/shell.md").read_text()
        lines, output, status = re.search(
            r"\n\$ cat commands.txt\n(.*?)\$ rova --state \S+ < commands.txt\n(.*?)\$ echo \$\?\n(\d)\n", text,
            re.DOTALL).groups()
        result = subprocess.run([program(), "--state", STATE], cwd=ROOT, input=lines, text=True, check=False,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual((result.stdout, result.returncode), (output, int(status)))

    def test_an_interrupt_ends_it_all(self):
        process = subprocess.Popen([program(), "--state", self.fifo()], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, start_new_session=True)
        process.stdin.write(b"show ip route\nshow state\n")
        process.stdin.close()
        time.sleep(0.3)  # nothing tells that a child has begun to wait
        process.send_signal(signal.SIGINT)  # to the shell alone: its command must not stay behind
        self.assertEqual(process.wait(TIMEOUT_SECONDS), 130)
        self.assertEqual(process.stdout.read(), b"")  # comes to its end when both are gone
        process.stdout.close()

    def test_each_command_sees_the_state_as_it_is_then(self):
        path = static_routes(self.folder, 1)
        with subprocess.Popen([program(), "--state", path], stdin=subprocess.PIPE, text=True,
                              stdout=subprocess.PIPE) as process:
            process.stdin.write("show ip route | include 10. | count\n")
            process.stdin.flush()
            self.assertEqual(process.stdout.readline(), "1\n")
            static_routes(self.folder, 2)
            out, _ = process.communicate("show ip route | include 10. | count\n", timeout=TIMEOUT_SECONDS)
        self.assertEqual(out, "2\n")

    def test_a_command_cannot_read_the_lines_of_others(self):
        lines = "static load - --into x.json --dry-run\nshow ip route | count\n"
        result = rova(stdin=lines)
        self.assertEqual(result.returncode, 1)
        self.assertIn("rova: line 1 failed", result.stderr)
        self.assertRegex(result.stdout, r"^\d+\n$")

    def test_a_reader_that_goes_away_ends_no_shell(self):
        lines = f"show ip route | include 10.\nshow ip route\nsnapshot save {self.folder}/saved.json\n"
        with subprocess.Popen([program(), "--state", static_routes(self.folder, LONG_LISTING_ROUTES)], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            process.stdout.close()
            process.stdin.write(lines.encode())
            process.stdin.close()
            self.assertEqual((process.wait(TIMEOUT_SECONDS), process.stderr.read()), (0, b""))
        self.assertTrue((self.folder / "saved.json").exists())

    def test_output_that_is_refused(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            for line in ("show ip route", "show ip route | include 10.", "show ip route | count"):
                with self.subTest(line):
                    result = subprocess.run([program(), "--state", STATE], cwd=ROOT, text=True, stdout=full,
                                            input=line, stderr=subprocess.PIPE, check=False)
                    self.assertEqual(result.returncode, 1)
                    self.assertRegex(result.stderr, f"^rova: .*No space left on device\nrova: line 1 failed: ")

    def test_what_starts_no_shell(self):
        for words in (["--timing"], ["--state"], [" "], ["--state", "-"]):
            with self.subTest(words):
                self.assertEqual(run_program(words, input=b"types\n").returncode, 2)

    def test_an_input_that_cannot_be_read(self):
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        result = subprocess.run([program()], stdin=folder, check=False, capture_output=True)
        self.assertEqual((result.returncode, result.stderr),
                         (1, b"rova: standard input: Is a directory\n"))


class TerminalTest(ShellTest):
    def test_prompts(self):
        shell = self.terminal()
        self.assertIn("10.1.0.0/16", shell.run("sh ip ro", PROMPT))
        self.assertIn("no VRF", shell.run("vrf blue", PROMPT))
        shell.run("vrf red", "snapshot.json(vrf red)> ")
        self.assertIn("10.2.0.0/16", shell.run("sh ip ro", "snapshot.json(vrf red)> "))
        shell.run("state kernel", "kernel> ")

    def test_ends(self):
        """Each leaves the terminal as it was."""
        for keys, status in ((CTRL_D, 0), ("quit\r", 0), ("show foo\rexit\r", 0), ("", 143)):
            with self.subTest(keys):
                shell = self.terminal()
                shell.keys("show")
                shell.wait("show")
                self.assertEqual(shell.local_flags(), 0)
                shell.keys("\x15" + keys)  # Ctrl-D ends an empty line
                if not keys:
                    os.kill(shell.process, signal.SIGTERM)
                self.assertEqual(shell.end(), status)
                self.assertEqual(shell.local_flags(), termios.ICANON | termios.ECHO | termios.ISIG)

    def test_tab(self):
        shell = self.terminal()
        for typed, _ in TABS:
            shell.keys(typed + "\t\x01#\r")  # a comment, which only the history keeps
            shell.wait(PROMPT)
        lines = [line.removeprefix("#").rstrip() for line in self.history.read_text().splitlines()]
        self.assertEqual(lines, [expected for _, expected in TABS])

    def test_tab_has_the_names_of_the_state(self):
        shell = self.terminal("--state", GROUPS)
        shell.keys("show nexthop-group \t")
        self.assertRegex(shell.wait(PROMPT), r"name +vrf +summary +core +edge\n")
        shell.keys("e\t\r")
        shell.wait(r"Name: edge|edge")
        shell.wait(PROMPT)
        shell.keys("--state tests/scenarios/vrfs/snapshot.json show ip route interface E\t\r")
        shell.wait(r"interface Ethernet1")
        self.assertEqual(self.history.read_text().splitlines()[0], "show nexthop-group edge ")

    def test_tab_without_a_state(self):
        shell = self.terminal("--state", "/nowhere.json", prompt="nowhere.json> ")
        self.assertIn("/nowhere.json", shell.run("show ip route vrf \tred", "nowhere.json> "))

    def test_question_mark(self):
        shell = self.terminal()
        shell.run("show ip route | include '?' | count", PROMPT)  # inside of quotes it is no question
        self.assertEqual(self.history.read_text(), "show ip route | include '?' | count\n")
        for typed, rows in QUESTIONS:
            with self.subTest(typed):
                shell = self.terminal()
                shell.keys(typed + "?")
                shown = shell.wait(PROMPT)
                for row in rows:
                    self.assertRegex(shown, r"(?m)^ *" + row)
                shell.wait(re.escape(typed.rstrip()))  # the line stands there again

    def test_ctrl_c_drops_the_line(self):
        shell = self.terminal()
        shell.keys("show ip ro" + CTRL_C)
        shell.wait(PROMPT)
        self.assertEqual(self.kind(shell).count("Kind"), 2)
        self.assertNotIn("show ip ro", self.history.read_text())

    def test_ctrl_c_ends_a_listing(self):
        path = static_routes(self.folder, LONG_LISTING_ROUTES)
        for line in ("show ip route", "show ip route | include 10.", "show ip route | json"):
            with self.subTest(line):
                shell = self.terminal("--state", path)
                shell.keys(line + "\r")
                shell.wait(r"10\.0\.7\.0")
                shell.keys(CTRL_C)
                self.assertLess(shell.wait(PROMPT).count("\n"), LONG_LISTING_ROUTES / 2)
                self.assertIn("snapshot", self.kind(shell))

    def test_ctrl_c_ends_what_waits(self):
        shell = self.terminal("--state", self.fifo(), prompt="fifo> ")
        for line in ("show ip route", "show ip route | count"):
            shell.keys(line + "\r")
            shell.wait("\n")
            time.sleep(0.2)  # nothing tells that a child has begun to wait
            shell.keys(CTRL_C)
            shell.wait("fifo> ")

    def test_history(self):
        shell = self.terminal()
        self.kind(shell)
        shell.keys(CTRL_D)
        shell.end()
        self.assertEqual(stat.S_IMODE(self.history.stat().st_mode), 0o600)
        shell = self.terminal()
        shell.keys(UP + "\r")
        shell.wait("Kind +snapshot\n")

    def test_a_history_that_cannot_be_kept(self):
        (self.folder / ".local").write_text("a file where a folder would stand")
        shell = self.terminal()
        self.assertNotIn("rova:", self.kind(shell))
        shell.keys(CTRL_D)
        self.assertEqual(shell.end(), 0)

    def test_a_command_that_aborts_ends_alone(self):
        path = snapshot_file(self.folder, {"routing6Status": {"::/0": {"type": "nexthopGroup"}}})
        shell = self.terminal("--state", path)
        self.assertIn("rova: the command was ended by signal 6 (Aborted)",
                      shell.run("show ipv6 route", PROMPT))
        self.assertIn("snapshot", self.kind(shell))

    def test_sessions_of_the_document(self):
        sessions = SESSION.findall((ROOT / "docs/shell.md").read_text())
        self.assertGreater(len(sessions), 0)
        for words, text in sessions:
            shell = self.terminal(*words.split())
            # Each part is what was typed, up to a "?" or the end of the line, and what came of it.
            for part in re.split(r"(?m)^snapshot\.json(?:\(vrf red\))?> ", text)[1:]:
                line, _, output = part.partition("\n")
                with self.subTest(line):
                    shell.keys(line if line.endswith("?") else line + "\r")
                    if line == "exit":
                        self.assertEqual(shell.end(), 0)
                        continue
                    shown = shell.wait(r"(?m)^snapshot\.json(\(vrf red\))?> ")
                    self.assertEqual(shown.partition("\n")[2].rpartition("snapshot.json")[0], output)
                    if line.endswith("?"):
                        shell.keys(CTRL_C)
                        shell.wait(PROMPT)


if __name__ == "__main__":
    unittest.main()
