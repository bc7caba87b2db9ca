#!/usr/bin/env python3
"""States that cannot be shown: one line on standard error, and status 1."""

import os
import signal
import tempfile
import unittest
from pathlib import Path

from support import ROOT, STATE, CommandTest, rova, snapshot_file

# The text of a snapshot, and what is told about it; what else is refused is tested without the
# command.
BAD_SNAPSHOTS = [
    ('{"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {"10.0.0.0/8": '
     '{"type": "static", "preference": 300}}}}}',
     '$.vrfs.default.routingStatus["10.0.0.0/8"].preference: '
     "found 300, expected a number from 0 to 255"),
    ("", "line 1"),
    ("\0", ""),
    ('{"rovaSnapshot": 1,\n "vrfs": {"default"',
     "line 2, column 20: the snapshot ends early, inside the object that begins at line 2, column 10"),
]

# A VRF and an interface of each section that may name one, and what is near to some of them.
VRF = {
    "routingConfig": {"routes": [{"prefix": "10.0.0.0/8", "vias": [{"interface": "Config4"}]}]},
    "routing6Config": {"routes": [{"prefix": "2001:db8::/32", "vias": [{"interface": "Config6"}]}]},
    "routeInput": {"agent": [{"prefix": "10.1.0.0/16", "vias": [{"interface": "Input4"}]}]},
    "route6Input": {"agent": [{"prefix": "2001:db9::/32", "vias": [{"interface": "Input6"}]}]},
    "kernelUnprogrammedRoute": [{"prefix": "10.2.0.0/16", "interface": "Refused4"}],
    "kernelUnprogrammedRoute6": [{"prefix": "2001:db8::/32", "interface": "Refused6"}],
}
SECTIONS = {
    "forwardingStatus": {"0.1": {"vias": [{"interface": "Other1"}, {"interface": "Fec4"}]}},
    "forwarding6Status": {"1.1": {"vias": [{"hop": "fe80::1", "interface": "Fec6"}]}},
    "policyForwardingStatus": {"15.1": {"vias": [{"interface": "Policy1"}]}},
    "allIntfConfig": {"Ethernet1": {}},
    "ipStatus": {"Status4": {}},
    "ip6Status": {"Status6": {}},
    "ipConfig": {"Address4": {}},
    "ip6Config": {"Address6": {}},
    "arpVanta": [{"interface": "Neighbor4", "address": "192.0.2.1"},
                 {"interface": "Neighbor6", "address": "fe80::1"}],
    "nhgConfig": {"west": {"sourceIntf": "Loopback7"}},
    "nhEntryStatus": {"west": 1, "edge": 2},
    "nhgHwStatus": {"default": {"1": {"via": {"0": {"l3Intf": "Vlan7", "l2Intf": "Port7"}}}}},
    "tunnelFib": {"entries": {"1.1": {"vias": [{"interface": "Tunneled1"}],
                                      "backupVias": [{"interface": "Tunneled2"}]}}},
}
INTERFACES = """Config4 Config6 Input4 Input6 Refused4 Refused6 Other1 Fec4 Fec6 Policy1 Ethernet1
    Status4 Status6 Address4 Address6 Neighbor4 Neighbor6 Loopback7 Vlan7 Port7 Tunneled1
    Tunneled2""".split()

# Command lines, and what they are told of the last name in them.
NO_SUCH = [
    ("show ip route interface nosuch", 'interface "nosuch"'),
    ("show ipv6 route interface Ethrnet1", 'interface "Ethrnet1"; did you mean "Ethernet1"?'),
    ("show ip route bgp interface ETHERNET1", 'interface "ETHERNET1"; did you mean "Ethernet1"?'),
    ("show ip route interface Refsued4", 'interface "Refsued4"; did you mean "Refused4"?'),
    ("show ip route interface Fec", 'interface "Fec"; did you mean "Fec4"?'),
    ("clear static interface Confg44", 'interface "Confg44"; did you mean "Config4"?'),
    ("clear static interface Et --dry-run", 'interface "Et"'),
    ("show nexthop-group nosuch", 'nexthop group "nosuch"'),
    ("show nexthop-group ege", 'nexthop group "ege"; did you mean "edge"?'),
    ("show nexthop-group name summary", 'nexthop group "summary"'),
    ("show ip route vrf defalt interface nosuch",
     'VRF "defalt"; did you mean "default"? The VRFs are default'),
    ("show nexthop-group nosuch vrf blue", 'VRF "blue"; the VRFs are default'),
]


