"""Calls over which the library would stop the process raise instead."""

import json
import os
import random
import re
import resource

import pytest

import rova
from conftest import ROOT, open_scenario

RAISED = (rova.Error, TypeError, ValueError, AttributeError, KeyError, OSError)
NULL = os.open(os.devnull, os.O_WRONLY)


def in_child(work):
    """What the work raises in a process of its own, "TYPE: MESSAGE"; "died: STDERR" if it ends it."""
    said = os.memfd_create("said")
    child = os.fork()
    if child == 0:
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        os.dup2(NULL, 1)
        os.dup2(said, 2)
        try:
            work()
        except BaseException as error:
            os.write(said, f"{type(error).__name__}: {error}".encode(errors="replace"))
        os._exit(0)
    status = os.waitpid(child, 0)[1]
    with os.fdopen(said, "rb") as file:
        file.seek(0)
        text = file.read().decode()
    return f"died: {text}" if status else text


def state(tmp_path, routes, family="", vias=(), **sections):
    """A device of these IPv4 or IPv6 routes in VRF red; 0.1 or 1.1 is a FEC with the vias."""
    fec = {"1.1" if family else "0.1": {"vias": list(vias) or [{"interface": "Ethernet1"}]}}
    snapshot = {"rovaSnapshot": 1,
                "vrfs": {"default": {}, "red": {"id": 1, f"routing{family}Status": routes}},
                f"forwarding{family}Status": fec, **sections}
    path = tmp_path / "state.json"
    path.write_text(json.dumps(snapshot))
    return rova.open(path)


IP4, IP6 = "10.1.0.0/16", "2001:db8::/32"


def on_fec(prefix):
    return {prefix: {"type": "static", "fec": "1.1" if ":" in prefix else "0.1"}}


def tunnel(key, *encaps, interface="Ethernet1"):
    vias = [{"nexthop": "192.0.2.1", "interface": interface, "encap": encap} for encap in encaps]
    return {"tunnelFib": {"entries": {key: {"vias": vias}}}}


POLICY = {"srTePolicyStatus": {"15.1": {"endpoint": "192.0.2.9", "color": 1}},
          "policyForwardingStatus": {"15.1": {"vias": [{"interface": "DynamicTunnel:7.1"}]}}}
STRANGE = "leads into a tunnel with vias in an encapsulation that does not exist"
SAME_WAY = [{"hop": "192.0.2.5", "interface": "Ethernet1", "label": label} for label in (100, 200)]
# What is wrong, and what the message says behind the prefix and the VRF.
LISTINGS = {
    "a gap among the types": ({IP4: {"type": 6, "fec": "0.1"}}, {}, "its route type 6 does not"),
    "a type above all": ({IP6: {"type": 4294967295, "fec": "1.1"}}, {},
                         "its route type 4294967295 does not exist: del sortedRoute"),
    "no FEC in IPv6": ({IP6: {"type": "nexthopGroup"}}, {}, "it has no FEC, which an IPv6 route"),
    "the gateway": ({"0.0.0.0/0": {"type": 35, "fec": "0.1"}}, {}, "its route type 35 does not"),
    "an interface in MPLS": (on_fec(IP4), {"vias": [{"interface": "Tunnel3"}],
                                           **tunnel("9.3", "3.1")},
                             "its FEC 0.1 leads into a tunnel interface in MPLS"),
    "FECs beside a policy": (on_fec(IP6), {"vias": [{"interface": "Fec:15.1"},
                                                    {"interface": "Fec:20.1"}], **POLICY},
                             "its FEC 1.1 leads to a FEC of a kind that does not exist"),
    "encapsulations": (on_fec(IP4), {"vias": [{"interface": "DynamicTunnel:7.1"}],
                                     **tunnel("7.1", "4.1", "4.2")}, STRANGE),
    "an encapsulation of a FEC": (on_fec(IP6), {"vias": [{"interface": "DynamicTunnel:2.1"}],
                                                **tunnel("2.1", "15.1", interface="Fec:0.7"),
                                                "forwardingStatus": {"0.7": {"vias": SAME_WAY}}},
                                  STRANGE),
    "encapsulations of a policy": (on_fec(IP4), {"vias": [{"interface": "Fec:15.1"}], **POLICY,
                                                 **tunnel("7.1", "5.1", "5.1")}, STRANGE),
}


