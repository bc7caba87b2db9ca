#!/usr/bin/env python3
"""The agent beside a kernel that changes at random: then every display of its database shows what the
kernel has. ROVA_AGENT_SEED makes it another run ("random" any), ROVA_AGENT_OPERATIONS a longer one."""

import os
import random
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
# pylint: disable=wrong-import-position
from random_operations import Operations
from support import AgentTest

GIVEN = os.environ.get("ROVA_AGENT_SEED", "1")
SEED = random.randrange(1 << 32) if GIVEN == "random" else int(GIVEN)
COUNT = int(os.environ.get("ROVA_AGENT_OPERATIONS", 200))
HINT = f"ROVA_AGENT_SEED={SEED}"


class LiveTest(AgentTest):
    """Each test ends with a comparison of all displays."""

    def setUp(self):
        print(HINT, file=sys.stderr)
        super().setUp()
        self.operations = Operations(SEED)

    def change(self, count, *kinds):
        for line in self.operations.some(count, *kinds):
            self.netns.ip(line)

    def test_everything_changes(self):
        self.start()
        for _ in range(4):
            self.change(COUNT // 4)
            self.assert_current(HINT)
        self.assertEqual(self.agent.end(), 0)

    def test_routes_alone_change(self):
        """Which has a way of its own, without a look at anything else."""
        self.netns.batch(["nexthop add id 1 via 10.1.0.2 dev eth1", "nexthop add id 4 via fd01::2 dev eth1"])
        self.start()
        for _ in range(4):
            self.change(COUNT // 4, self.operations.route, self.operations.route, self.operations.neighbour)
            self.assert_current(HINT)

    def test_after_violence(self):
        """Killed and started again, stopped for a while, without room for what is notified."""
        self.start(ROVA_AGENT_ROOM="4096")
        for turn in range(3):
            self.change(COUNT // 8)
            if turn % 2 == 0:
                self.kill()
                self.change(COUNT // 8)
                self.start(ROVA_AGENT_ROOM="4096")
            self.agent.send(signal.SIGSTOP)
            self.change(COUNT // 8)
            self.agent.send(signal.SIGCONT)
            self.netns.batch([f"route replace 30.{i // 250}.{i % 250}.0/24 via 10.1.0.{2 + turn} dev eth1"
                              for i in range(2000)])
            self.assert_current(HINT)


if __name__ == "__main__":
    sys.exit(unittest.main())
