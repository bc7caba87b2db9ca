"""`rova.open` and the handles that a device gives."""

import gc
import inspect
import threading

import pytest

import rova
from conftest import ROOT, SCENARIOS, open_scenario

STATE = SCENARIOS / "vrfs" / "snapshot.json"

SHARED = {
    "vrfName", "vrfId", "kernelUnprogrammedRoute", "forwardingStatus", "forwarding6Status",
    "vrfIdMap", "allIntfConfig", "arpVanta", "ip6Config", "routeDistinguisherInputDir", "nhgConfig",
    "nhEntryStatus", "nhgEntryStatus", "nhgHwStatus", "routingHwStatus", "entityManager",
    "tunnelFib", "evpnVxlanTunnelTable", "tunnelTableDir", "srTePolicyStatus",
    "policyForwardingStatus", "routingConfig", "config", "routingStatus", "ipStatus", "ipConfig",
    "routingHardwareStatus", "unprogrammedRouteStatus", "routeInput", "prefix", "fd", "intfStatus",
}


@pytest.mark.parametrize("source", [str(STATE), STATE, str(STATE).encode()])
def test_open_takes_what_names_a_file(source):
    device = rova.open(source)
    assert device.vrfs == ["default", "red"]
    assert device.source == str(STATE)
    assert device.state == {}
    assert repr(device) == f"<rova.Device {str(STATE)!r}>"


def test_the_kernel_is_a_source():
    # Where the kernel may not be asked, the error is that of a source.
    try:
        assert rova.open("kernel").vrfs[0] == "default"
    except rova.SourceError as error:
        assert "kernel" in str(error)


@pytest.mark.parametrize("source, error, message", [
    ("/no/such/file.json", rova.SourceError, "/no/such/file.json"),
    (str(ROOT / "README.md"), rova.SourceError, "README.md"),
    ("kernel:no such name", rova.SourceError, "no such name"),
    ("a\0b", ValueError, "null"),
    (7, TypeError, "int"),
    (None, TypeError, "NoneType"),
])
def test_a_source_that_is_none(source, error, message):
    with pytest.raises(error) as caught:
        rova.open(source)
    assert message in str(caught.value)


@pytest.mark.parametrize("family, extra", [("ip", set()), ("ip6", {"intf"})])
def test_handles_have_the_names_of_the_librarys_arguments(vrfs_device, family, extra):
    handles = getattr(vrfs_device, family)("red")
    assert set(handles) == SHARED | extra
    assert (handles["vrfName"], handles["vrfId"]) == ("red", 3)
    assert (handles["prefix"], handles["fd"], handles["intfStatus"]) == (None, -1, None)
    assert handles["nhgEntryStatus"] == handles["nhEntryStatus"]


def test_handles_are_of_their_family_and_vrf(vrfs_device):
    default, red = vrfs_device.ip(), vrfs_device.ip("red")
    assert default["vrfName"] == "default"
    assert default["tunnelFib"] == red["tunnelFib"]
    assert default["routingStatus"] != red["routingStatus"]
    assert default["routingStatus"] == vrfs_device.ip(vrf="default")["routingStatus"]
    for family, kind in ((default, "Fib"), (vrfs_device.ip6(), "Fib6")):
        assert type(family["routingStatus"]) is rova.type_of(f"Vanta::{kind}::RouteStatus")


def test_every_type_is_built_from_the_handles_of_a_device(vrfs_device):
    """What has handles in its constructor table takes those of the family that it is of."""
    built = 0
    for row in rova.types():
        handles = [a for a in row["constructor"] if is_handle(a["type"])]
        if not handles or not row["constructible"]:
            continue
        family = vrfs_device.ip6 if "6" in row["name"] else vrfs_device.ip
        made = getattr(rova, row["name"].split("::")[-1])(family())
        for argument in handles:
            given = family().get(argument["name"])
            assert getattr(made, argument["name"]) == given, argument["name"]
        built += 1
    assert built > 5


def is_handle(name):
    return next(row for row in rova.types(all=True) if row["name"] == name)["form"] == "entity"


def test_an_unknown_vrf_is_an_error_that_lists_the_others(vrfs_device):
    with pytest.raises(rova.SourceError) as caught:
        vrfs_device.ip("blue")
    assert str(caught.value) == f'{STATE}: there is no VRF "blue"; the VRFs are default, red'


@pytest.mark.parametrize("arguments", [(7,), (None,), ("red", 7), ("red", "Ethernet1", 1)])
def test_arguments_of_other_types_are_refused(vrfs_device, arguments):
    with pytest.raises(TypeError):
        vrfs_device.ip(*arguments)


@pytest.mark.parametrize("family, sorter, elsewhere, expected", [
    ("ip", rova.RouteSorter, "Ethernet9", {"10.1.0.0/16"}),
    ("ip6", rova.Route6Sorter, "Ethernet9", {"2001:db8:1::/48"}),
])
def test_an_interface_limits_a_listing(vrfs_device, family, sorter, elsewhere, expected):
    handles = getattr(vrfs_device, family)
    assert set(sorter(handles(interface="Ethernet1")).model()["routes"]) == expected
    assert sorter(handles(interface=elsewhere)).model()["routes"] == {}


def test_handles_outlive_the_device():
    device = open_scenario("vrfs")
    handles = device.ip("red")
    del device
    gc.collect()
    assert list(rova.RouteSorter(handles).model()["routes"]) == ["10.2.0.0/16"]


def test_agents_inputs_come_by_their_names():
    device = open_scenario("static-routes")
    inputs = device.ip("red")["routeInput"]
    assert {agent: len(routes.route) for agent, routes in inputs.items()} == {"config": 2, "agent": 2}
    assert list(device.ip6("red")["routeInput"]) == ["agent"]
    assert device.ip()["routeInput"] == {}


def test_devices_are_opened_by_several_threads():
    names = []
    threads = [threading.Thread(target=lambda: names.append(open_scenario("vrfs").vrfs))
               for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert names == [["default", "red"]] * 8


def test_a_device_is_made_by_open_alone():
    with pytest.raises(TypeError):
        rova.Device()
    assert str(inspect.signature(rova.open)) == "(source)"