class SourceTest(CommandTest):
    def test_unknown_vrf(self):
        for family in ("ip", "ipv6"):
            self.assert_ends(rova("show", family, "route", "vrf", "blue"), 1,
                             f'rova: {STATE}: there is no VRF "blue"; '
                             "the VRFs are default, red\n")

    def test_names_that_do_not_exist(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, VRF, **SECTIONS)
            before = path.read_bytes()
            for command, told in NO_SUCH:
                with self.subTest(command):
                    result = rova(*command.split(), state=path)
                    self.assert_ends(result, 1, f"rova: {path}: there is no {told}\n")
                    self.assertEqual(result.stdout, "")
            self.assertEqual(path.read_bytes(), before)

    def test_an_interface_exists_wherever_the_state_names_it(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, VRF, **SECTIONS)
            for name in INTERFACES:
                with self.subTest(name):
                    self.assert_succeeds(rova("show", "ip", "route", "interface", name, state=path))

    def test_a_nexthop_group_may_be_without_configuration_or_identifier(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, {}, nhgConfig={"west": {}}, nhEntryStatus={"edge": 2})
            for name in ("west", "edge"):
                self.assert_ends(rova("show", "nexthop-group", name, state=path), 0, "")

    def test_a_kernel_without_its_name(self):
        self.assert_ends(rova("show", "ip", "route", state="kernel:"), 1,
                         'rova: "kernel:" lacks the name of a network namespace: expected '
                         "kernel:NAME, or kernel for this machine's own\n")

    def test_standard_input(self):
        text = (ROOT / STATE).read_text()
        for words in (("show", "ip", "route"), ("snapshot", "save", "-")):
            self.assertEqual(rova(*words, state="-", stdin=text).stdout, rova(*words).stdout)
        for words, given, told in (
                (("vrf", "blue"), text, 'there is no VRF "blue"; the VRFs are default, red'),
                (("interface", "nosuch"), text, 'there is no interface "nosuch"'),
                ((), "{", "line 1, column 2: the snapshot ends early, inside the object that begins "
                          "at line 1, column 1")):
            self.assert_ends(rova("show", "ip", "route", *words, state="-", stdin=given), 1,
                             f"rova: standard input: {told}\n")

    def test_vrf_names_are_not_abbreviated(self):
        self.assertEqual(rova("show", "ip", "route", "vrf", "re").returncode, 1)

    def test_unreadable_file(self):
        for path, reason in (("/nowhere/x.json", "No such file or directory"),
                             ("/tmp", "Is a directory")):
            self.assert_ends(rova("show", "ip", "route", state=path), 1,
                             f"rova: {path}: cannot be read: {reason}\n")

    def test_a_file_that_is_too_long_is_not_read(self):
        with tempfile.NamedTemporaryFile() as file:
            os.truncate(file.name, 2**32)
            for words, state in ((("show", "ip", "route"), file.name),
                                 (("static", "load", file.name, "--dry-run"), STATE)):
                self.assert_ends(rova(*words, state=state), 1,
                                 f"rova: {file.name}: found more than 4 GB of text, expected less\n")

    def test_bad_snapshots_have_one_line(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "bad.json"
            for text, told in BAD_SNAPSHOTS:
                with self.subTest(text):
                    path.write_text(text)
                    result = rova("show", "ip", "route", state=path)
                    self.assertEqual((result.returncode, result.stdout), (1, ""))
                    self.assertRegex(result.stderr, r"\Arova: [^\n]*bad\.json: [^\n]+\n\Z")
                    self.assertIn(told, result.stderr)

    def test_an_ipv6_route_kept_without_its_fec_is_an_internal_failure(self):
        with tempfile.TemporaryDirectory() as folder:
            path = snapshot_file(folder, {"routing6Status": {"::/0": {"type": "nexthopGroup"}}})
            result = rova("show", "ipv6", "route", state=path)
            self.assertEqual(result.returncode, -signal.SIGABRT)
            self.assertIn("Assertion failed", result.stderr)


if __name__ == "__main__":
    unittest.main()
