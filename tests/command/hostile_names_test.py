#!/usr/bin/env python3
"""Names from hell: no name or description of a device changes what a screen shows around it."""

import json
import re
import tempfile
import unicodedata
import unittest
from pathlib import Path

from support import ROOT, CommandTest, all_scenarios, rova, run_program

INTERFACE = re.compile(r"(Ethernet|Vlan|Port-Channel|Loopback|Management)[\d/.]+")
# What a kernel may have in the name of a device, and what a description may hold beyond it.
NAME = "\x1b]0;x\x07\x7f\x85\x9b2J\u061c\u202e\u2067\u2028"
TEXT = NAME + "\n S        6.6.6.0/24 [1/0] via 192.0.2.66\r\n\v\f\t"
DIRECTIONS = {"LRE", "RLE", "LRO", "RLO", "PDF", "LRI", "RLI", "FSI", "PDI"}


class Hostile:
    """A snapshot whose names have a suffix."""

    def __init__(self, vrfs, vrf, interface, text):
        self.vrfs, self.vrf, self.interface, self.text = vrfs, vrf, interface, text

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


def described(state):
    """The state with a description for each of its interfaces."""
    configs = state.setdefault("allIntfConfig", {})
    for name in {match.group() for match in INTERFACE.finditer(json.dumps(state))}:
        configs.setdefault(name, {}).setdefault("description", "uplink")
    return state


class HostileNamesTest(CommandTest):
    def assert_clean(self, output):
        text = output.decode("utf-8")
        for line in text.removesuffix("\n").split("\n"):
            for c in line:
                self.assertFalse(unicodedata.category(c) in ("Cc", "Zl", "Zp") or
                                 unicodedata.bidirectional(c) in DIRECTIONS or
                                 c in "\u061c\u200e\u200f", ascii(line))
        return text

    def show(self, path, state, words, hostile):
        path.write_text(json.dumps(hostile.value(state)))
        result = run_program(["--state", path, *map(hostile.word, words)])
        self.assert_clean(result.stderr)
        text = self.assert_clean(result.stdout)
        self.descriptions += text.count("\\x0a S        6.6.6.0/24")
        return result.returncode, text.count("\n")

    def test_displays_show_as_many_lines_as_with_harmless_names(self):
        shown = self.descriptions = 0
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "state.json"
            for scenario in all_scenarios():
                if "json" in " ".join(scenario.words):
                    continue
                state = json.loads((ROOT / scenario.snapshot).read_text())
                vrfs = set(state.get("vrfs", ())) - {"default"}
                state = described(state)
                # What is typed, or stands in a line of configuration, is one word.
                has_lines = "routingConfig" in str(state)
                vrf = NAME if has_lines or vrfs & set(scenario.words) else NAME + "\n x"
                interface = NAME if has_lines or "interface" in scenario.words else TEXT
                with self.subTest(scenario.name):
                    plain = self.show(path, state, scenario.words, Hostile(vrfs, "x", "x", "x"))
                    self.assertEqual(plain, self.show(
                        path, state, scenario.words,
                        Hostile(vrfs, vrf, interface, TEXT)))
                shown += plain[1]
        self.assertGreater(shown, 1000)
        self.assertGreater(self.descriptions, 10)

    def test_the_escapes_of_a_listing(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "state.json"
            path.write_text(json.dumps({
                "rovaSnapshot": 1,
                "vrfs": {"r\x1bd": {"id": 3, "routingStatus": {
                    "10.1.0.0/16": {"type": "connected", "fec": "0.1"}}}},
                "forwardingStatus": {"0.1": {"vias": [{"interface": "et\u202eh\x851"}]}},
                "allIntfConfig": {"et\u202eh\x851": {"description": "up\nlink \\n ü"}}}))
            listing = rova("show", "ip", "route", "vrf", "r\x1bd", "detail", state=str(path))
            self.assert_succeeds(listing)
            self.assertIn("\nVRF: r\\x1bd\n", listing.stdout)
            self.assertIn(" C        10.1.0.0/16 is directly connected, et\\u202eh\\x851 "
                          "up\\x0alink \\n ü\n", listing.stdout)
            model = rova("show", "ip", "route", "vrf", "r\x1bd", "detail", "|", "json",
                         state=str(path))
            self.assertEqual(json.loads(model.stdout)["vrfs"]["r\x1bd"]["routes"]["10.1.0.0/16"]
                             ["vias"][0]["interfaceDescription"], "up\nlink \\n ü")
            self.assert_ends(rova("show", "ip", "route", "vrf", "r\x1bx", state=str(path)), 1,
                             f'rova: {path}: there is no VRF "r\\x1bx"; did you mean "r\\x1bd"? '
                             'The VRFs are default, r\\x1bd\n')

    def test_an_error_shows_the_caret_under_the_word(self):
        self.assert_ends(rova("show", "ip", "route", "vrf", "r\x1b\u202ed", "f\x07o", "bgp"), 2,
                         'rova: "f\\x07o" is not understood: expected an IPv4 address or prefix, '
                         "detail, interface, a protocol (aggregate bgp connected dhcp dynamic isis "
                         "kernel martian ospf ospf3 rip static vcs), host or summary\n"
                         "  show ip route vrf r\\x1b\\u202ed f\\x07o bgp\n"
                         f"  {'^':>32}\n")


if __name__ == "__main__":
    unittest.main()
