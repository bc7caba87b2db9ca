"""`.model()`: displays as Python objects."""

import gc
import json
import os
import resource
import signal
import sys
import threading
import time

import pytest

import rova
from conftest import listings, open_scenario
from rova._rova import _model_of_text

SORTERS = {"ip": rova.RouteSorter, "ipv6": rova.Route6Sorter}


def handles_of(device, family, vrf):
    return (device.ip if family == "ip" else device.ip6)(vrf)


def query(words):
    """The VRF of a command and whether it wants details; None for a query of another kind."""
    rest = list(words)
    vrf = "default"
    if "vrf" in rest:
        at = rest.index("vrf")
        vrf = rest[at + 1]
        del rest[at:at + 2]
    detail = "detail" in rest
    if detail:
        rest.remove("detail")
    return None if rest or vrf == "all" else (vrf, detail)


ROUTES = [listing for family in SORTERS for listing in listings("show", family, "route")
          if query(listing.words[3:])]


@pytest.mark.parametrize("listing", ROUTES, ids=lambda listing: listing.name)
def test_routes_are_those_that_the_command_lists(listing):
    family = listing.words[1]
    vrf, detail = query(listing.words[3:])
    sorter = SORTERS[family](handles_of(rova.open(listing.state), family, vrf), detail=detail)
    assert sorter.model() == listing.expected["vrfs"][vrf]


GROUPS = [listing for listing in listings("show", "nexthop-group") if query(listing.words[2:])]


@pytest.mark.parametrize("listing", GROUPS, ids=lambda listing: listing.name)
def test_nexthop_groups_are_those_that_the_command_lists(listing):
    vrf, _ = query(listing.words[2:])
    groups = rova.NexthopGroupHelper(rova.open(listing.state).ip(vrf))
    assert groups.model() == listing.expected


@pytest.mark.parametrize("words", ["vrf red", "vrf red dynamic"])
def test_static_routes_are_those_that_the_command_lists(words):
    [listing] = [found for found in listings("show", "static") if found.words[2:] == words.split()]
    device = rova.open(listing.state)
    dump = rova.StaticRoutesRibCommon(device.ip("red"), dynamic="dynamic" in words, fd=7, fmt=1)
    for handles in (device.ip("red"), device.ip6("red")):
        for _, routes in sorted(handles["routeInput"].items()):
            dump.routeInputConf[routes] = True
    assert dump.model(rova.RovaConsts()) == listing.expected["vrfs"]["red"]
    assert (dump.fd, dump.fmt) == (7, 1)  # as they were


def test_displays_of_all_kinds_are_covered():
    assert len(ROUTES) > 40 and len(GROUPS) > 5


TEXTS = [
    (b"", {}),
    (b" \n", {}),
    (b"{}", {}),
    (b'{"a":1}\n', {"a": 1}),
    (b'"a":1,"b":{"c":[]}', {"a": 1, "b": {"c": []}}),
    (b'\n"a":\n[1,{"b":null}]', {"a": [1, {"b": None}]}),
    (b'"a":true,"b":false', {"a": True, "b": False}),
    (b'"a":-9223372036854775808,"b":18446744073709551615', {"a": -2**63, "b": 2**64 - 1}),
    (b'"a":0.5,"b":1e300,"c":-0.0', {"a": 0.5, "b": 1e300, "c": -0.0}),
    (b'"a":"","":"b"', {"a": "", "": "b"}),
    (b'"a":"\\u00e9\\n\\"\\\\","\xc3\xa9":"\xf0\x9f\x98\x80"',
     {"a": '\u00e9\n"\\', "\u00e9": "\U0001f600"}),
    (b'"a":1,"a":2', {"a": 2}),
    (b'"%s":"%s"' % (b"k" * 63, b"v" * 65), {"k" * 63: "v" * 65}),
    (b'"k":"1234567","l":"12345678","m":"123456789","n":"x","o":"xy","p":"xyz","q":"xxxx"',
     {"k": "1234567", "l": "12345678", "m": "123456789", "n": "x", "o": "xy", "p": "xyz",
      "q": "xxxx"}),
]


@pytest.mark.parametrize("text, model", TEXTS)
def test_texts(text, model):
    found = _model_of_text(text)
    assert found == model
    assert json.dumps(found) == json.dumps(model)  # types too: 1 is no 1.0 and no True


