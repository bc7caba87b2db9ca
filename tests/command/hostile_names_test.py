#!/usr/bin/env python3
"""How names show that a screen would obey: the letters of their escapes. tests/attack/names_test.py
has them everywhere, and looks at nothing but whether they are escaped."""

import json
import tempfile
import unittest
from pathlib import Path

from support import CommandTest, rova

class HostileNamesTest(CommandTest):
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
                         "kernel martian ospf ospf3 rip static vcs), host, summary or where\n"
                         "  show ip route vrf r\\x1b\\u202ed f\\x07o bgp\n"
                         f"  {'^':>32}\n")


if __name__ == "__main__":
    unittest.main()
