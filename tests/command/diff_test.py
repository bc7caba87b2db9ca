#!/usr/bin/env python3
"""diff: what differs between the listings of two states, and nothing else."""

import json
import os
import re
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import (HERE, LONG_LISTING_ROUTES, TIMEOUT_SECONDS, CommandTest, parse_json, program,
                     run_program)

SNAPSHOTS = sorted(HERE.rglob("snapshot.json"))
FAMILIES = {"ip": "ipv4", "ipv6": "ipv6"}

# Text that a listing prints in another way than its routes one at a time.
TEXT_OF_ITS_OWN = {
    ("missing-fec", "ip"): "a route without its FEC is no part of JSON, and is not compared",
    ("tunnels-other-family", "ip"): "the form changes in the midst of the listing, with the first "
                                    "IPv6 next hop behind a tunnel",
    ("tunnel-weights", "ip"): "a FEC without rows is weighed anew by a second look",
}

# The keys that --ignore leaves out, by field.
KEYS = {
    "type": ["routeType"], "protocol": ["routeType"], "preference": ["preference"],
    "metric": ["metric"], "nexthop": ["nexthopAddr"],
    "interface": ["interface", "interfaceDescription"], "vias": ["vias"], "weight": ["viaWeight"],
    "label": ["labelStack"], "tunnel": ["tunnelDescriptor", "tunnelEncap"],
    "endpoint": ["tunnelEndpoint", "endpoint"], "policy": ["srTePolicy"], "color": ["color"],
    "group": ["nexthopGroup"], "vni": ["vni"], "vtep": ["vtepAddr", "routerMac"],
    "source-vrf": ["srcVrf"], "leaked": ["routeLeaked", "srcVrf"],
    "hardware": ["hardwareProgrammed"], "kernel": ["kernelProgrammed"],
    "connected": ["directlyConnected"], "backup": ["viaType"],
}


# The second state has other numbers of FECs, which no listing shows.
BEFORE, AFTER = (HERE / "diff" / name for name in ("before.json", "after.json"))

CHANGED_HOP = """\
- S        10.1.0.0/16 [1/0] via 192.0.2.1, Ethernet1
+ S        10.1.0.0/16 [1/0] via 192.0.2.5, Ethernet2
"""
CHANGED_METRIC = """\
- S        10.2.0.0/16 [1/5] via 192.0.2.1, Ethernet1
+ S        10.2.0.0/16 [1/6] via 192.0.2.1, Ethernet1
"""
ONE_SIDED = """\
- S        10.3.0.0/16 [1/0] via 192.0.2.1, Ethernet1
+ S        10.4.0.0/16 [1/0] via 192.0.2.1, Ethernet1
"""
CHANGED_MARK = """\
- S        0.0.0.0/0 [1/0] via 192.0.2.1, Ethernet1
+*S        0.0.0.0/0 [1/0] via 192.0.2.1, Ethernet1
"""
CHANGED_IP6 = """\
- S        2001:db8:1::/48 [1/0]
-           via 2001:db8:ffff::1, Ethernet1
+ S        2001:db8:1::/48 [1/7]
+           via 2001:db8:ffff::1, Ethernet1
"""
RED = """
VRF: red
+ S        10.2.0.0/16 [1/0] via 192.0.2.1, Ethernet1
"""
HEAD = "VRF: default\n"

TEXTS = {
    "": HEAD + CHANGED_HOP + CHANGED_METRIC + ONE_SIDED + CHANGED_MARK + CHANGED_IP6 + RED,
    "ip route vrf default": HEAD + CHANGED_HOP + CHANGED_METRIC + ONE_SIDED + CHANGED_MARK,
    "ipv6 route": HEAD + CHANGED_IP6,
    "vrf red": RED[1:],
    "2001:db8:1::1": HEAD + CHANGED_IP6,
    "10.0.0.0/15 longer-prefixes": HEAD + CHANGED_HOP,
    "ip route interface Ethernet2": HEAD + CHANGED_HOP.splitlines(True)[1],
    "bgp": "",
    "10.5.0.1": "",
    "--ignore metric": HEAD + CHANGED_HOP + ONE_SIDED + CHANGED_MARK + RED,
    "--ignore metric,hardware vrf default": HEAD + CHANGED_HOP + ONE_SIDED,
    "--ignore nexthop 10.1.0.0/16": HEAD + CHANGED_HOP,
    "--ignore nexthop,interface 10.1.0.0/16": "",
    "--stat": HEAD + "  IPv4: 1 added, 1 removed, 3 changed\n"
                     "  IPv6: 0 added, 0 removed, 1 changed\n"
                     "\nVRF: red\n  IPv4: 1 added, 0 removed, 0 changed\n",
}

