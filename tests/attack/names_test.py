#!/usr/bin/env python3
"""Names from hell, at every place of a snapshot where a name or text stands and in command lines:
they show as data, never as lines, cursor movements or formats of their own."""

import functools
import itertools
import json
import re
import subprocess
import unittest

from judge import (ROOT, all_of, all_scenarios, end_fault, fault_of, output_fault, parse_json,
                   program)

# What is not mended yet: (part of the fault's text, why). Without its line a case counts.
KNOWN_FAULTS = []

PLAIN = "plainname"
NAMES = ["a\nip route 0.0.0.0/0 192.0.2.66", "\r", "\t", "\x1b[2J\x1b]0;x\x07", "\0", "\x7f",
         "\x85", "\x9b2J", "\u2028", "\u202e", "\ufeff", "\ud800", "\U0010ffff", "%s%n%99999d", "%",
         '"}],"x":[{', "\\", "\\u0000", "a b", " ", "-", "--help", "| json", "all", "default",
         "summary", "Null0", "0.1", "é" * 50, "a" * 100, "a" * 129, "a" * 70_000]
# The displays of a name by its place; elsewhere it stands in configured routes.
DISPLAYS = {"vrf": ["show ip route vrf all", "show ip route vrf all summary"],
            "interface": ["show ip route"], "description": ["show ip route detail"],
            "group": ["show ip route", "show nexthop-group"], "agent": ["show static"]}
OF_LINES = ["show running-config static", "show static"]
UNSHOWN = {("agent", "show static")}

INTERFACE = re.compile(r"(Ethernet|Vlan|Port-Channel|Loopback|Management)[\d/.]+")
# What a kernel may have in the name of a device, and what a description may hold beyond it.
WORD = "\x1b]0;x\x07\x7f\x85\x9b2J\u061c\u202e\u2067\u2028"
TEXT = WORD + "\n S        6.6.6.0/24 [1/0] via 192.0.2.66\r\n\v\f\t"


def snapshot(name):
    """The places of a name, each in a snapshot of its own."""
    vrf = {"routingStatus": {"10.0.0.0/8": {"type": "static", "fec": "0.1"}}}
    group = {"type": "gre", "size": 1, "destinationIp": {"0": "10.0.0.1"}}

    def routed(interface, **sections):
        fecs = {"0.1": {"vias": [{"hop": "10.1.0.1", "interface": interface}]}}
        return {"vrfs": {"default": vrf}, "forwardingStatus": fecs, **sections}

    def configured(agent, **route):
        routes = [{"prefix": "10.9.0.0/16", **route}]
        return {"vrfs": {"default": {"routingConfig": {"routes": routes},
                                     "routeInput": {agent: routes}}}}

    places = {
        "vrf": routed("Ethernet1", vrfs={"default": vrf, name: {**vrf, "id": 1}}),
        "interface": routed(name),
        "description": routed("Ethernet1", allIntfConfig={"Ethernet1": {"description": name}}),
        "group": routed("NexthopGroup:7", nhgConfig={name: group}, nhEntryStatus={name: 7}),
        "agent": configured(name, vias=[{"hop": "10.0.0.1"}]),
        "next hop": configured("agent", vias=[{"hop": "10.0.0.1", "name": name}]),
        "drop": configured("agent", type="drop", dropName=name),
        "route's group": configured("agent", type="nexthopGroup", nexthopGroup=name),
    }
    return {place: {"rovaSnapshot": 1, **sections} for place, sections in places.items()}


def run(words, data=b""):
    return subprocess.run([program(), *words], input=data, cwd=ROOT, capture_output=True,
                          check=False, timeout=30)


@functools.cache
def shown(place, words, name):
    """The display of a name at its place: as text, and as a model."""
    state = json.dumps(snapshot(name)[place]).encode()
    options = ["--state", "-", *words.split()]
    return run(options, state), run([*options, "--format", "json"], state)


def renamed(model, name):
    """The model with a name in place of the plain one."""
    if isinstance(model, dict):
        return {renamed(key, name): renamed(value, name) for key, value in model.items()}
    if isinstance(model, list):
        return [renamed(value, name) for value in model]
    return model.replace(PLAIN, name) if isinstance(model, str) else model


