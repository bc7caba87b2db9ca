#!/usr/bin/env python3
"""The list of types that the program prints, held against the one that was written by hand."""

import json
import unittest
from pathlib import Path

from support import CommandTest, rova

CATALOGUE = Path(__file__).resolve().parents[1] / "library" / "catalogue.txt"

NEXTHOP_INFO = """\
Rova::NexthopInfo: value

  index  attribute   kind                  type
      2  nexthopCmd  plain                 Lumo::String
      3  sortedVia   ordered               Lumo::String by Routing::Via
"""

POLICY_INFO_SET = """\
Rova::PolicyInfoSet: value

  index  attribute   kind                  type
      2  policyInfo  hashed                Rova::PolicyInfo by U16 index
"""

COUNTERS = """\
Rova::NexthopGroupCounterHelper: entity
base: Lumo::PtrInterface

  index  attribute            kind                  type
    130  counterKeyTable      plain                 Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable
    131  counterTable         plain                 Gaugex::CounterTable
    132  snapshotTable        plain                 Gaugex::CounterTable
    133  counterEnabled       plain                 bool
    134  mountCounterVantaes  method                (entityManager: Merrow::EntityManager): void
    135  getCounters          method                (nhgId: Routing::NexthopGroup::NexthopGroupId, entryId: U32): Rova::CounterEntry
"""

MATCH_TYPE = """\
Rova::AddrMatchType: enumeration

  number  value
       0  allowNoMatch
       1  allowExactMatch
       2  allowAddressMatch
"""

NO_TYPE = """\
rova: there is no type Nope: rova types lists them
  types Nope
        ^
"""


def after(words, keyword):
    """The word behind a keyword, or nothing."""
    return words[words.index(keyword) + 1] if keyword in words else None


def attribute(words):
    """An attribute's line as the model has it."""
    index, name, kind, value = words[:4]
    model = {"index": int(index), "kind": kind, "type": value,
             "owner": after(words, "of"), "key": after(words, "by"),
             "internalKey": after(words, "inside")}
    if kind == "method":
        pairs = " ".join(words[words.index("with") + 1:]).split(", ") if "with" in words else []
        model["arguments"] = [dict(zip(("name", "type"), pair.split())) for pair in pairs]
    return name, {key: value for key, value in model.items() if value is not None}


def catalogue():
    """The catalogue as the model has it."""
    types = {}
    for line in CATALOGUE.read_text().splitlines():
        words = line.split()
        if not words or words[0] == "#":
            continue
        if not line.startswith(" "):
            name, kind = words[:2]
            entry = types[name] = {"kind": kind}
            if words[3] != "-":
                entry["base"] = words[3]
        elif words[0] == "=":
            entry.setdefault("values", {})[words[2]] = int(words[1])
        else:
            name, model = attribute(words)
            entry.setdefault("attributes", {})[name] = model
    return types


class TypesTest(CommandTest):
    def test_the_model_is_the_catalogue(self):
        model = json.loads(rova("--format", "json", "types").stdout)["types"]
        self.assertEqual(model, catalogue())
        self.assertEqual(list(model), list(catalogue()), "the order of registration")

    def test_the_list(self):
        lines = rova("types").stdout.splitlines()
        self.assertEqual(lines[0].split(), ["type", "kind", "attributes"])
        expected = [f"{name} {entry['kind']} {len(entry.get('attributes', {}))}"
                    for name, entry in catalogue().items()]
        self.assertEqual([" ".join(line.split()) for line in lines[1:]], expected)

    def test_one_type(self):
        for name, expected in (("Rova::NexthopInfo", NEXTHOP_INFO),
                               ("PolicyInfoSet", POLICY_INFO_SET),
                               ("NexthopGroupCounterHelper", COUNTERS),
                               ("AddrMatchType", MATCH_TYPE)):
            with self.subTest(name):
                result = rova("types", name)
                self.assert_ends(result, 0, "")
                self.assertEqual(result.stdout, expected)

    def test_no_type(self):
        self.assert_ends(rova("types", "Nope"), 2, NO_TYPE)

    def test_needs_no_state(self):
        self.assert_succeeds(rova("types", state="/nowhere"))


if __name__ == "__main__":
    unittest.main()
