"""Classes made from type records: construction, documentation, comparison, text form."""

import inspect

import pytest

import rova


def test_registered_types_are_classes_of_the_module():
    for name in ["RouteSorter", "Route6Summary", "CachedVia", "AddressQueryResult", "RovaConsts"]:
        made = getattr(rova, name)
        assert (made.__name__, made.__module__, made.__qualname__) == (name, "rova", name)
        assert rova.type_of("Rova::" + name) is made
        assert issubclass(made, rova.Object)


def test_other_types_are_known_by_their_full_names():
    route = rova.type_of("Vanta::Fib::Route")  # the members of RouteSorter.sortedRoute
    assert repr(route) == "<class 'rova.Vanta.Fib.Route'>"
    assert route is not rova.type_of("Routing::Route")
    assert issubclass(rova.SortedTunVia, rova.type_of("Tunnel::TunnelTable::TunnelVia"))
    for unknown in ["Rova::Nothing", "RouteSorter", "U32", "Kesh::Prefix", ""]:
        with pytest.raises(KeyError):
            rova.type_of(unknown)


def test_documentation_tells_kind_constructor_attributes_and_methods():
    doc = inspect.getdoc(rova.SortedTunViaSet).splitlines()
    assert doc[0] == "Rova::SortedTunViaSet, a value."
    assert doc[1] == ("Constructor: SortedTunViaSet(tunnelId: Tunnel::TunnelTable::TunnelId, "
                      "tunnelFib: Tunnel::TunnelFib::TunnelFib)")
    assert "tunnelId: Tunnel::TunnelTable::TunnelId, read only" in doc
    assert "tunnelFib: Tunnel::TunnelFib::TunnelFib or None, read only" in doc
    assert "via: collection of bool by Rova::SortedTunVia, in the order of the keys" in doc
    assert "handleInitialized()" in doc
    assert "printRoutes(fd: U32, fmt: U32) -> bool" in rova.RouteSorter.__doc__
    assert rova.CachedVia.tunnelId.__doc__ == "Tunnel::TunnelTable::TunnelId, computed"
    assert list(inspect.signature(rova.RouteSortKey).parameters) == [
        "defaults", "prefix", "preference", "attributes"]


@pytest.mark.parametrize("args, kwargs, packets, bytes_", [
    ((), {}, 0, 0),
    ((5,), {}, 5, 0),
    ((5, 6), {}, 5, 6),
    ((), {"bytes": 6}, 0, 6),
    (({"bytes": 6, "color": "red"},), {}, 0, 6),
    (({"bytes": 6},), {"bytes": 7}, 0, 7),
    (({"bytes": 6}, 5), {}, 5, 6),
])
def test_constructor_arguments(args, kwargs, packets, bytes_):
    entry = rova.CounterEntry(*args, **kwargs)
    assert (entry.packets, entry.bytes) == (packets, bytes_)


def test_keywords_and_defaults_write_plain_attributes():
    via = rova.CachedVia({"viaIndex": 4, "viaWeight": "2/3"}, hop="10.0.0.1", viaIndex=3)
    assert (str(via.hop), via.viaIndex, via.viaWeight) == ("10.0.0.1", 3, "2/3")
    # A default outside the range of a plain attribute is meant for constructors that take it.
    assert rova.CachedVia({"viaIndex": -1}).viaIndex == 0


@pytest.mark.parametrize("make, message", [
    (lambda: rova.CounterEntry(1, 2, 3), "CounterEntry takes 2 positional arguments, found 3"),
    (lambda: rova.CounterEntry(1, packets=2), "CounterEntry got packets twice"),
    (lambda: rova.CounterEntry(chips=1),
     "CounterEntry has no argument or attribute 'chips', but: packets bytes"),
    (lambda: rova.CachedVia(tunnelId=1), "CachedVia has no argument or attribute 'tunnelId', but: "
     "hop intfId isBackup viaLabel viaWeight viaIndex"),
    (lambda: rova.CounterEntry("x"), "packets: expected U64, found str"),
    (lambda: rova.RouteSummary(), "RouteSummary needs routingStatus, a handle to "
     "Vanta::Fib::RouteStatus: pass the handles of a device, as device.ip() gives them"),
    (lambda: rova.RouteSummary(None, None), "RouteSummary needs routingStatus"),
    (lambda: rova.RouteSummary(rova.CachedFec(1)),
     "routingConfig: expected Routing::ConfigGen, found Rova::CachedFec"),
    (lambda: rova.type_of("Vanta::Fib::RouteStatus")(), "is not built by name"),
    (lambda: rova.Object(), "rova.Object is no type of the library"),
])
def test_wrong_arguments_are_type_errors(make, message):
    with pytest.raises(TypeError) as error:
        make()
    assert message in str(error.value)


