#!/usr/bin/env python3
"""Commands on a live kernel: in a network namespace of their own, which needs root."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import CommandTest, parse_json, rova, run_program

NAME = f"rova-command-{os.getpid()}"
STATE = f"kernel:{NAME}"
SETUP = """\
link set lo up
link add eth1 type veth peer name peer1
link set eth1 up
link set peer1 up
addr add 10.1.0.1/24 dev eth1
addr add 10.1.0.7/24 dev eth1
addr add 10.8.0.1 peer 10.8.0.2/32 dev eth1
addr add fd01::1/64 dev eth1 nodad
route add 20.0.0.0/8 via 10.1.0.2
route add 20.0.0.0/8 via 10.1.0.3 metric 5
route add 20.0.0.0/8 via 10.1.0.4 tos 8
route add 21.0.0.0/8 via 10.1.0.2 table 7
"""
# The lines that a display of the default VRF has on standard error and in its document.
HIDDEN = "rova: 2 routes of other metrics or TOS are not shown\n"
NOTES = {"hiddenRoutes": 2}


def ip(*words, **options):
    return subprocess.run(["ip", *words], check=False, capture_output=True, text=True, **options)


@unittest.skipUnless(os.geteuid() == 0 and shutil.which("ip"), "needs root and iproute2")
class KernelTest(CommandTest):
    @classmethod
    def setUpClass(cls):
        if ip("netns", "add", NAME).returncode:
            raise unittest.SkipTest("this machine makes no network namespaces")
        cls.addClassCleanup(ip, "netns", "del", NAME)
        if ip("-n", NAME, "-batch", "-", input=SETUP).returncode:
            raise unittest.SkipTest("no veth interfaces here")

    def test_diff_says_which_state_its_notes_are_of(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "saved.json"
            rova("snapshot", "save", str(path), state=STATE)
            result = run_program(["diff", path, STATE, "|", "json"])
        self.assertEqual((result.returncode, result.stderr.decode()),
                         (0, HIDDEN.replace("rova: ", f"rova: {STATE}: ")))
        self.assertEqual(parse_json(result.stdout),
                         {"from": {"source": str(path)}, "to": {"source": STATE, "state": NOTES},
                          "vrfs": {}})

    def test_checks_look_at_the_kernels_addresses(self):
        refusals = {
            ("next-hop", "10.1.0.1"): "10.1.0.1 is an address of this device in VRF default",
            ("next-hop", "10.1.0.7"): "10.1.0.7 is an address of this device in VRF default",
            ("next-hop", "fd01::1"): "fd01::1 is an address of this device in VRF default",
            ("address", "10.1.0.9/24", "interface", "peer1"):
                "Subnet 10.1.0.0 overlaps with existing subnet 10.1.0.0 of interface eth1",
        }
        for words, why in refusals.items():
            result = rova("check", *words, state=STATE)
            self.assertEqual((result.returncode, result.stdout, result.stderr),
                             (1, f"refused: {why}\n", ""), words)
        for words in (("next-hop", "10.1.0.2"), ("next-hop", "10.1.0.1", "vrf", "table-7"),
                      ("address", "10.2.0.1/24", "interface", "peer1"),
                      ("address", "10.1.0.1/16", "interface", "eth1", "replace")):
            result = rova("check", *words, state=STATE)
            self.assertEqual((result.returncode, result.stdout, result.stderr),
                             (0, "acceptable\n", ""), words)

    def test_hidden_routes_are_told_in_text_and_documents(self):
        for words in (("show", "ip", "route"), ("show", "ip", "route", "20.1.1.1"),
                      ("show", "ip", "route", "host"), ("show", "ip", "route", "summary"),
                      ("show", "running-config", "static"), ("show", "static")):
            with self.subTest(words):
                result = rova(*words, state=STATE)
                self.assertEqual((result.returncode, result.stderr), (0, HIDDEN))
                result = rova("--format", "json", *words, state=STATE)
                self.assertEqual((result.returncode, result.stderr), (0, HIDDEN))
                document = json.loads(result.stdout)
                self.assertEqual(document["state"], NOTES)
                self.assertEqual(list(document)[0], "state")

    def test_nothing_is_told_where_nothing_is_hidden(self):
        for words in (("show", "ipv6", "route"), ("show", "ip", "route", "vrf", "table-7"),
                      ("show", "nexthop-group"), ("check", "next-hop", "10.1.0.2")):
            result = rova("--format", "json", *words, state=STATE)
            self.assertEqual((result.returncode, result.stderr), (0, ""), words)
            self.assertNotIn("state", json.loads(result.stdout), words)

    def test_a_peer_is_not_this_device(self):
        hosts = rova("show", "ip", "route", "host", state=STATE).stdout
        self.assertIn("\n R  10.8.0.1 to cpu\n", hosts)
        self.assertIn("\n F  10.8.0.2 on eth1\n", hosts)
        routes = rova("show", "ip", "route", "10.8.0.2", state=STATE).stdout
        self.assertIn("\n K        10.8.0.2/32 is directly connected, eth1\n", routes)

    def test_an_unknown_vrf_is_answered_with_all(self):
        result = rova("show", "ip", "route", "vrf", "table-8", state=STATE)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, "there is no VRF \"table-8\".*default, table-7")

    def test_an_unknown_namespace_is_answered_with_all(self):
        result = rova("show", "ip", "route", state=f"{STATE}x")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, f"\"{NAME}x\": it is not in /run/netns, "
                                        f"which has (.*, )?{NAME}(,|\n)")

    def test_a_kernel_saves_and_loads(self):
        saved = rova("snapshot", "save", "-", state=STATE)
        self.assertEqual((saved.returncode, saved.stderr), (0, HIDDEN))
        section = json.loads(saved.stdout)["ipConfig"]["eth1"]
        self.assertIn("10.1.0.1/24", json.dumps(section))

    def test_names_and_tables_of_every_kind_come_back_from_a_snapshot(self):
        names = [os.fsdecode(name) for name in (b"a\xff", b"a\xfe")]
        ip("-n", NAME, "link", "add", names[0], "type", "veth", "peer", "name", names[1])
        self.addCleanup(ip, "-n", NAME, "link", "del", names[0])
        for metric in ("0", "5"):
            ip("-n", NAME, "route", "add", "22.0.0.0/8", "via", "10.1.0.2", "table", "4000000000",
               "metric", metric)
        self.addCleanup(ip, "-n", NAME, "route", "flush", "table", "4000000000")
        routes = rova("show", "ip", "route", "vrf", "table-4000000000", state=STATE)
        self.assertEqual(routes.stderr,
                         "rova: 1 route of other metrics or TOS is not shown\n")
        with tempfile.TemporaryDirectory() as folder:
            first, second = f"{folder}/first.json", f"{folder}/second.json"
            rova("snapshot", "save", first, state=STATE)
            again = rova("snapshot", "save", second, state=first)
            self.assertEqual((again.returncode, again.stderr), (0, ""))
            saved = Path(first).read_text()
            self.assertEqual(Path(second).read_text(), saved)
        document = json.loads(saved)
        self.assertLessEqual(set(names), set(document["ipStatus"]))
        self.assertEqual(document["vrfs"]["table-4000000000"]["id"], 16777214)


if __name__ == "__main__":
    unittest.main()
