#!/usr/bin/env python3
"""The schema of snapshots fits the snapshots that there are, and refuses others.

Run it from anywhere: python3 tests/snapshot/schema_test.py
"""

import json
import pathlib
import re
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCHEMA = json.loads((ROOT / "docs/snapshot.schema.json").read_text())
SAMPLES = sorted((ROOT / "tests/snapshot/samples").glob("*.json"))
SCENARIOS = sorted((ROOT / "tests/scenarios").glob("**/snapshot.json"))

# Each is refused by the schema alone.
BAD = [
    {},
    {"rovaSnapshot": 2},
    {"rovaSnapshot": 1, "counters": {}},
    {"rovaSnapshot": 1, "vrfs": {"red": {}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"id": 1}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {"10.0.0.0/8": {}}}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {"10.0.0.0/33": {"type": "static"}}}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {"10.0.0.0/8": {"type": "bgp"}}}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"routing6Config": {"routes": [{"prefix": "10.0.0.0/8"}]}}}},
    {"rovaSnapshot": 1, "forwardingStatus": {"1.5": {}}},
    {"rovaSnapshot": 1, "forwarding6Status": {"0.5": {}}},
    {"rovaSnapshot": 1, "forwardingStatus": {"0.5": {"vias": [{}] * 513}}},
    {"rovaSnapshot": 1, "forwardingStatus": {"0.5": {"vias": [{"label": 0x800001}]}}},
    {"rovaSnapshot": 1, "arpVanta": [{"interface": "Vlan1"}]},
    {"rovaSnapshot": 1, "tunnelFib": {"labelStacks": {"3.1": {"labels": [16] * 8}}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"routeInput": {"config": [{"prefix": "::/0"}]}}}},
    {"rovaSnapshot": 1, "vrfs": {"default": {"route6Input": {"config": [{"prefix": "10.0.0.0/8"}]}}}},
    {"rovaSnapshot": 1, "ipConfig": {"Vlan1": {"addrWithMask": "2001:db8::1/64"}}},
    {"rovaSnapshot": 1, "ip6Config": {"Vlan1": {"addr": ["10.0.0.1/8"]}}},
    {"rovaSnapshot": 1, "routeDistinguisherInputDir": {"bgp": {"red": "65000"}}},
    {"rovaSnapshot": 1, "nhgConfig": {"edge": {"type": "tunnel"}}},
    {"rovaSnapshot": 1, "nhgConfig": {"edge": {"size": 65537}}},
    {"rovaSnapshot": 1, "nhgConfig": {"edge\0": {}}},
    {"rovaSnapshot": 1, "allIntfConfig": {"Vlan1": {"description": "a\0b"}}},
    {"rovaSnapshot": 1, "nhgConfig": {"edge": {"destinationIp": {"01": "10.0.0.1"}}}},
    {"rovaSnapshot": 1, "nhgConfig": {"edge": {"mplsLabelStack": {"0": {"labels": [16] * 8}}}}},
    {"rovaSnapshot": 1, "nhgHwStatus": {"default": {"edge": {}}}},
    {"rovaSnapshot": 1, "nhgHwStatus": {"default": {"7": {"via": {"0": {"tunnelId": 2**64}}}}}},
    {"rovaSnapshot": 1, "counterKeyTable": {"7": {}}},
    {"rovaSnapshot": 1, "counterTable": {"-1": {}}},
    {"rovaSnapshot": 1, "snapshotTable": {"1": {"packets": -1}}},
    {"rovaSnapshot": 1, "routing6HardwareStatus": {"maxNexthopGroupSize": 1}},
]


def objects(node):
    """Every object of the schema that describes an object with named properties."""
    if isinstance(node, dict):
        if node.get("type") in ("object", ["object", "null"]) and "properties" in node:
            yield node
        for child in node.values():
            yield from objects(child)
    elif isinstance(node, list):
        for child in node:
            yield from objects(child)


class SchemaTest(unittest.TestCase):
    def setUp(self):
        self.validator = jsonschema.Draft202012Validator(SCHEMA)

    def test_is_a_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_leaves_no_object_open(self):
        for node in objects(SCHEMA):
            self.assertIn("additionalProperties", node)

    def test_fits_every_snapshot(self):
        self.assertGreaterEqual(len(SAMPLES), 2)
        for path in SAMPLES + SCENARIOS:
            with self.subTest(path=str(path.relative_to(ROOT))):
                self.validator.validate(json.loads(path.read_text()))

    def test_fits_the_example_of_the_page(self):
        page = (ROOT / "docs/snapshot.md").read_text()
        examples = re.findall(r"```json\n(.*?)```", page, re.S)
        self.assertEqual(len(examples), 1)
        self.validator.validate(json.loads(examples[0]))

    def test_knows_every_key_that_a_rich_snapshot_has(self):
        rich = json.loads((ROOT / "tests/snapshot/samples/rich.json").read_text())
        self.assertEqual(set(SCHEMA["properties"]), set(rich))

    def test_refuses_bad_snapshots(self):
        for bad in BAD:
            with self.subTest(bad=bad):
                self.assertFalse(self.validator.is_valid(bad))


if __name__ == "__main__":
    unittest.main()