@pytest.mark.parametrize("text", [
    b'"a":', b'"a":tru', b'"a":1}', b'{"a":1', b'{"a":1}{', b'"a" 1', b'"a":"b', b'"a":"\xff"',
    b'"a":1 2', b'"a":1,', b'"a":"\\q"', b'"a":[1,', b"exiting", b'"a":01', b"[1",
])
def test_what_is_no_model(text):
    assert gc.isenabled()
    with pytest.raises(rova.Error) as caught:
        _model_of_text(text)
    assert "no JSON" in str(caught.value)
    assert gc.isenabled()


def test_a_depth_beyond_all_displays_is_refused():
    with pytest.raises(RecursionError):
        _model_of_text(b'"a":' + b"[" * 100_000 + b"]" * 100_000)


def test_texts_differ_that_fall_on_one_place_of_the_cache():
    """More texts than the cache has places, each twice."""
    model = {f"key{i}": [f"value{i % 7000}", f"value{i % 7000}"] for i in range(20_000)}
    assert _model_of_text(json.dumps(model).encode()) == model


def test_repeated_keys_are_the_programs_own():
    model = _model_of_text(b'"a":[{"preference":1},{"preference":2},{"preference":3}]')
    last = [key for route in model["a"] for key in route][-1]
    assert last is sys.intern("preference")


def test_the_collector_stays_as_it_was():
    for enable in (gc.disable, gc.enable):
        enable()
        before = gc.isenabled()
        _model_of_text(b'"a":1')
        assert gc.isenabled() == before


@pytest.mark.parametrize("args, kwargs, message", [
    ((), {"fd": 1}, "fd"),
    ((), {"fmt": 1}, "fmt"),
    ((1,), {}, "positional"),
    ((), {"nothing": 1}, "nothing"),
])
def test_arguments_that_a_display_does_not_take(vrfs_device, args, kwargs, message):
    sorter = rova.RouteSorter(vrfs_device.ip())
    with pytest.raises(TypeError) as caught:
        sorter.model(*args, **kwargs)
    assert message in str(caught.value)


def test_types_that_display_nothing_have_no_model(vrfs_device):
    assert not hasattr(rova.RouteSummary(vrfs_device.ip()), "model")
    assert not hasattr(rova.CachedVia(), "model")


def test_an_interrupt_ends_the_display(tmp_path):
    routes = {f"10.{i >> 8}.{i & 255}.0/24": {"type": "static", "fec": "0.1"}
              for i in range(65_000)}
    state = tmp_path / "state.json"
    state.write_text(json.dumps({
        "rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": routes}},
        "forwardingStatus": {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}}}))
    device = rova.open(state)
    before = open_descriptors()
    timer = threading.Timer(0.01, os.kill, (os.getpid(), signal.SIGINT))
    sorter = rova.RouteSorter(device.ip())
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        sorter.model()
        time.sleep(10)  # the display was quicker than the timer
    assert open_descriptors() == before
    assert len(rova.RouteSorter(device.ip()).model()["routes"]) == 65_000


def open_descriptors():
    return len(os.listdir("/proc/self/fd"))


def kilobytes():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss


@pytest.mark.parametrize("work", [
    lambda device: rova.RouteSorter(device.ip()).model(),
    lambda device: pytest.raises(TypeError, rova.RouteSorter(device.ip()).model, fd=1),
    lambda device: pytest.raises(rova.Error, _model_of_text, b'"a":[{"b":"c"},tru]'),
    lambda device: pytest.raises(rova.SourceError, device.ip, "blue"),
    lambda device: pytest.raises(rova.SourceError, rova.open, "/no/such/file"),
    lambda device: open_scenario("vrfs").vrfs,
    lambda device: rova.types(all=True),
], ids=["model", "wrong argument", "broken text", "wrong VRF", "wrong source", "open", "types"])
def test_nothing_is_kept(vrfs_device, work):
    def repeat(times):
        for _ in range(times):
            work(vrfs_device)
        gc.collect()

    repeat(300)
    before = open_descriptors(), kilobytes(), sys.getallocatedblocks()
    repeat(1000)
    assert open_descriptors() == before[0]
    assert kilobytes() - before[1] < 2000
    assert sys.getallocatedblocks() - before[2] < 200
