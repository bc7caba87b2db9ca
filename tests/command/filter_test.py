#!/usr/bin/env python3
"""`where`: random expressions over every scenario, worked out on the JSON of the plain listing, choose the
routes that the listing with `where` has; and what it leaves as it is."""

import fnmatch
import ipaddress
import json
import random
import sys
import unittest
from collections import defaultdict

from support import HERE, ROOT, CommandTest, parse_json, rova

sys.path.insert(0, str(HERE))
import agreement  # pylint: disable=wrong-import-position

# The types of routes that a protocol has, of both families.
TYPES = {
    "aggregate": "bgpAggregate ospfSummary", "bgp": "bgp iBGP eBGP", "connected": "connected",
    "dhcp": "dhcp", "dynamic": "dynamicPolicy", "isis": "ISISLevel1 ISISLevel2 isisL1 isisL2",
    "kernel": "kernel", "martian": "martian", "ospf3": "ospf OSPFv3", "rip": "RIP", "vcs": "vcs",
    "ospf": "OSPF ospfInterArea ospfExternalType1 ospfExternalType2 ospfNssaExternalType1 "
            "ospfNssaExternalType2",
    "static": "static nexthopGroupStaticRoute dropRoute",
}
PROTOCOLS = {word: protocol for protocol, words in TYPES.items() for word in words.split()}
# Of each listing, so many expressions, and of so many the text too; the seed makes a failure come back.
EXPRESSIONS = 8
TEXTS_TOO = 2
SEED = 20261122
# The keys of the model that have the values of a field, wherever they stand in a route's entry.
KEYS = {
    "type": ["routeType"], "preference": ["preference"], "metric": ["metric"],
    "nexthop": ["nexthopAddr"], "interface": ["interface"], "weight": ["viaWeight"],
    "label": ["labelStack"], "tunnel": ["tunnelType", "encapType"],
    "endpoint": ["tunnelEndpoint", "destination"], "policy": ["endpoint"], "color": ["color"],
    "group": ["groupName"], "vni": ["vni"], "vtep": ["vtepAddr"],
    "leaked": ["routeLeaked"], "hardware": ["hardwareProgrammed"], "kernel": ["kernelProgrammed"],
    "connected": ["directlyConnected"], "backup": ["viaType"],
}
NUMBERS = ["length", "preference", "metric", "vias", "weight", "label", "color", "vni"]
ADDRESSES = ["nexthop", "endpoint", "policy", "vtep"]
TEXTS = ["type", "protocol", "interface", "tunnel", "group", "source-vrf"]
FLAGS = ["leaked", "hardware", "kernel", "connected", "backup"]
FIELDS = ["prefix", *NUMBERS, *ADDRESSES, *TEXTS, *FLAGS]


def values_by_key(model, found):
    """All values of the model, by the keys that they stand under."""
    for key, value in model.items():
        for item in value if isinstance(value, list) else [value]:
            if isinstance(item, dict):
                values_by_key(item, found)
            else:
                found[key].append(item)
    return found


def values_of(prefix, entry, source):
    """The values of each field of a route."""
    found = values_by_key(entry, defaultdict(list))
    values = {field: [v for key in keys for v in found[key] if v != ""] for field, keys in KEYS.items()}
    values["prefix"] = [ipaddress.ip_network(prefix)]
    values["length"] = [values["prefix"][0].prefixlen]
    values["vias"] = [len(entry["vias"])]
    values["protocol"] = [PROTOCOLS[word] for word in values["type"]]
    values["weight"] = [int(text.split("/")[0]) for text in values["weight"]]
    values["source-vrf"] = [source] if source and entry["routeLeaked"] else []
    values["backup"] = [word == "backup" for word in values["backup"]]
    for field in ADDRESSES:
        values[field] = [ipaddress.ip_network(text) for text in values[field]]
    return values


def source_vrfs(state):
    """The source of each route by VRF and prefix: a line without room for it leaves it out of the model."""
    vrfs = json.loads((ROOT / state).read_text()).get("vrfs", {})
    names = {vrf.get("id", 0): name for name, vrf in vrfs.items()}
    return {(name, prefix): names.get(route["srcVrfId"], "") for name, vrf in vrfs.items()
            for table in ("routingStatus", "routing6Status")
            for prefix, route in vrf.get(table, {}).items() if "srcVrfId" in route}


def covers(wide, narrow):
    return wide.version == narrow.version and narrow.subnet_of(wide)