USAGE_ERRORS = {
    "": "expected a source of the state",
    "a": "expected a source of the state",
    "a b --state c": "rova: option --state is of no use to diff: its two sources are words of it",
    "a b ip": "expected a table (route)",
    "a b ipv6 route 10.0.0.0/8": "an address of the other family",
    "a b ipv6 route ospf": "ospf is a protocol of IPv4",
    "a b --ignore metric,colour": 'option --ignore has no field "colour": expected type, ',
    "a b --ignore prefix": 'option --ignore has no field "prefix"',
    "- -": "standard input can be one of the two states alone",
}


def route_lines(listing):
    """The lines of the routes of each VRF, the gateway of last resort in its place at the end."""
    lines = {}
    for part in listing.split("\nVRF: ")[1:]:
        name, rest = part.split("\n", 1)
        rest = rest.split("L - VRF Leaked\n\n", 1)[1]
        gateway = ""
        if rest.startswith("Gateway of last resort is"):
            rest = rest.split("\n\n", 1)[1]
        elif rest.startswith("Gateway of last resort:\n"):
            gateway, rest = rest.split("\n", 1)[1].split("\n\n", 1)
        if shown := [line for line in (rest + gateway).split("\n") if line]:
            lines[name] = shown
    return lines


def without(value, keys):
    if isinstance(value, dict):
        return {key: without(item, keys) for key, item in value.items() if key not in keys}
    return [without(item, keys) for item in value] if isinstance(value, list) else value


def is_wide(route):
    """Whether it has the form for IPv6 next hops, which the order of the keys tells."""
    keys = list(route)
    return keys.index("preference") < keys.index("directlyConnected")