class Suffixed:
    """A scenario whose names end in a suffix, one for VRFs, one for interfaces, one for their
    descriptions, which all of them have."""

    def __init__(self, scenario, vrf, interface, text):
        self.vrf, self.interface, self.text = vrf, interface, text
        state = json.loads((ROOT / scenario.snapshot).read_text())
        self.vrfs = set(state.get("vrfs", ())) - {"default"}
        configs = state.setdefault("allIntfConfig", {})
        for name in {match.group() for match in INTERFACE.finditer(json.dumps(state))}:
            configs.setdefault(name, {}).setdefault("description", "uplink")
        data = json.dumps(self.value(state)).encode()
        self.result = run(["--state", "-", *map(self.word, scenario.words)], data)

    def word(self, word):
        if word in self.vrfs:
            return word + self.vrf
        return word + self.interface if INTERFACE.fullmatch(word) else word

    def value(self, value, key=None):
        if isinstance(value, dict):
            return {self.word(k): self.value(v, k) for k, v in value.items()}
        if isinstance(value, list):
            return [self.value(v) for v in value]
        if not isinstance(value, str):
            return value
        return value + self.text if key == "description" else self.word(value)


def described_and_fault(scenario):
    """How often a scenario shows a description of several lines, and the fault of it with hostile
    names: it has as many lines as with harmless ones."""
    # What is typed, or stands in a line of configuration, is one word.
    has_lines = "routingConfig" in (ROOT / scenario.snapshot).read_text()
    vrf = WORD if has_lines or "vrf" in scenario.words else WORD + "\n x"
    interface = WORD if has_lines or "interface" in scenario.words else TEXT
    plain = Suffixed(scenario, "x", "x", "x").result
    hostile = Suffixed(scenario, vrf, interface, TEXT).result
    ends = [(result.returncode, result.stdout.count(b"\n")) for result in (plain, hostile)]
    fault = f"ends with {ends[1]}, not with {ends[0]}" if ends[0] != ends[1] else None
    return (hostile.stdout.count(b"\\x0a S        6.6.6.0/24"),
            fault or end_fault(hostile) or output_fault(hostile, False))


def fault_at(case):
    place, words, name = case
    text, model = shown(place, words, name)
    fault = fault_of(text, False) or fault_of(model, True)
    if fault or text.returncode or model.returncode:
        return fault
    plain_text, plain_model = shown(place, words, PLAIN)
    if text.stdout.count(b"\n") != plain_text.stdout.count(b"\n"):
        return "more lines"
    if parse_json(model.stdout) != renamed(parse_json(plain_model.stdout), name):
        return f"another model: {name[:20]!r} in {words}"
    return None


def known(fault):
    return any(part in fault for part, _ in KNOWN_FAULTS)


class NamesTest(unittest.TestCase):
    def check(self, cases, faults):
        for case, fault in zip(cases, faults):
            with self.subTest(str(case)[:120]):
                self.assertTrue(not fault or known(fault), fault)

    def test_names_in_a_snapshot(self):
        cases = [(place, words, name) for place, name in itertools.product(snapshot(PLAIN), NAMES)
                 for words in DISPLAYS.get(place, OF_LINES)]
        self.check(cases, all_of(fault_at, cases))

    def test_plain_names_are_shown(self):
        for place in snapshot(PLAIN):
            for words in DISPLAYS.get(place, OF_LINES):
                text, model = shown(place, words, PLAIN)
                self.assertEqual((text.returncode, model.returncode), (0, 0), (place, words))
                if (place, words) not in UNSHOWN:
                    self.assertIn(PLAIN, model.stdout.decode(), (place, words))

    def test_names_in_every_display(self):
        scenarios = [scenario for scenario in all_scenarios()
                     if "json" not in " ".join(scenario.words)]
        described, faults = zip(*all_of(described_and_fault, scenarios))
        self.check([scenario.name for scenario in scenarios], faults)
        self.assertGreater(sum(described), 10)

    def test_names_in_a_command_line(self):
        state = ["--state", "tests/scenarios/vrfs/snapshot.json"]
        names = [name for name in NAMES if "\0" not in name and name != "\ud800"]
        cases = [[*state, *words, name] for name in names for words in (
            [], ["show", "ip", "route", "vrf"], ["show", "nexthop-group"],
            ["check", "next-hop"], ["check", "rd", "1:1", "vrf"], ["clear", "static", "interface"])]
        cases += [["--state", name, "show", "ip", "route"] for name in names if name != "-"]

        def fault(words):
            result = run(words)
            result.stdout += result.stderr
            return output_fault(result, False) if result.returncode in (0, 1, 2) else str(result)

        self.check(cases, all_of(fault, cases))


if __name__ == "__main__":
    unittest.main()