def test_missing_handles_that_may_be_null_are_null():
    assert rova.SortedTunViaSet().tunnelFib is None
    assert rova.RdAssignmentChecker(None, "red", "1:2").routeDistinguisherInputDir is None


def test_classes_can_be_derived_from():
    class Marked(rova.CounterEntry):
        mark = "here"

    entry = Marked(packets=2)
    entry.note = "more"
    assert (entry.packets, entry.mark, entry.note, entry) == (2, "here", "more",
                                                              rova.CounterEntry(2, 0))


def test_enumerations_are_int_enums_of_their_names():
    assert [(m.name, m.value) for m in rova.AddrMatchType] == [
        ("allowNoMatch", 0), ("allowExactMatch", 1), ("allowAddressMatch", 2)]
    assert rova.AddrMatchType.__module__ == "rova"


def test_values_compare_by_what_they_hold():
    a, b = rova.RouteSortKey("10.0.0.0/8", 1), rova.RouteSortKey("10.0.0.0/8", 2)
    assert a == rova.RouteSortKey("10.0.0.0/8", 1) and a != b
    assert a < b and b > a and not b < a
    assert a != "10.0.0.0/8" and a != rova.CounterEntry(1, 1)
    for compare in [lambda: a <= b, lambda: a < 1, lambda: rova.CounterEntry() < a]:
        with pytest.raises(TypeError):
            compare()


def test_false_is_what_equals_the_default():
    assert not rova.CounterEntry(0, 0) and rova.CounterEntry(0, 1)
    assert not rova.CachedVia() and rova.CachedVia(viaIndex=1)
    assert not rova.RouteSortKey() and not rova.RovaConsts()
    assert rova.CachedFec()  # entities have no default


def test_hashes_are_those_of_the_library():
    index = rova.CounterIndex(5, "0" * 31 + "1")
    assert hash(index) == index.hash == hash(rova.CounterIndex(5, "0" * 31 + "1"))
    with pytest.raises(TypeError, match="unhashable type: 'CachedVia'"):
        hash(rova.CachedVia())


def test_an_entity_is_one_identity(vrfs_device):
    fec, other = rova.CachedFec(1), rova.CachedFec(1)
    assert fec == fec and fec != other and len({fec, fec, other}) == 2
    assert repr(fec).startswith("<rova.CachedFec at 0x")
    given = vrfs_device.ip()["routingConfig"]
    read = [rova.RouteSummary(vrfs_device.ip()).routingConfig for _ in range(2)]
    assert read[0] == read[1] == given and hash(read[0]) == hash(given)


CONSTS = ("Value('Rova::RovaConsts', ** {'defaultStaticRoutePreference': "
          "Value('Routing::RoutePreference', 7), 'defaultStaticRouteTag': 9, "
          "'defaultStaticRouteName': 'a\\'b'})")


def test_strep_text_is_written_and_read():
    consts = rova.RovaConsts(7, 9, "a'b")
    assert consts.strep() == repr(consts) == CONSTS
    assert rova.RovaConsts.from_strep(CONSTS) == consts
    with pytest.raises(rova.RangeException):
        rova.RovaConsts.from_strep(CONSTS + " ")
    with pytest.raises(TypeError):
        rova.RovaConsts.from_strep(b"")
    fec = rova.CachedFec(1)
    assert rova.CachedFec.from_strep(fec.strep()) == fec


@pytest.mark.parametrize("name", ["SortedTunViaSet", "PolicyInfo", "NexthopInfo",
                                  "StaticRoutesCliSaver", "RouteSummary"])
def test_no_text_is_read_for_a_type_with_a_collection(name):
    with pytest.raises(TypeError, match="has a collection"):
        getattr(rova, name).from_strep("None")