class DiffTest(CommandTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.empty = self.file("empty", {"rovaSnapshot": 1, "vrfs": {"default": {}}})

    def file(self, name, snapshot):
        path = self.folder / f"{name}.json"
        path.write_text(json.dumps(snapshot))
        return path

    def diff(self, *words, err="", **options):
        """The exit status and the output."""
        result = run_program(["diff", *words], **options)
        self.assertEqual(result.stderr.decode(), err)
        return result.returncode, result.stdout.decode()

    def model(self, *words):
        status, text = self.diff(*words, "--format", "json")
        model = parse_json(text)
        self.assertEqual(status, 1 if model["vrfs"] else 0)
        return model["vrfs"]

    def routes(self, snapshot, family):
        listing = run_program(["--state", snapshot, "--format", "json", "show", family, "route",
                               "vrf", "all"])
        return {vrf: shown["routes"] for vrf, shown in parse_json(listing.stdout)["vrfs"].items()}

    def test_every_scenario_beside_itself_and_nothing(self):
        for snapshot in SNAPSHOTS:
            with self.subTest(snapshot.parent.name):
                self.assertEqual(self.diff(snapshot, snapshot), (0, ""))
                self.assertEqual(self.model(snapshot, snapshot, "detail"), {})
                added = self.model(self.empty, snapshot)
                removed = self.model(snapshot, self.empty)
                for family, key in FAMILIES.items():
                    routes = {vrf: listed for vrf, listed in self.routes(snapshot, family).items()
                              if listed}
                    for model, name in (added, "added"), (removed, "removed"):
                        self.assertEqual({vrf: differing[key] for vrf, differing in model.items()
                                          if key in differing},
                                         {vrf: {"added": {}, "removed": {}, "changed": {},
                                                name: listed} for vrf, listed in routes.items()})

    def test_lines_are_those_of_the_listing(self):
        compared = 0
        for snapshot in SNAPSHOTS:
            for family in FAMILIES:
                if (str(snapshot.parent.relative_to(HERE)), family) in TEXT_OF_ITS_OWN:
                    continue
                with self.subTest(snapshot.parent.name, family=family):
                    listing = run_program(["--state", snapshot, "show", family, "route", "vrf",
                                           "all", "detail"]).stdout.decode()
                    lines = {vrf: ["+" + line for line in shown]
                             for vrf, shown in route_lines(listing).items()}
                    _, text = self.diff(self.empty, snapshot, family, "route", "detail")
                    blocks = [block.rstrip("\n").split("\n")
                              for block in ("\n" + text).split("\nVRF: ")[1:]]
                    self.assertEqual({name: shown for name, *shown in blocks}, lines)
                    compared += len(lines)
        self.assertGreater(compared, 50)

    def test_each_field_can_be_left_out(self):
        told = set()
        pairs = [*zip(SNAPSHOTS, SNAPSHOTS[1:]), (HERE / "sr-te-policies/snapshot.json",
                                                  HERE / "tunnel-weights/snapshot.json")]
        for before, after in pairs:
            for family, key in FAMILIES.items():
                one, other = (self.routes(path, family).get("default", {})
                              for path in (before, after))
                both = [prefix for prefix in one if prefix in other]
                if len({is_wide(route) for route in [*one.values(), *other.values()]}) > 1:
                    continue # they are compared in one form, which is not that of both listings
                for field, keys in KEYS.items():
                    if all(without(one[prefix], keys) == one[prefix] and
                           without(other[prefix], keys) == other[prefix] for prefix in both):
                        continue
                    told.add(field)
                    changed = [prefix for prefix in both
                               if without(one[prefix], keys) != without(other[prefix], keys)]
                    model = self.model(before, after, family, "route", "vrf", "default",
                                       "--ignore", field)
                    shown = model.get("default", {}).get(key, {"changed": {}})["changed"]
                    self.assertEqual(shown, {prefix: {"from": one[prefix], "to": other[prefix]}
                                             for prefix in changed}, (before, after, field))
        self.assertEqual(told, set(KEYS))

    def test_texts_and_statuses(self):
        for words, text in TEXTS.items():
            with self.subTest(words):
                self.assertEqual(self.diff(BEFORE, AFTER, *words.split()),
                                 (1 if text else 0, text))

    def test_segment_lists_that_text_alone_shows(self):
        """A policy that three routes of each family go over gets another weight."""
        policies = HERE / "sr-te-policies/snapshot.json"
        state = json.loads(policies.read_text())
        state["policyForwardingStatus"]["15.1"]["vias"][1]["weight"] += 1
        changed = self.file("changed", state)
        self.assertEqual(self.diff(policies, changed, "--stat"),
                         (1, HEAD + "  IPv4: 0 added, 0 removed, 3 changed\n"
                                    "  IPv6: 0 added, 0 removed, 3 changed\n"))
        weights = re.findall(r"^([-+]).* weight ([45])$", self.diff(policies, changed, "10.1.0.0")[1],
                             re.MULTILINE)
        self.assertEqual(weights, [("-", "4"), ("+", "5")])
        self.assertEqual(self.diff(policies, changed, "--ignore", "policy"), (0, ""))

    def test_routes_on_one_fec_are_told_apart(self):
        """That one route on a FEC shows as before says little of the next one."""
        changes = [{"metric": 3}, {"preference": 9}, {"type": "rip"}, {"srcVrfId": 1}]
        vrf_changes = [{}, {"unprogrammedRouteStatus": ["10.2.0.0/16"]},
                       {"kernelUnprogrammedRoute": ["10.2.0.0/16"]}]
        for route, vrf in [*((change, {}) for change in changes), *(({}, v) for v in vrf_changes)]:
            with self.subTest(route=route, vrf=vrf):
                state = json.loads(BEFORE.read_text())
                table = state["vrfs"]["default"]
                table["routingStatus"]["10.2.0.0/16"] = {"type": "static", "fec": "0.1"}
                before = self.file("one", state)
                table["routingStatus"]["10.2.0.0/16"].update(route)
                table.update(vrf)
                shown = self.model(before, self.file("other", state))
                self.assertEqual([*shown["default"]["ipv4"]["changed"]] if shown else [],
                                 ["10.2.0.0/16"] if route or vrf else [])

    def test_both_sides_have_one_form(self):
        """An IPv4 listing has another one from the first IPv6 next hop on."""
        routes = {"10.0.0.0/24": {"type": "connected", "fec": "0.2"}}
        more = {**routes, "10.9.0.0/16": {"type": "static", "fec": "1.3"}}
        narrow, wide = (self.file(name, {
            "rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": given}},
            "forwardingStatus": {"0.2": {"vias": [{"interface": "Ethernet1"}]}},
            "forwarding6Status": {"1.3": {"vias": [{"hop": "2001:db8:ffff::1",
                                                    "interface": "Ethernet1"}]}},
        }) for name, given in (("narrow", routes), ("wide", more)))
        lines = " S        10.9.0.0/16 [1/0]\n", "           via 2001:db8:ffff::1, Ethernet1\n"
        for sign, words in ("+", (narrow, wide)), ("-", (wide, narrow)):
            self.assertEqual(self.diff(*words), (1, HEAD + "".join(sign + line for line in lines)))

    def test_model_names_its_sources(self):
        _, text = self.diff(BEFORE, "-", "ipv6", "route", "--stat", "|", "json",
                            input=AFTER.read_bytes())
        self.assertEqual(parse_json(text), {
            "from": {"source": str(BEFORE)}, "to": {"source": "-"},
            "vrfs": {"default": {"ipv6": {"added": 0, "removed": 0, "changed": 1}}}})

    def test_databases(self):
        database = self.folder / "after.db"
        run_program(["snapshot", "load", AFTER, "--into", database])
        self.assertEqual(self.diff(AFTER, database), (0, ""))
        self.assertEqual(self.diff(database, database), (0, ""))
        self.assertEqual(self.diff(BEFORE, database), (1, TEXTS[""]))

    def test_errors_are_no_differences(self):
        for words, message in USAGE_ERRORS.items():
            with self.subTest(words):
                result = run_program(["diff", *words.split()], input=b"")
                self.assertEqual((result.returncode, result.stdout), (2, b""))
                self.assertIn(message, result.stderr.decode())
        missing = self.folder / "missing.json"
        self.assertEqual(self.diff(BEFORE, missing,
                                   err=f"rova: {missing}: cannot be read: No such file or "
                                       "directory\n"), (2, ""))
        self.assertEqual(
            self.diff(BEFORE, AFTER, "vrf", "blue",
                      err=f'rova: {BEFORE}: there is no VRF "blue"; the VRFs are default; '
                          f'{AFTER}: there is no VRF "blue"; the VRFs are default, red\n'),
            (2, ""))

    def test_the_shells_state_is_of_no_matter(self):
        lines = f"diff {BEFORE} {BEFORE}\ndiff {BEFORE} {AFTER} vrf red\n"
        result = run_program(["--state", BEFORE], input=lines.encode())
        self.assertEqual(result.stdout.decode(), TEXTS["vrf red"])

    def test_it_ends_early(self):
        state = json.loads(BEFORE.read_text())
        state["vrfs"]["default"]["routingStatus"] = {
            f"10.{i >> 8}.{i & 255}.0/24": {"type": "static", "fec": "0.1"}
            for i in range(LONG_LISTING_ROUTES)}
        long = self.file("long", state)
        for options in [], ["--format", "json"]:
            for status in 1, 130:
                with self.subTest(options, status=status):
                    with subprocess.Popen([program(), "diff", self.empty, long, *options],
                                          stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
                        os.read(process.stdout.fileno(), 1)
                        if status == 1:
                            process.stdout.close()
                        else:
                            process.send_signal(signal.SIGINT)
                        self.assertEqual(process.wait(TIMEOUT_SECONDS), status)
                        self.assertEqual(process.stderr.read(), b"")


if __name__ == "__main__":
    unittest.main()