@pytest.mark.parametrize("fault", LISTINGS)
@pytest.mark.parametrize("display", [lambda sorter: sorter.printRoutes(NULL, 1),
                                     lambda sorter: sorter.model()], ids=["text", "model"])
def test_a_listing_names_the_route_that_it_cannot_show(fault, display, tmp_path):
    routes, sections, message = LISTINGS[fault]
    prefix = next(iter(routes))
    family = "6" if ":" in prefix else ""
    device = state(tmp_path, routes, family, **sections)
    sorter = (rova.Route6Sorter if family else rova.RouteSorter)(
        device.ip6("red") if family else device.ip("red"))
    found = in_child(lambda: display(sorter))
    kind = "Route6Sorter" if family else "RouteSorter"
    assert found.startswith(f"InternalException: {kind}.printRoutes: {prefix} of VRF red: ")
    assert message in found
    if prefix != "0.0.0.0/0":
        del sorter.sortedRoute[prefix]  # the remedy
        assert in_child(lambda: display(sorter)) == ""


@pytest.mark.parametrize("name", ["route-types", "missing-fec", "tunnel-interfaces", "leaf",
                                  "tunnels-on-fecs", "sr-te-policies", "evpn"])
def test_what_can_be_shown_is_shown(name):
    device = open_scenario(name)
    for query in ({}, {"detail": True}, {"protocol": "S"}, {"host": True}):
        assert rova.RouteSorter(device.ip(), **query).model() is not None
        assert rova.Route6Sorter(device.ip6(), **query).model() is not None


def test_a_tunnel_whose_vias_count_as_none_in_16_bits_is_listed(tmp_path):
    device = state(tmp_path, on_fec(IP4), vias=[{"interface": "DynamicTunnel:1.1", "weight": 2}],
                   **tunnel("1.1", *["0.1"] * 65536))
    vias = rova.RouteSorter(device.ip("red")).model()["routes"][IP4]["vias"]
    assert [via["interface"] for via in vias] == ["Ethernet1"]


def test_a_route_that_is_not_listed_stands_in_nobodys_way(tmp_path):
    routes = {IP4: {"type": "static", "fec": "0.1"}, "10.2.0.0/16": {"type": 99, "fec": "0.1"}}
    device = state(tmp_path, routes)
    sorter = rova.RouteSorter(device.ip("red"), prefix="10.1.2.3/32")
    assert list(sorter.model()["routes"]) == [IP4]
    assert rova.RouteSorter(device.ip("red"), host=True).model() == {}
    whole = rova.RouteSorter(device.ip("red"))
    assert whole.protocolString(IP4).strip() == "S"
    assert in_child(lambda: whole.protocolString("10.2.0.0/16")) == (
        "InternalException: RouteSorter.protocolString: 10.2.0.0/16: its route type 99 does not "
        "exist")


def answer(**query):
    return lambda leaf: rova.RouteSorter(leaf.ip(), **query).longestPrefixMatch()


def counters(**tables):
    return lambda leaf: rova.NexthopGroupCounterHelper(**tables).getCounters(1, 0)


def unmounted_display(leaf):
    helper = rova.NexthopGroupCounterHelper(counterEnabled=True)
    rova.NexthopGroupHelper(leaf.ip(), counterHelper=helper).model()


