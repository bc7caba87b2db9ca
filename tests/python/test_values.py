"""Conversions: each form of the library's values to Python and back."""

from ipaddress import (IPv4Address, IPv4Network, IPv6Address, IPv6Interface, IPv6Network)

import pytest

import rova

Via = rova.type_of("Routing::Via")
Route = rova.type_of("Vanta::Fib::Route")
Route6 = rova.type_of("Vanta::Fib6::Route")
RouteKey = rova.type_of("Routing::RouteKey")
PolicyKey = rova.type_of("SrTePolicy::PolicyKey")
EndPoint = rova.type_of("SrTePolicy::EndPoint")
RouteType = rova.type_of("Routing::Fib::RouteType")


class Index:
    """An integer that is none of Python's own."""

    def __index__(self):
        return 300


@pytest.mark.parametrize("made, attribute, given, read", [
    (rova.CachedVia, "isBackup", True, True),
    (rova.CachedVia, "isBackup", 0, False),
    (rova.CachedVia, "viaIndex", 65535, 65535),
    (rova.CachedVia, "viaIndex", Index(), 300),
    (rova.CachedVia, "viaIndex", True, 1),
    (rova.CachedFec, "numEntries", -2**31, -2**31),
    (rova.CachedFec, "weight", 2**32 - 1, 2**32 - 1),
    (rova.CachedFec, "backupViaIndex", 511, 511),
    (rova.CachedVia, "viaLabel", 16, 16),
    (rova.CachedVia, "viaWeight", "2/3", "2/3"),
    (rova.CachedVia, "viaWeight", "\N{SNOWMAN}\0x", "\N{SNOWMAN}\0x"),
    (rova.CachedVia, "viaWeight", "\udcff\udc80", "\udcff\udc80"),
    (Route, "routeType", RouteType.rip, RouteType.rip),
    (Route, "routeType", "static", RouteType["static"]),
    (Route, "routeType", int(RouteType.kernel), RouteType.kernel),
    (rova.CachedVia, "intfId", "Ethernet3/1", "Ethernet3/1"),
    (rova.CachedVia, "intfId", "", ""),
    (Via, "routerMac", "02:00:00:00:00:0a", "02:00:00:00:00:0a"),
    (rova.CachedVia, "hop", "10.0.0.1", IPv4Address("10.0.0.1")),
    (rova.CachedVia, "hop", IPv6Address("2001:db8::1"), IPv6Address("2001:db8::1")),
    (rova.CachedVia, "hop", None, None),
    (rova.CachedVia, "hop", "", None),
    (Route, "key", "10.0.0.0/8", IPv4Network("10.0.0.0/8")),
    (Route, "key", IPv4Network("0.0.0.0/0"), IPv4Network("0.0.0.0/0")),
    (Route, "key", None, None),
    (Route6, "key", IPv6Network("2001:db8::/32"), IPv6Network("2001:db8::/32")),
    (Route6, "key", None, None),
    (RouteKey, "prefix", IPv6Network("::/0"), IPv6Network("::/0")),
    (RouteKey, "prefix", "10.0.0.0/8", IPv4Network("10.0.0.0/8")),
    (RouteKey, "prefix", None, None),
    (RouteKey, "preference", 255, 255),
    (PolicyKey, "endpoint", EndPoint(address="10.0.0.1"), EndPoint(address="10.0.0.1")),
    (PolicyKey, "endpoint", {"address": "::1"}, EndPoint(address="::1")),
    (PolicyKey, "endpoint", ("::1",), EndPoint(address="::1")),
    (PolicyKey, "endpoint", {}, EndPoint()),
])
def test_what_is_written_is_read(made, attribute, given, read):
    value = made()
    setattr(value, attribute, given)
    found = getattr(value, attribute)
    assert found == read and type(found) is type(read)


