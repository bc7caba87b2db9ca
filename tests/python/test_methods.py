"""Methods by name."""

import inspect
import os
from ipaddress import IPv4Address
from pathlib import Path

import pytest

import rova

SCENARIOS = Path(__file__).resolve().parents[1] / "scenarios"


@pytest.fixture
def sorter(vrfs_device):
    return rova.RouteSorter(vrfs_device.ip())


def test_arguments_are_positional_or_by_name(sorter):
    expected = sorter.protocolString("10.1.0.0/16")
    assert expected.strip() == "S"
    assert sorter.protocolString(p="10.1.0.0/16") == expected
    assert rova.RouteSorter.protocolString(sorter, "10.1.0.0/16") == expected
    route = sorter.createAttachedRoute(intfId="Ethernet1", ip="192.0.2.7")
    assert str(route.key) == "192.0.2.7/32"


def test_results_of_each_kind(sorter):
    assert rova.SortedTunVia("10.0.0.1").hash() == rova.SortedTunVia("10.0.0.1").hash()
    assert sorter.handleInitialized() is None
    fec = sorter.viasForPrefix("10.1.0.0/16")
    assert isinstance(fec, rova.CachedFec) and len(fec.via) == 1
    assert sorter.viasForPrefix("10.9.0.0/16") is None


@pytest.mark.parametrize("checker, family, config, hop, vrf, own", [
    (rova.InvalidNextHopChecker, "ip", "ipConfig", IPv4Address("10.0.1.1"), "default", True),
    (rova.InvalidNextHopChecker, "ip", "ipConfig", "10.0.1.1", "red", False),
    (rova.InvalidNextHop6Checker, "ip6", "ip6Config", "2001:db8::1", "default", True),
    (rova.InvalidNextHop6Checker, "ip6", "ip6Config", "2001:db8::2", "default", False),
])
def test_handles_as_arguments(checker, family, config, hop, vrf, own):
    handles = getattr(rova.open(SCENARIOS / "static-checks" / "snapshot.json"), family)()
    assert checker().check(handles[config], hop, vrfName=vrf) is own


@pytest.mark.parametrize("fmt", [0, 3])
def test_a_format_that_does_not_exist_is_refused(sorter, fmt):
    with pytest.raises(ValueError, match=f"fmt is 1 for text or 2 for JSON, found {fmt}"):
        sorter.printRoutes(1, fmt)


@pytest.mark.parametrize("call, message", [
    (lambda s: s.protocolString(),
     "protocolString(p: Kesh::Prefix) -> Lumo::String: needs p"),
    (lambda s: s.protocolString("10.1.0.0/16", 2), "takes 1 arguments, found 2"),
    (lambda s: s.protocolString(q=1), "has no argument 'q'"),
    (lambda s: s.protocolString("10.1.0.0/16", p="10.1.0.0/16"), "got p twice"),
    (lambda s: s.protocolString(5), "p: expected Kesh::Prefix, found int"),
    (lambda s: rova.RouteSorter.protocolString(), "needs an instance of rova.RouteSorter"),
    (lambda s: rova.RouteSorter.protocolString(5, 6), "needs an instance of rova.RouteSorter"),
    (lambda s: rova.InvalidNextHopChecker().check(None, "10.0.0.1", "red"),
     "ipConfig may not be None"),
    (lambda s: type(rova.RouteSorter.legend)(), "cannot create 'rova.Method' instances"),
])
def test_wrong_calls_are_type_errors(sorter, call, message):
    with pytest.raises(TypeError) as error:
        call(sorter)
    assert message in str(error.value)


def test_methods_tell_of_themselves(sorter):
    method = rova.RouteSorter.printRoutes
    for shown in [method, sorter.printRoutes]:
        assert (shown.__name__, shown.__qualname__) == ("printRoutes", "RouteSorter.printRoutes")
        assert shown.__doc__.startswith("printRoutes(fd: U32, fmt: U32) -> bool\n")
    assert repr(method) == ("<method printRoutes(fd: U32, fmt: U32) -> bool of rova.RouteSorter>")
    assert sorter.printRoutes.__self__ is sorter
    assert str(inspect.signature(sorter.printRoutes)) == "(fd, fmt)"
    assert inspect.isroutine(method)


def test_methods_that_change_need_what_can_be_changed(vrfs_device):
    fecs = rova.RouteSorter(vrfs_device.ip()).fec
    [fec] = fecs.values()
    assert fec.via  # a handle that is not constant
    helper = rova.NexthopGroupCounterHelper()
    groups = rova.NexthopGroupHelper(vrfs_device.ip(), counterHelper=helper)
    assert groups.counterHelper == helper
    assert groups.vrfName == "default"  # a plain attribute takes the device's default


def test_a_listing_goes_to_its_descriptor(sorter):
    read, write = os.pipe()
    assert sorter.printRoutes(write, 1) is True
    os.close(write)
    with open(read, encoding="utf-8") as output:
        assert ("10.1.0.0/16 [1/0] via 192.0.2.1, Ethernet1" in output.read())