def two_ways(leaf):
    routes = open_scenario("static-routes").ip("red")["routeInput"]["config"].route
    key, route = next(iter(routes.items()))
    route.via[{"hop": "192.0.2.1", "vtepAddr": "192.0.2.9"}] = True
    config = rova.type_of("Routing::ConfigGen")()
    config.route[key] = route
    rova.StaticRoutesCliSaver().save(config, True, "ip route ", rova.RovaConsts(1, 0, ""))


def wrong_directory(leaf):
    handles = open_scenario("tunnels").ip()
    rova.RdAssignmentChecker(routeDistinguisherInputDir=handles["tunnelTableDir"])


def no_interfaces(leaf):
    params = rova.Address6QueryParams(leaf.ip6(), addrWithMask="2001:db8::1/64")
    params.ipConfig = None
    rova.Address6AssignmentChecker().check(params)


def no_format(leaf):
    rova.StaticRoutesRibCommon(leaf.ip(), fmt=3).dump(rova.RovaConsts(1, 0, ""))


FAULTS = [
    (counters(), "InternalException: NexthopGroupCounterHelper.getCounters: counterKeyTable is "
                 "None: mountCounterVantaes(entityManager) mounts it"),
    (unmounted_display, "InternalException: NexthopGroupHelper.render: counterKeyTable is None"),
    (lambda leaf: rova.NexthopGroupCliCounterInterface().getCounters(rova.CounterIndex()),
     "InternalException: NexthopGroupCliCounterInterface.getCounters: this is the interface alone"),
    (answer(), "InternalException: RouteSorter.longestPrefixMatch: prefix is None: build the "
               'sorter for one address, prefix="ADDRESS/32"'),
    (answer(prefix="10.1.0.0/16", longerPrefixes=True),
     "InternalException: RouteSorter.longestPrefixMatch: longerPrefixes is True"),
    (lambda leaf: answer(prefix="10.0.1.1/32", host=True)(open_scenario("connected")),
     "InternalException: RouteSorter.longestPrefixMatch: sortedRoute has 6 routes: build"),
    (wrong_directory, "InternalException: RdAssignmentChecker: routeDistinguisherInputDir has an "
                      "entry '"),
    (lambda leaf: rova.SortedTunVia(encapId=4 << 28) < rova.SortedTunVia(encapId=4 << 28),
     "RangeException: SortedTunVia: encapId is of kind 4, its uppermost 4 bits: they are 0 to 3"),
    (no_interfaces, "InternalException: Address6AssignmentChecker.check: ipConfig of params is None"),
    (two_ways, "InternalException: StaticRoutesCliSaver.save: 10.9.0.0/16: a via has both the hop "
               "192.0.2.1 and the vtepAddr 192.0.2.9"),
    (no_format, "RangeException: StaticRoutesRibCommon.dump: fmt is 1 for text or 2 for JSON, "
                "found 3"),
]


@pytest.mark.parametrize("call, message", FAULTS)
def test_a_wrong_call_says_what_is_missing(call, message):
    leaf = open_scenario("leaf")
    assert in_child(lambda: call(leaf)).startswith(message)


def test_an_encapsulation_without_a_kind_comes_by_no_other_way(tmp_path):
    fib = state(tmp_path, {}, **tunnel("7.1", "4.1")).ip()["tunnelFib"]
    with pytest.raises(rova.InternalException, match="tunnelId .* does not exist"):
        rova.SortedTunViaSet(tunnelId=7 << 44 | 1, tunnelFib=fib)
    via = rova.SortedTunVia(encapId=3 << 28)
    with pytest.raises(AttributeError, match="SortedTunVia.encapId is given to the constructor"):
        rova.type_of("Tunnel::TunnelTable::TunnelVia").encapId.__set__(via, 4 << 28)
    text = via.strep().replace(str(3 << 28), str(4 << 28))
    with pytest.raises(rova.RangeException, match="encapId is of kind 4"):
        rova.SortedTunVia.from_strep(text)


# Every method and attribute of every type with values that are wrong for most of them. What still
# ends the process has to be in the list of docs/python.md, by the condition that it prints.