@pytest.mark.parametrize("made, attribute, given, error, message", [
    (rova.CachedVia, "viaIndex", 65536, rova.RangeException,
     "viaIndex: 65536 is outside the range of U16"),
    (rova.CachedVia, "viaIndex", -1, rova.RangeException,
     "viaIndex: -1 is outside the range of U16"),
    (rova.CachedVia, "viaIndex", 2**64 + 1, rova.RangeException,
     "viaIndex: 18446744073709551617 is outside the range of U16"),
    (rova.CachedVia, "viaIndex", -2**70, rova.RangeException, "is outside the range of U16"),
    (rova.CachedVia, "viaIndex", 1.0, TypeError, "viaIndex: expected U16, found float"),
    (rova.CachedVia, "viaIndex", "1", TypeError, "viaIndex: expected U16, found str"),
    (rova.CachedVia, "isBackup", 2, rova.RangeException, "2 is outside the range of bool"),
    (rova.CachedVia, "isBackup", "", TypeError, "isBackup: expected bool, found str"),
    (rova.CachedVia, "viaLabel", 0x800001, rova.RangeException, "MplsLabel::value"),
    (rova.CachedFec, "backupViaIndex", 512, rova.RangeException, "ViaIndex::max"),
    (rova.CachedVia, "viaWeight", b"x", TypeError, "expected Lumo::String, found bytes"),
    (rova.CachedVia, "viaWeight", None, TypeError, "expected Lumo::String, found None"),
    (Route, "routeType", "bee", rova.RangeException, "bee"),
    (Route, "routeType", 9999, rova.RangeException, "9999"),
    (Route, "routeType", 1.5, TypeError, "expected Routing::Fib::RouteType, found float"),
    (Via, "routerMac", "02:00", rova.RangeException, "'02:00' is no Kesh::EthAddr"),
    (rova.CachedVia, "hop", "10.0.0", rova.RangeException, "'10.0.0' is no Kesh::IpGenAddr"),
    (rova.CachedVia, "hop", 1, TypeError, "hop: expected Kesh::IpGenAddr, found int"),
    (Route, "key", "10.0.0.1/8", rova.RangeException, "is no Kesh::Prefix"),
    (Route, "key", IPv6Network("::/0"), rova.RangeException, "'::/0' is no Kesh::Prefix"),
    (Route, "key", IPv4Address("10.0.0.1"), rova.RangeException, "is no Kesh::Prefix"),
    (RouteKey, "prefix", "10.0.0.0", rova.RangeException, "'10.0.0.0' is no Kesh::IpGenPrefix"),
    (PolicyKey, "endpoint", PolicyKey(), TypeError,
     "expected SrTePolicy::EndPoint, found SrTePolicy::PolicyKey"),
    (PolicyKey, "endpoint", ("::1", 2), TypeError,
     "expected 1 fields of SrTePolicy::EndPoint, found 2"),
    (PolicyKey, "endpoint", {"adress": 1}, TypeError, "'adress', but: address"),
    (PolicyKey, "endpoint", {3: 1}, TypeError, "names as keywords only"),
    (PolicyKey, "endpoint", {"address": "::g"}, rova.RangeException, "endpoint: address: '::g'"),
])
def test_what_does_not_fit_is_refused_and_changes_nothing(made, attribute, given, error, message):
    value = made()
    before = getattr(value, attribute)
    with pytest.raises(error) as raised:
        setattr(value, attribute, given)
    assert message in str(raised.value)
    assert getattr(value, attribute) == before


def test_values_are_copies():
    key = PolicyKey(endpoint=("10.0.0.1",), color=5)
    key.endpoint.address = "10.0.0.2"
    assert str(key.endpoint.address) == "10.0.0.1"


@pytest.mark.parametrize("instance, attribute, why", [
    (rova.CounterEntry(1, 2), "packets", "CounterEntry.packets is given to the constructor"),
    (rova.CachedVia(), "tunnelId", "CachedVia.tunnelId is worked out"),
    (rova.CachedFec(1), "via", "CachedFec.via is a collection: change its members"),
])
def test_what_cannot_be_written_says_why(instance, attribute, why):
    with pytest.raises(AttributeError, match=why):
        setattr(instance, attribute, 1)
    with pytest.raises(AttributeError):
        delattr(instance, attribute)


def test_attributes_that_there_are_not():
    via = rova.CachedVia()
    with pytest.raises(AttributeError):
        via.viaIndx = 3
    with pytest.raises(AttributeError, match="cannot be deleted"):
        del via.viaIndex


def test_interface_addresses_keep_their_host_bits(vrfs_device):
    query = rova.Address6QueryParams(vrfs_device.ip6(), addrWithMask="2001:db8::1/64")
    assert query.addrWithMask == IPv6Interface("2001:db8::1/64")
    query.addrWithMask = IPv6Interface("2001:db8::2/64")
    assert query.addrWithMask == IPv6Interface("2001:db8::2/64")


def test_reals(vrfs_device):
    handles = vrfs_device.ip()
    assert rova.RouteSorter(handles).quantify == 0.0
    for given, read in [(1.5, 1.5), (2, 2.0)]:
        found = rova.RouteSorter(handles, quantify=given).quantify
        assert found == read and type(found) is float
    with pytest.raises(TypeError, match="quantify: expected double, found str"):
        rova.RouteSorter(handles, quantify="1")