class Maker:
    """Makes expressions, each as its text and what decides whether it holds for the values of a route."""

    def __init__(self, routes, chance):
        self.chance = chance
        self.known = {field: sorted({value for values in routes for value in values[field]}, key=str)
                      for field in FIELDS}

    def expression(self, depth=3):
        kind = self.chance.randrange(5) if depth else 0
        if kind < 2:
            return self.comparison()
        text, holds = self.expression(depth - 1)
        if kind == 2:
            return f"not ({text})", lambda values: not holds(values)
        other, holds_too = self.expression(depth - 1)
        if kind == 3:
            return f"({text}) and {other}" if " or " not in other else f"({text}) and ({other})", \
                lambda values: holds(values) and holds_too(values)
        return f"{text} or {other}", lambda values: holds(values) or holds_too(values)

    def comparison(self):
        # Fields that some route has a value of, mostly.
        fields = [f for f in FIELDS if self.known[f] or self.chance.random() < 0.1]
        field = self.chance.choice(fields)
        if field in FLAGS:
            return field, lambda values: any(values[field])
        if field in NUMBERS:
            text, fits = self.number(field)
        elif field in TEXTS:
            text, fits = self.text(field)
        else:
            text, fits = self.network(field)
        return f"{field} {text}", lambda values: fits(values[field])

    def number(self, field):
        number = self.chance.choice(self.known[field] or [7]) - self.chance.choice([0, 0, 1])
        number = max(number, 0)
        most = min(number + self.chance.randrange(20), 0xffffffff)
        return self.chance.choice([
            (f"= {number}", lambda values: number in values),
            (f"!={number}", lambda values: number not in values),
            (f"< {number}", lambda values: any(v < number for v in values)),
            (f"<= {number}", lambda values: any(v <= number for v in values)),
            (f">{number}", lambda values: any(v > number for v in values)),
            (f">= {number}", lambda values: any(v >= number for v in values)),
            (f"in {number}..{most}", lambda values: any(number <= v <= most for v in values)),
            (f"in {{{most}, {number}}}", lambda values: number in values or most in values),
        ])

    def text(self, field):
        word = self.chance.choice(self.known[field] or [{"type": "static", "protocol": "bgp",
                                                         "tunnel": "LDP"}.get(field, "Ethernet1")])
        if any(letter in word for letter in "\"'*?[") or word != " ".join(word.split()) \
                or not word.isprintable():
            word = {"type": "static", "protocol": "bgp", "tunnel": "LDP"}.get(field, "Ethernet1")
        pattern = self.chance.choice([f"{word[0]}*", f"*{word[1:]}", f"{word[:-1]}?", "*"])
        return self.chance.choice([
            (f'= "{word}"', lambda values: word in values),
            (f'!= "{word}"', lambda values: word not in values),
            (f'in {{"{word}"}}', lambda values: word in values),
            (f'~ "{pattern}"', lambda values: any(fnmatch.fnmatchcase(v, pattern) for v in values)),
        ])

    def network(self, field):
        network = self.chance.choice(self.known[field] or [ipaddress.ip_network("192.0.2.1/32")])
        wide = network.supernet(new_prefix=self.chance.randint(0, network.prefixlen))
        whole = network.prefixlen == network.max_prefixlen
        if field != "prefix" and not whole:
            network = ipaddress.ip_network(network.network_address)
        shown = str(network) if field == "prefix" else str(network.network_address)
        if network.version == 6:
            shown = self.chance.choice([shown, shown.upper(), network.exploded if field == "prefix"
                                        else network.network_address.exploded])
        return self.chance.choice([
            (f"= {shown}", lambda values: network in values),
            (f"!= {shown}", lambda values: network not in values),
            (f"in {wide}", lambda values: any(covers(wide, v) for v in values)),
            (f"in {{{wide}, 203.0.113.0/24}}", lambda values: any(
                covers(wide, v) or covers(ipaddress.ip_network("203.0.113.0/24"), v) for v in values)),
        ])


def vrfs_of(result):
    return {name: vrf["routes"] for name, vrf in parse_json(result.stdout)["vrfs"].items()}


class FilterTest(CommandTest):
    def check_listing(self, state, query, chance):
        """Random expressions over one listing; gives how many chose some routes and left others."""
        plain = vrfs_of(rova(*query, "--format", "json", state=state))
        sources = source_vrfs(state)
        values = {(vrf, prefix): values_of(prefix, entry, sources.get((vrf, prefix)))
                  for vrf, routes in plain.items() for prefix, entry in routes.items()}
        telling = 0
        maker = Maker(values.values(), chance)
        for turn in range(EXPRESSIONS if values else 0):
            text, holds = maker.expression()
            with self.subTest(state=str(state), query=" ".join(query), where=text):
                result = rova(*query, "where", text, "--format", "json", state=state)
                self.assertEqual(result.stderr, "")
                expected = {vrf: {prefix: entry for prefix, entry in routes.items()
                                  if holds(values[vrf, prefix])} for vrf, routes in plain.items()}
                self.assertEqual(vrfs_of(result), expected)
                if turn < TEXTS_TOO:
                    shown = rova(*query, "where", text, state=state).stdout
                    problems = agreement.problems_of(shown, parse_json(result.stdout))
                    self.assertEqual(list(problems), [])
                count = sum(map(len, expected.values()))
                telling += 0 < count < len(values)
        return telling

    def test_random_expressions(self):
        chance = random.Random(SEED)
        telling = 0
        for path in sorted(HERE.glob("*/snapshot.json")):
            for family in ("ip", "ipv6"):
                options = chance.choice([[], ["detail"], ["--older-nexthop-groups"]])
                query = ["show", family, "route", "vrf", "all", *options]
                telling += self.check_listing(path.relative_to(ROOT), query, chance)
        self.assertGreater(telling, 80)


if __name__ == "__main__":
    unittest.main()