TYPES = {row["name"]: row for row in rova.types(all=True)}
TEXTS = [None, "", "x", "default", "Ethernet1", "Fec:255.1", "10.0.0.1", "10.1.0.0/16", "::/0",
         "2001:db8::1", "2001:db8::1/64"]
NUMBERS = [0, 1, 2, 3, 255, 4 << 28, 2**32 - 1, 7 << 44 | 1, 20 << 56, -1]
SCENARIO_NAMES = ["leaf", "tunnels", "tunnel-interfaces", "sr-te-policies", "static-routes",
                  "nexthop-group-counters"]


class Caller:
    """Makes objects of one device and calls them by chance."""

    def __init__(self, seed):
        self.chance = random.Random(seed)
        device = open_scenario(self.chance.choice(SCENARIO_NAMES))
        self.handles = [device.ip(), device.ip6()]
        self.entities = {}
        for handles in self.handles:
            for handle in [*handles.values(), *handles["routeInput"].values()]:
                self.entities.setdefault(type(handle), []).append(handle)

    def value(self, name, depth=0):
        form, row = TYPES[name]["form"], TYPES[name]
        if form == "enumeration":
            return self.chance.choice(row["entries"])[1]
        if form in ("text", "notation"):
            return self.chance.choice(TEXTS)
        if form not in ("entity", "record"):
            return self.chance.choice(NUMBERS)
        made = [self.make(name, depth + 1)] if row["constructible"] and depth < 2 else []
        return self.chance.choice([None, *made, *self.entities.get(rova.type_of(name), [])])

    def make(self, name, depth=0):
        for share in (0.5, 0.2, 0):
            given = {row["name"]: self.value(row["type"], depth)
                     for row in TYPES[name]["constructor"] if self.chance.random() < share}
            try:
                return rova.type_of(name)(self.chance.choice(self.handles), **given)
            except RAISED:
                pass
        return None

    def step(self, made, row):
        if row["kind"] == "method":
            outputs = {"fd": NULL, "fmt": self.chance.choice([0, 1, 2])}
            getattr(made, row["name"])(*[outputs.get(argument["name"], self.value(argument["type"]))
                                         for argument in row["arguments"]])
        elif row["kind"] in ("ordered", "hashed"):
            members = getattr(made, row["name"])
            members[self.value(row["key"])] = self.value(row["type"])
            list(members.items())
        else:
            setattr(made, row["name"], self.value(row["type"]))

    def run(self, name):
        made = self.make(name)
        rows = TYPES[name]["attributes"]
        for row in self.chance.choices(rows, k=30) + [row for row in rows if row["kind"] == "method"]:
            try:
                self.step(made, row)
                made == self.make(name)
                made < self.make(name)
            except RAISED:
                pass


def documented_conditions():
    text = (ROOT / "docs" / "python.md").read_text()
    return re.findall(r"^\| `([^`]+)` \|", text.partition("stops the process here too")[2], re.M)


def test_what_no_check_sees_prints_a_documented_condition():
    handles = open_scenario("tunnels").ip()
    checker = rova.RdAssignmentChecker(handles)
    text = checker.strep().replace(handles["routeDistinguisherInputDir"].strep(),
                                   handles["tunnelTableDir"].strep())
    found = in_child(lambda: rova.RdAssignmentChecker.from_strep(text))
    assert found.startswith("died: Assertion failed: ")
    assert found.removeprefix("died: Assertion failed: ").strip() in documented_conditions()


@pytest.mark.parametrize("name", [row["name"] for row in rova.types() if row["attributes"]])
def test_nothing_ends_the_process_that_is_not_documented(name):
    for seed in range(8):
        found = in_child(lambda: Caller(seed).run(name))
        condition = found.removeprefix("died: Assertion failed: ").strip()
        assert not found.startswith("died") or condition in documented_conditions(), (seed, found)
