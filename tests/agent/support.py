"""A network namespace with an agent that follows it."""

import json
import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "scenarios"))
# pylint: disable=wrong-import-position,unused-import
from output_schema import check_model, check_output

BUILT = Path(__file__).resolve().parents[2] / "build/release/bin"
ROVA = os.environ.get("ROVA", str(BUILT / "rova"))
AGENT = os.environ.get("ROVA_AGENT", str(BUILT / "rova-agent"))
PATIENCE = 30  # seconds, for whatever must come

# What the kernel itself counts goes on between two looks; "state" has what is to be known of the
# reading, but for the routes that are not shown.
APART = {"packets", "packetCount", "bytes", "byteCount", "state"}

DISPLAYS = [
    "show ip route vrf all detail",
    "show ipv6 route vrf all detail",
    "show ip route vrf all host",
    "show ipv6 route vrf all host",
    "show ip route vrf all summary",
    "show ipv6 route vrf all summary",
    "show nexthop-group",
    "show running-config static",
]


def run(*words):
    result = subprocess.run(words, capture_output=True, text=True, check=False)
    check_output(result.stdout)
    return result


def without_apart(value):
    if isinstance(value, dict):
        return {key: without_apart(one) for key, one in value.items() if key not in APART}
    return [without_apart(one) for one in value] if isinstance(value, list) else value


def display(state, words):
    """What a command shows of a state; configuration is text, all else JSON."""
    result = run(ROVA, "--state", state, "--format", "json", *words.split())
    if result.returncode != 0:
        return result.stderr.replace(state, "STATE")
    try:
        model = json.loads(result.stdout)
        return model.get("state", {}).get("hiddenRoutes", 0), without_apart(model)
    except ValueError:
        return result.stdout


class Namespace:
    """A network namespace of its own, removed with everything in it."""

    def __init__(self):
        self.name = f"rova-agent-{os.getpid()}"
        self.remove()
        if os.geteuid() != 0 or run("ip", "netns", "add", self.name).returncode != 0:
            raise unittest.SkipTest("network namespaces need root")

    def remove(self):
        run("ip", "netns", "del", self.name)

    def ip(self, words):
        """Whether `ip WORDS` succeeds in it."""
        return run("ip", "-n", self.name, *words.split()).returncode == 0

    def batch(self, lines, family="-4"):
        """Many `ip` commands in one process; those that fail are passed over."""
        text = "\n".join(lines) + "\n"
        subprocess.run(["ip", family, "-n", self.name, "-force", "-batch", "-"], input=text, text=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)

    def inside(self, *words):
        return run("ip", "netns", "exec", self.name, *words)


class Agent:
    """A running rova-agent, with its log."""

    def __init__(self, *words, umask=-1, **environment):
        self.log = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([AGENT, *words], stderr=self.log, umask=umask,
                                        env={**os.environ, **environment})

    def read_log(self):
        self.log.seek(0)
        return self.log.read()

    def wait_for(self, text):
        """Until the log has it."""
        end = time.monotonic() + PATIENCE
        while text not in self.read_log():
            if self.process.poll() is not None or time.monotonic() > end:
                raise AssertionError(f"no {text!r} in the log:\n{self.read_log()}")
            time.sleep(0.02)

    def send(self, number):
        self.process.send_signal(number)

    def end(self, number=signal.SIGTERM):
        if self.process.poll() is None:
            self.send(number)
        return self.process.wait(PATIENCE)


class AgentTest(unittest.TestCase):
    """A namespace with interfaces, and a folder for the database."""

    maxDiff = 4000

    def setUp(self):
        self.netns = Namespace()
        self.addCleanup(self.netns.remove)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.file = str(self.folder / "state.db")
        self.agent = None
        self.netns.batch(["link set lo up",
                          "link add eth1 type veth peer name peer1",
                          "link add eth2 type veth peer name peer2"])
        for link in ("eth1", "peer1", "eth2", "peer2"):
            self.netns.ip(f"link set {link} up")
        self.netns.batch(["addr add 10.1.0.1/24 dev eth1", "addr add 10.2.0.1/24 dev eth2"])
        self.netns.batch(["addr add fd01::1/64 dev eth1 nodad", "addr add fd02::1/64 dev eth2 nodad"], "-6")

    def start(self, *words, **environment):
        if self.agent:
            self.kill()
        self.agent = Agent("--netns", self.netns.name, "--state", self.file, *words, **environment)
        self.addCleanup(self.kill)
        self.agent.wait_for("loaded")

    def kill(self):
        """Without a chance to tidy up."""
        if self.agent.log.closed:
            return
        if self.agent.process.poll() is None:
            self.agent.process.kill()
        self.agent.process.wait()
        self.agent.log.close()

    def differences(self):
        return [words for words in DISPLAYS if display(self.file, words) != display(self.kernel(), words)]

    def kernel(self):
        return f"kernel:{self.netns.name}"

    def assert_current(self, hint=""):
        """The database comes to show what the kernel has, and then does so in each display."""
        end = time.monotonic() + PATIENCE
        while (left := self.differences()) and time.monotonic() < end:
            time.sleep(0.1)
        for words in left:
            self.assertEqual(display(self.file, words), display(self.kernel(), words),
                             f"{words}; {hint}\n{self.agent.read_log()}")

    def wait_until(self, holds, seconds=10):
        end = time.monotonic() + seconds
        while not holds():
            log = self.agent.read_log() if self.agent and not self.agent.log.closed else ""
            self.assertLess(time.monotonic(), end, log)
            time.sleep(0.005)

    def facts(self):
        rows = run("sqlite3", "-readonly", self.file, "select key, value from meta").stdout
        return dict(line.split("|", 1) for line in rows.splitlines())
