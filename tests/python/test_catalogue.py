"""`rova.types()`: what the library tells of its types."""

import pytest

import rova

ALL = {row["name"]: row for row in rova.types(all=True)}


def attribute(type_name, name):
    [found] = [row for row in ALL[type_name]["attributes"] if row["name"] == name]
    return found


def test_the_registered_types_come_first_by_default():
    names = [row["name"] for row in rova.types()]
    assert len(names) == len(set(names)) == 32
    assert names[0] == "Rova::PolicyInfo" and names[-1] == "Rova::CounterIndex"
    assert set(names) < set(ALL)


def test_every_name_that_a_row_uses_is_a_type_of_the_catalogue():
    for row in ALL.values():
        used = {row["base"]} | {a["type"] for a in row["constructor"]}
        for found in row["attributes"]:
            used |= {found["type"], found["key"], found["owner"]}
            used |= {argument["type"] for argument in found["arguments"]}
        assert used - {None, "void"} <= set(ALL)


@pytest.mark.parametrize("name, kind, form, base, python", [
    ("Rova::RouteSorter", "entity", "entity", "Lumo::PtrInterface", None),
    ("Rova::RouteSortKey", "value", "record", None, None),
    ("Rova::SortedTunVia", "value", "record", "Tunnel::TunnelTable::TunnelVia", None),
    ("Rova::AddressAssignmentChecker", "stateless", "record", None, None),
    ("Rova::AddrMatchType", "enumeration", "enumeration", None, None),
    ("U32", "scalar", "integer", None, "int"),
    ("double", "scalar", "real", None, "float"),
    ("Kesh::MplsLabel", "scalar", "number", None, "int"),
    ("Kesh::IntfId", "scalar", "notation", None, "str"),
    ("Kesh::Ip6Prefix", "scalar", "notation", None, "ipaddress.IPv6Network | None"),
    ("Routing::ConfigGen", "entity", "entity", "Routing::RouteList", None),
])
def test_types(name, kind, form, base, python):
    row = ALL[name]
    assert (row["kind"], row["form"], row["base"], row["python"]) == (kind, form, base, python)


def test_an_enumeration_has_its_entries():
    assert ALL["Rova::AddrMatchType"]["entries"] == [
        ("allowNoMatch", 0), ("allowExactMatch", 1), ("allowAddressMatch", 2)]


@pytest.mark.parametrize("type_name, expected", [
    ("Rova::RouteSortKey", {
        "name": "prefix", "kind": "constructor", "index": 2, "owner": "Rova::RouteSortKey",
        "type": "Kesh::IpGenPrefix", "key": None, "internalKey": None, "arguments": [],
        "mayBeNull": False, "readOnly": True}),
    ("Rova::RouteSorter", {
        "name": "printRoutes", "kind": "method", "type": "bool", "key": None, "internalKey": None,
        "arguments": [{"name": "fd", "type": "U32"}, {"name": "fmt", "type": "U32"}],
        "readOnly": False}),
    ("Rova::RouteSorter", {
        "name": "fec", "kind": "hashed", "type": "Rova::CachedFec", "key": "Vanta::Fib::FecId",
        "internalKey": "fecId", "readOnly": False}),
    ("Rova::RouteSorter", {"name": "sortedRoute", "kind": "ordered", "key": "Kesh::Prefix",
                           "type": "Vanta::Fib::Route"}),
    ("Rova::RouteSorter", {"name": "routingConfig", "mayBeNull": True, "readOnly": True}),
    ("Rova::RouteSorter", {"name": "legend", "kind": "method", "readOnly": True}),
    ("Rova::AddressQueryParams", {"name": "intfName", "kind": "writable-constructor",
                                  "type": "Lumo::String", "readOnly": False}),
    ("Rova::SortedTunVia", {"name": "hash", "index": 4, "kind": "method",
                            "owner": "Tunnel::TunnelTable::Via"}),
    ("Rova::SortedTunVia", {"name": "tunnelFib", "index": 258, "mayBeNull": True}),
    ("Vanta::Fib::Route", {"name": "preference", "kind": "computed", "type": "U8",
                           "readOnly": True}),
])
def test_attributes(type_name, expected):
    found = attribute(type_name, expected["name"])
    assert {key: found[key] for key in expected} == expected
