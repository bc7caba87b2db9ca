"""Collections as live mappings."""

from collections.abc import ItemsView, KeysView, MutableMapping, ValuesView
from ipaddress import IPv4Network

import pytest

import rova


@pytest.fixture
def texts():
    """A collection of texts by number, with three members."""
    fec = rova.CachedFec(1)
    fec.interface.update({5: "five", 3: "three", 4: "four"})
    return fec.interface


def test_the_protocol_of_a_mutable_mapping(texts):
    assert isinstance(texts, MutableMapping)
    assert len(texts) == 3 and texts[3] == "three" and 4 in texts and 6 not in texts
    texts[3] = "drei"
    texts[6] = "six"
    del texts[4]
    assert texts == {3: "drei", 5: "five", 6: "six"} and texts != {3: "drei"}
    assert texts != {3: "drei", 5: "five", 7: "six"} and texts != 5
    assert texts.get(4) is None and texts.get(4, 9) == 9 and texts.get(5) == "five"
    assert texts.pop(5) == "five" and texts.pop(5, None) is None
    assert texts.setdefault(3, "x") == "drei" and texts.setdefault(9, "nine") == "nine"
    texts.update({1: "one"})
    assert dict(texts) == {3: "drei", 6: "six", 9: "nine", 1: "one"}
    texts.clear()
    assert len(texts) == 0 and not texts and list(texts) == []


@pytest.mark.parametrize("wrong, error", [
    (lambda c: c[7], KeyError),
    (lambda c: c.__delitem__(7), KeyError),
    (lambda c: c.pop(7), KeyError),
    (lambda c: c["a"], TypeError),
    (lambda c: c[70000], rova.RangeException),
    (lambda c: "a" in c, TypeError),
    (lambda c: c.__setitem__(3, 5), TypeError),
    (lambda c: c.__setitem__(3, None), TypeError),
    (lambda c: hash(c), TypeError),
    (lambda c: c < c, TypeError),
    (lambda c: type(c)(), TypeError),
])
def test_what_a_collection_refuses(texts, wrong, error):
    with pytest.raises(error):
        wrong(texts)
    assert texts == {3: "three", 4: "four", 5: "five"}


def test_views_are_those_of_mappings(texts):
    for view, kind in [(texts.keys(), KeysView), (texts.values(), ValuesView),
                       (texts.items(), ItemsView)]:
        assert isinstance(view, kind) and len(view) == 3
    assert set(texts.keys()) == {3, 4, 5} and sorted(texts.values()) == ["five", "four", "three"]
    assert dict(texts.items()) == {3: "three", 4: "four", 5: "five"}
    assert texts.keys() & {4, 8} == {4}
    assert "four" in texts.values() and (4, "four") in texts.items()
    assert (4, "vier") not in texts.items()


def test_equality_is_that_of_mappings():
    fec, other = rova.CachedFec(1), rova.CachedFec(2)
    for key in [rova.CachedVia(viaIndex=1), rova.CachedVia(viaIndex=2)]:
        fec.via[key] = other.via[key] = True
    assert fec.via == other.via
    other.via[rova.CachedVia(viaIndex=2)] = False
    assert fec.via != other.via
    other.interface.update({1: "a", 2: "b"})
    for different in [other.interface, {1: True, 2: True}, {}, [1, 2], "ab", None]:
        assert fec.via != different and not fec.via == different


def test_views_are_live_and_keep_their_object():
    fec = rova.CachedFec(1)
    interface, other = fec.interface, fec.interface
    del fec
    interface[1] = "Ethernet1"
    assert other == interface == {1: "Ethernet1"}


def test_ordered_collections_walk_in_the_order_of_their_keys():
    fec = rova.CachedFec(1)
    for index, name in enumerate(["Ethernet10", "Ethernet2", "Ethernet1"]):
        fec.via[rova.CachedVia(intfId=name, viaIndex=index)] = index == 1
    assert [via.intfId for via in fec.via] == ["Ethernet1", "Ethernet2", "Ethernet10"]
    assert list(fec.via.values()) == [False, True, False]
    assert [(via.viaIndex, member) for via, member in fec.via.items()] == [
        (2, False), (1, True), (0, False)]
    assert fec.via[{"intfId": "Ethernet2", "viaIndex": 1}] is True


def test_a_walk_survives_changes():
    fec = rova.CachedFec(1)
    vias = {number: rova.CachedVia(viaIndex=number) for number in range(6)}
    for via in vias.values():
        fec.via[via] = True
    seen = []
    for via in fec.via:
        seen.append(via.viaIndex)
        if via.viaIndex == 1:
            del fec.via[vias[1]]
            del fec.via[vias[2]]
            fec.via[rova.CachedVia(viaIndex=9)] = True
    assert seen == [0, 1, 3, 4, 5, 9]
    walk = iter(fec.via)
    next(walk)
    fec.via.clear()
    del fec
    assert list(walk) == [] and list(walk) == []


def test_members_that_hold_their_key():
    policies = rova.PolicyInfoSet().policyInfo
    policies[3] = rova.PolicyInfo(3, {"color": 7})
    policies[4] = {"index": 4}
    assert policies[3].policyKey.color == 7 and len(policies) == 2
    with pytest.raises(ValueError, match="PolicyInfoSet.policyInfo: the key given is not the"):
        policies[5] = rova.PolicyInfo(6)
    assert len(policies) == 2


def test_entities_as_keys_and_members(vrfs_device):
    rib = rova.StaticRoutesRibCommon(vrfs_device.ip())
    source = rova.type_of("Routing::RouteInput")()
    rib.routeInputConf[source] = True
    assert source in rib.routeInputConf and list(rib.routeInputConf) == [source]
    with pytest.raises(TypeError):
        rib.routeInputConf[None] = True
    sorter = rova.RouteSorter(vrfs_device.ip())
    [(identifier, fec)] = sorter.fec.items()
    assert fec == sorter.fec[identifier] and fec.fecId == identifier
    with pytest.raises(ValueError):
        sorter.fec[identifier + 1] = fec
    with pytest.raises(rova.RangeException, match="null"):
        sorter.fec[identifier] = None


def test_routes_of_a_listing(vrfs_device):
    sorter = rova.RouteSorter(vrfs_device.ip("red"))
    assert list(sorter.sortedRoute) == [IPv4Network("10.2.0.0/16")]
    route = sorter.sortedRoute["10.2.0.0/16"]
    assert (route.key, route.routeType.name) == (IPv4Network("10.2.0.0/16"), "static")
    assert "10.1.0.0/16" not in sorter.sortedRoute


def test_a_constant_handle_refuses_changes(vrfs_device):
    config = vrfs_device.ip()["routingConfig"]
    reached = rova.RouteSummary(vrfs_device.ip(), routingConfig=config).routingConfig
    assert reached == config and len(reached.route) == 0
    key = rova.type_of("Routing::RouteKey")(prefix="10.0.0.0/8")
    with pytest.raises(TypeError, match="its handle is constant"):
        reached.route[key] = None
    with pytest.raises(TypeError, match="its handle is constant"):
        del reached.route[key]
    with pytest.raises(AttributeError, match="its handle is constant"):
        reached.routing = False
