#!/usr/bin/env python3
"""The shell: lines from a file, keys on a terminal, and the completion of bash."""

import fcntl
import json
import os
import pty
import re
import select
import signal
import stat
import struct
import subprocess
import tempfile
import termios
import time
import unittest
from pathlib import Path

from support import (LONG_LISTING_ROUTES, ROOT, STATE, TIMEOUT_SECONDS, CommandTest, program, rova,
                     run_program, snapshot_file)

GROUPS = "tests/scenarios/nexthop-groups/snapshot.json"
ESCAPE = re.compile(r"\x1b(\[[0-9;?]*[A-Za-z]|[()][0-9A-Za-z]|[=>])")
ROUTE_LINE = " S        10.1.0.0/16 [1/0] via 192.0.2.1, Ethernet1\n"
RED_LINE = " S        10.2.0.0/16 [1/0] via 192.0.2.1, Ethernet1\n"
CTRL_C, CTRL_D, UP = "\x03", "\x04", "\x1b[A"

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

# Lines of a file, the status, and what standard error says.
FAILING = [
    ("show foo\n", 2,
     'rova: "foo" is not understood: expected ip, ipv6, nexthop-group, running-config, static or state\n'
     "  show foo\n"
     "       ^\n"
     "rova: line 1 failed: show foo\n"),
    ("\nshow ip route vrf blue\nshow foo bar\nshow ip route | count\n", 1,
     f'rova: {STATE}: there is no VRF "blue"; the VRFs are default, red\n'
     "rova: line 2 failed: show ip route vrf blue\n"
     'rova: "foo" is not understood: expected ip, ipv6, nexthop-group, running-config, static or state\n'
     "  show foo bar\n"
     "       ^\n"
     "rova: line 3 failed: show foo bar\n"),
    ("vrf blue\n", 1,
     f'rova: {STATE}: there is no VRF "blue"; the VRFs are default, red\n'
     "rova: line 1 failed: vrf blue\n"),
    ("state /nowhere.json\n", 1,
     "rova: /nowhere.json: cannot be read: No such file or directory\nrova: line 1 failed: state /nowhere.json\n"),
    ("check next-hop 10.0.0.1 | no\nshow ip route | foo\n", 2,
     'rova: "foo" is not understood: expected text, json, include, exclude, count or no-more\n'
     "  show ip route | foo\n"
     "                  ^\n"
     "rova: line 2 failed: show ip route | foo\n"),
    ("show ip route | include\n", 2,
     "rova: expected a text\n"
     "  show ip route | include\n"
     "                          ^\n"
     "rova: line 1 failed: show ip route | include\n"),
    ("show ip route | count all\n", 2,
     'rova: "all" is not understood: expected |\n'
     "  show ip route | count all\n"
     "                        ^\n"
     "rova: line 1 failed: show ip route | count all\n"),
    ("show ip route | include 'x", 2,
     "rova: the quotes are not closed\n"
     "  show ip route | include 'x\n"
     "                          ^\n"
     "rova: line 1 failed: show ip route | include 'x\n"),
    ("state -\n", 2,
     "rova: the shell reads its commands from standard input: expected the name of a file, or a kernel\n"
     "  state -\n"
     "        ^\n"
     "rova: line 1 failed: state -\n"),
]

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


class Terminal:
    """A shell on a pseudo-terminal: keys go in, and the screen is what came out so far."""

    def __init__(self, home, *words, columns=200):
        self.screen = ""
        self.process, self.master = pty.fork()
        if self.process == 0:
            os.chdir(ROOT)
            os.environ.update(HOME=str(home), TERM="xterm", LC_ALL="C.UTF-8")
            os.environ.pop("XDG_STATE_HOME", None)
            os.execv(program(), [program(), *map(str, words)])
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", 50, columns, 0, 0))

    def keys(self, keys):
        os.write(self.master, keys.encode())

    def read(self, seconds):
        """Whether more came within that time; False also at the end."""
        if not select.select([self.master], [], [], seconds)[0]:
            return False
        try:
            more = os.read(self.master, 1 << 16)
        except OSError:
            return False
        self.screen += ESCAPE.sub("", more.decode("utf-8", "replace")).replace("\r", "")
        return bool(more)

    def wait(self, pattern):
        """What came up to the pattern, which is taken off the screen."""
        end = time.monotonic() + TIMEOUT_SECONDS
        while not (found := re.search(pattern, self.screen)):
            if time.monotonic() > end or (not self.read(0.2) and self.ended()):
                raise AssertionError(f"no {pattern!r} in {self.screen[-2000:]!r}")
        text, self.screen = self.screen[:found.end()], self.screen[found.end():]
        return text

    def run(self, line, prompt):
        """Types a line at the prompt; what came up to the next prompt."""
        self.keys(line + "\r")
        return self.wait(re.escape(prompt))

    def ended(self):
        if self.process:
            process, status = os.waitpid(self.process, os.WNOHANG)
            if not process:
                return False
            self.process, self.status = 0, os.waitstatus_to_exitcode(status)
        return True

    def end(self):
        """The exit status."""
        end = time.monotonic() + TIMEOUT_SECONDS
        while not self.ended():
            self.read(0.05)
            if time.monotonic() > end:
                raise AssertionError("the shell does not end")
        return self.status

    def close(self):
        if self.process:
            os.kill(self.process, signal.SIGKILL)
            os.waitpid(self.process, 0)
        os.close(self.master)


class ShellTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.history = self.folder / ".local/state/rova/history"

    def terminal(self, *words, prompt="snapshot.json> "):
        shell = Terminal(self.folder, *words)
        self.addCleanup(shell.close)
        shell.wait(re.escape(prompt))
        return shell

    def long_state(self):
        return self.state_with(*(f"10.{i >> 8}.{i & 255}.0/24" for i in range(LONG_LISTING_ROUTES)))

    def state_with(self, *prefixes):
        """A snapshot whose default VRF has these routes."""
        routes = {prefix: {"type": "static", "fec": "0.1"} for prefix in prefixes}
        fecs = {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}}
        return snapshot_file(self.folder, {"routingStatus": routes}, forwardingStatus=fecs)


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
        for lines, status, err in FAILING:
            with self.subTest(lines):
                self.assert_ends(rova(stdin=lines), status, err)

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
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        process = subprocess.Popen([program(), "--state", fifo], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, start_new_session=True)
        process.stdin.write(b"show ip route\nshow state\n")
        process.stdin.close()
        time.sleep(0.3)  # nothing tells that a child has begun to wait
        process.send_signal(signal.SIGINT)  # to the shell alone: its command must not stay behind
        self.assertEqual(process.wait(TIMEOUT_SECONDS), 130)
        self.assertEqual(process.stdout.read(), b"")  # comes to its end when both are gone
        process.stdout.close()

    def test_each_command_sees_the_state_as_it_is_then(self):
        path = self.state_with("10.0.0.0/8")
        with subprocess.Popen([program(), "--state", path], stdin=subprocess.PIPE, text=True,
                              stdout=subprocess.PIPE) as process:
            process.stdin.write("show ip route | include 10.0.0.0/8\n")
            process.stdin.flush()
            self.assertIn("10.0.0.0/8", process.stdout.readline())
            self.state_with("10.64.0.0/10")
            out, _ = process.communicate("show ip route | include 10.\n", timeout=TIMEOUT_SECONDS)
        self.assertIn("10.64.0.0/10", out)
        self.assertNotIn("10.0.0.0/8", out)

    def test_a_command_cannot_read_the_lines_of_others(self):
        lines = "static load - --into x.json --dry-run\nshow ip route | count\n"
        result = rova(stdin=lines)
        self.assertEqual(result.returncode, 1)
        self.assertIn("rova: line 1 failed", result.stderr)
        self.assertRegex(result.stdout, r"^\d+\n$")

    def test_a_reader_that_goes_away_ends_no_shell(self):
        lines = f"show ip route | include 10.\nshow ip route\nsnapshot save {self.folder}/saved.json\n"
        with subprocess.Popen([program(), "--state", self.long_state()], stdin=subprocess.PIPE,
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
        for words, status in ((["--timing"], 2), (["--state"], 2), ([" "], 2), (["--state", "-"], 2)):
            with self.subTest(words):
                self.assertEqual(run_program(words, input=b"types\n").returncode, status)

    def test_an_input_that_cannot_be_read(self):
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        result = subprocess.run([program()], stdin=folder, check=False, capture_output=True)
        self.assertEqual((result.returncode, result.stderr),
                         (1, b"rova: standard input: Is a directory\n"))


class TerminalTest(ShellTest):
    def test_prompts(self):
        shell = self.terminal("--state", STATE)
        self.assertIn("10.1.0.0/16", shell.run("sh ip ro", "snapshot.json> "))
        self.assertIn("no VRF", shell.run("vrf blue", "snapshot.json> "))
        shell.run("vrf red", "snapshot.json(vrf red)> ")
        self.assertIn("10.2.0.0/16", shell.run("sh ip ro", "snapshot.json(vrf red)> "))
        shell.run("state kernel", "kernel> ")
        shell.keys("exit\r")
        self.assertEqual(shell.end(), 0)

    def test_ends(self):
        for keys in (CTRL_D, "quit\r", "show foo\rexit\r"):
            with self.subTest(keys):
                shell = self.terminal("--state", STATE)
                shell.keys(keys)
                self.assertEqual(shell.end(), 0)

    def test_the_terminal_is_left_as_it_was(self):
        flags = termios.ICANON | termios.ECHO | termios.ISIG
        for end, status in ((lambda shell: shell.keys(CTRL_D), 0),
                            (lambda shell: os.kill(shell.process, signal.SIGTERM), 143)):
            shell = self.terminal("--state", STATE)
            shell.keys("show")
            shell.wait("show")
            self.assertEqual(termios.tcgetattr(shell.master)[3] & flags, 0)
            shell.keys("\x15")  # Ctrl-D ends an empty line
            end(shell)
            self.assertEqual(shell.end(), status)
            self.assertEqual(termios.tcgetattr(shell.master)[3] & flags, flags)

    def test_tab(self):
        shell = self.terminal("--state", STATE)
        for typed, _ in TABS:
            shell.keys(typed + "\t\x01#\r")  # a comment, which only the history keeps
            shell.wait("snapshot.json> ")
        lines = [line.removeprefix("#").rstrip() for line in self.history.read_text().splitlines()]
        self.assertEqual(lines, [expected for _, expected in TABS])

    def test_tab_has_the_names_of_the_state(self):
        shell = self.terminal("--state", GROUPS)
        shell.keys("show nexthop-group \t")
        self.assertRegex(shell.wait(r"snapshot.json> "), r"name +vrf +summary +core +edge\n")
        shell.keys("e\t\r")
        shell.wait(r"Name: edge|edge")
        shell.wait(r"snapshot.json> ")
        shell.keys("--state tests/scenarios/vrfs/snapshot.json show ip route interface E\t\r")
        shell.wait(r"interface Ethernet1")
        self.assertEqual(self.history.read_text().splitlines()[0], "show nexthop-group edge ")

    def test_tab_without_a_state(self):
        shell = self.terminal("--state", "/nowhere.json", prompt="nowhere.json> ")
        shell.keys("show ip route vrf \tred\r")
        self.assertIn("/nowhere.json", shell.wait("nowhere.json> "))

    def test_question_mark(self):
        for typed, rows in QUESTIONS:
            with self.subTest(typed):
                shell = self.terminal("--state", STATE)
                shell.keys(typed + "?")
                shown = shell.wait(r"snapshot.json> ")
                for row in rows:
                    self.assertRegex(shown, r"(?m)^ *" + row)
                shell.wait(re.escape(typed.rstrip()))  # the line stands there again

    def test_question_mark_inside_quotes(self):
        shell = self.terminal("--state", STATE)
        shell.run("show ip route | include '?' | count", "snapshot.json> ")
        self.assertEqual(self.history.read_text(), "show ip route | include '?' | count\n")

    def test_ctrl_c_drops_the_line(self):
        shell = self.terminal("--state", STATE)
        shell.keys("show ip ro" + CTRL_C)
        shell.wait("snapshot.json> ")
        self.assertEqual(shell.run("show state | include Kind", "snapshot.json> ").count("Kind"), 2)
        self.assertNotIn("show ip ro", self.history.read_text())

    def test_ctrl_c_ends_a_listing(self):
        path = self.long_state()
        for line in ("show ip route", "show ip route | include 10.", "show ip route | json"):
            with self.subTest(line):
                shell = self.terminal("--state", path)
                shell.keys(line + "\r")
                shell.wait(r"10\.0\.7\.0")
                shell.keys(CTRL_C)
                self.assertLess(shell.wait("snapshot.json> ").count("\n"), LONG_LISTING_ROUTES / 2)
                self.assertIn("snapshot", shell.run("show state | include Kind", "snapshot.json> "))

    def test_ctrl_c_ends_what_waits(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        shell = self.terminal("--state", fifo, prompt="fifo> ")
        for line in ("show ip route", "show ip route | count"):
            shell.keys(line + "\r")
            shell.wait("\n")
            time.sleep(0.2)  # nothing tells that a child has begun to wait
            shell.keys(CTRL_C)
            shell.wait("fifo> ")

    def test_history(self):
        shell = self.terminal("--state", STATE)
        shell.run("show state | include Kind", "snapshot.json> ")
        shell.keys(CTRL_D)
        shell.end()
        self.assertEqual(stat.S_IMODE(self.history.stat().st_mode), 0o600)
        shell = self.terminal("--state", STATE)
        shell.keys(UP + "\r")
        shell.wait("Kind +snapshot\n")

    def test_a_history_that_cannot_be_kept(self):
        (self.folder / ".local").write_text("a file where a folder would stand")
        shell = self.terminal("--state", STATE)
        shown = shell.run("show state | include Kind", "snapshot.json> ")
        self.assertNotIn("rova:", shown)
        shell.keys(CTRL_D)
        self.assertEqual(shell.end(), 0)

    def test_a_command_that_aborts_ends_alone(self):
        path = snapshot_file(self.folder, {"routing6Status": {"::/0": {"type": "nexthopGroup"}}})
        shell = self.terminal("--state", path)
        self.assertIn("rova: the command was ended by signal 6 (Aborted)",
                      shell.run("show ipv6 route", "snapshot.json> "))
        self.assertIn("snapshot", shell.run("show state | include Kind", "snapshot.json> "))

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
                        shell.wait("snapshot.json> ")


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
