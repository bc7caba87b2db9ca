#!/usr/bin/env python3
"""Routes that share a FEC show as if each had one of its own.

A listing prints once what the lines of a FEC have in common. So each scenario is given many more
routes over its FECs, of many kinds, and is listed twice: as it is then, and with a copy of the FEC
for each of those routes. The outputs must be the same, byte for byte.
"""

import copy
import ipaddress
import json
import random
import tempfile
import unittest
from pathlib import Path

from support import HERE, CommandTest, rova

ROUTES_PER_FEC = 8
FIRST_COPY = 50_000  # beyond the numbers of the scenarios' FECs

# Section of routes, section of FECs, the kinds of FEC there (neither groups nor policies, which are
# known by the FEC's number), types.
FAMILIES = {
    "ip": ("routingStatus", "forwardingStatus", "0",
           ["static", "bgpInternal", "connected", "receive", "nexthopGroup", "ospfIntraArea"]),
    "ipv6": ("routing6Status", "forwarding6Status", "1",
             ["static", "bgp", "connected", "receive", "nexthopGroup", "ospf3"]),
}


def addresses(value, version):
    """All addresses of a family that stand in a part of a snapshot."""
    if isinstance(value, dict):
        return set().union(*(addresses(each, version) for each in value.values()))
    if isinstance(value, list):
        return set().union(*(addresses(each, version) for each in value))
    try:
        address = ipaddress.ip_address(value) if isinstance(value, str) else None
    except ValueError:
        return set()
    return {str(address)} if address and address.version == version else set()


def more_routes(snapshot, family, choose):
    """Routes over the FECs of the default VRF, as pairs of prefix and record."""
    routes, fecs, kind, types = FAMILIES[family]
    present = snapshot["vrfs"]["default"].get(routes, {})
    hosts = sorted(addresses(snapshot, 4 if family == "ip" else 6))
    length = 32 if family == "ip" else 128
    numbers = [number for number in snapshot.get(fecs, {})
               if number.split(".")[0] == kind and is_plain(number, present, family)]
    for number in numbers:
        for _ in range(ROUTES_PER_FEC):
            if family == "ip" and hosts and choose.random() < 0.5:
                prefix = f"{choose.choice(hosts)}/{length}"
            elif family == "ip":
                prefix = f"10.{choose.randrange(256)}.{choose.randrange(256)}.0/24"
            else:
                prefix = f"2001:db8:{choose.randrange(1, 65536):x}::/48"
            route = {"type": choose.choice(types), "fec": number,
                     "metric": choose.choice([0, 0, 20, 4_000_000_000]),
                     "preference": choose.choice([1, 20, 200])}
            if choose.random() < 0.2:
                route["srcVrfId"] = choose.choice([3, 77])
            if prefix not in present:
                yield prefix, route


def is_plain(number, routes, family):
    """Whether a copy of the FEC shows the same. In IPv6 the first route on a FEC decides for its rows
    whether they have the next hop; for a host route they may not."""
    return family == "ip" or not any(route.get("fec") == number and prefix.endswith("/128")
                                     for prefix, route in routes.items())


def with_more_routes(snapshot, choose):
    """The snapshot with more routes, twice: over its FECs, and over copies of them."""
    shared, apart = copy.deepcopy(snapshot), copy.deepcopy(snapshot)
    number = FIRST_COPY
    for family, (routes, fecs, kind, _) in FAMILIES.items():
        for prefix, route in dict(more_routes(snapshot, family, choose)).items():
            number += 1
            own = dict(route, fec=f"{kind}.{number}")
            shared["vrfs"]["default"].setdefault(routes, {})[prefix] = route
            apart["vrfs"]["default"].setdefault(routes, {})[prefix] = own
            apart[fecs][own["fec"]] = apart[fecs][route["fec"]]
    return shared, apart


def displays():
    for family in FAMILIES:
        for words in ([], ["detail"]):
            for form in ([], ["--format", "json"]):
                yield [*form, "show", family, "route", *words]


class SharedFecTest(CommandTest):
    def listing(self, folder, snapshot, words):
        path = Path(folder) / "snapshot.json"
        path.write_text(json.dumps(snapshot))
        return rova(*words, state=str(path))

    def test_routes_on_one_fec_show_as_routes_on_copies_of_it(self):
        choose = random.Random(15)
        compared = 0
        with tempfile.TemporaryDirectory() as folder:
            for path in sorted(HERE.glob("*/snapshot.json")):
                snapshot = json.loads(path.read_text())
                if "default" not in snapshot.get("vrfs", {}):
                    continue
                pair = with_more_routes(snapshot, choose)
                for words in displays():
                    with self.subTest(scenario=path.parent.name, words=words):
                        shared, apart = (self.listing(folder, each, words) for each in pair)
                        self.assert_ends(shared, apart.returncode, apart.stderr)
                        self.assertEqual(shared.stdout, apart.stdout)
                        compared += len(shared.stdout)
        self.assertGreater(compared, 1_000_000)


if __name__ == "__main__":
    unittest.main()
