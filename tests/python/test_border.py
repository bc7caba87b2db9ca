"""The border between the languages: exceptions, locks, interrupts, memory."""

import errno
import gc
import json
import os
import signal
import sys
import threading
import time
from contextlib import contextmanager

import pytest

import rova

ROUTES = 40000


@pytest.fixture(scope="module")
def large(tmp_path_factory):
    """A device with so many routes that listing them fills a pipe and selecting them takes its
    time."""
    routes = {f"10.{n >> 8 & 255}.{n & 255}.{n >> 16 << 4}/28": {"type": "static", "fec": "0.1"}
              for n in range(ROUTES)}
    state = {
        "rovaSnapshot": 1,
        "vrfs": {"default": {"routingStatus": routes}},
        "forwardingStatus": {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}},
    }
    path = tmp_path_factory.mktemp("large") / "snapshot.json"
    path.write_text(json.dumps(state))
    return rova.open(path)


@contextmanager
def pipe():
    read, write = os.pipe()
    try:
        yield read, write
    finally:
        os.close(read)
        os.close(write)


@contextmanager
def interrupted_after(seconds):
    """SIGINT to the process after a while, as the user's key gives it."""
    timer = threading.Timer(seconds, os.kill, [os.getpid(), signal.SIGINT])
    timer.start()
    try:
        yield
    finally:
        timer.join()


@pytest.mark.parametrize("name, bases", [
    ("Error", (Exception,)),
    ("RangeException", (rova.Error, ValueError)),
    ("InternalException", (rova.Error, RuntimeError)),
    ("ErrnoException", (rova.Error, OSError)),
    ("CorruptionDetectedException", (rova.Error,)),
    ("SourceError", (rova.Error,)),
])
def test_exceptions_are_pythons_own_too(name, bases):
    made = getattr(rova, name)
    assert made.__bases__ == bases and made.__module__ == "rova" and made.__doc__


def test_errors_of_writing_are_os_errors(vrfs_device):
    sorter = rova.RouteSorter(vrfs_device.ip())
    with pytest.raises(OSError) as error:
        sorter.printRoutes(2**16, 1)
    assert error.value.errno == errno.EBADF
    assert error.value.strerror == "cannot write the output: Bad file descriptor"
    with open("/dev/full", "wb") as full, pytest.raises(OSError) as error:
        rova.RouteSorter(vrfs_device.ip()).printRoutes(full.fileno(), 1)
    assert error.value.errno == errno.ENOSPC


def test_rules_of_the_library_are_internal_exceptions(vrfs_device):
    constant = rova.RouteSummary(vrfs_device.ip()).routingConfig
    with pytest.raises(rova.InternalException, match="its handle is constant"):
        rova.ClearIntfRoutesAndViasHelper().clearIntfRoutesAndViasHelper(constant, "Ethernet1")


def test_an_object_in_the_dress_of_another_class_is_what_it_was():
    dressed = rova.CachedFec(1)
    dressed.__class__ = rova.CachedVia
    with pytest.raises(rova.InternalException, match="Rova::CachedFec::hop does not support read"):
        assert dressed.hop
    dressed = rova.CachedVia()
    dressed.__class__ = rova.CachedFec
    with pytest.raises(TypeError, match="CachedVia has no collection via"):
        assert dressed.via


def test_python_errors_pass_through_the_library():
    class Broken:
        def __index__(self):
            raise ZeroDivisionError("here")

    with pytest.raises(ZeroDivisionError, match="here"):
        rova.CachedVia(viaIndex=Broken())


def test_an_interrupt_ends_a_listing_that_nobody_reads(large, capfd):
    sorter = rova.RouteSorter(large.ip())
    with pipe() as (_, write), interrupted_after(0.3):
        with pytest.raises(KeyboardInterrupt):
            sorter.printRoutes(write, 1)
    assert "exiting" in capfd.readouterr().out
    # The wish is forgotten, and no interrupt between listings is taken for one.
    with pytest.raises(KeyboardInterrupt):
        os.kill(os.getpid(), signal.SIGINT)
        while True:
            os.getpid()
    with open(os.devnull, "wb") as sink:
        assert rova.RouteSorter(large.ip()).printRoutes(sink.fileno(), 1) is True


def test_an_ignored_interrupt_stays_ignored(large):
    before = signal.signal(signal.SIGINT, signal.SIG_IGN)
    try:
        os.kill(os.getpid(), signal.SIGINT)
        with open(os.devnull, "wb") as sink, interrupted_after(0):
            assert rova.RouteSorter(large.ip()).printRoutes(sink.fileno(), 1) is True
    finally:
        signal.signal(signal.SIGINT, before)


@pytest.mark.parametrize("select", [
    lambda sorter, handles: rova.RouteSorter(handles),
    # A method that may write, for all that its name says: Python's lock is free meanwhile.
    lambda sorter, handles: sorter.handleInitialized(),
], ids=["first", "again"])
def test_a_signal_handler_ends_a_selection(large, select):
    class Enough(Exception):
        pass

    calls = []

    def handler(number, frame):
        calls.append(number)
        if len(calls) == 3:  # within one selection, as signals that wait are one
            raise Enough

    handles = large.ip()
    sorter = rova.RouteSorter(handles)
    before = signal.signal(signal.SIGALRM, handler)
    signal.setitimer(signal.ITIMER_REAL, 0.002, 0.002)
    try:
        with pytest.raises(Enough):
            select(sorter, handles)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert len(rova.RouteSorter(handles).sortedRoute) == ROUTES


def test_a_thread_reads_what_another_lists(large):
    """Python's lock is free while the library waits for the reader of its output, who may end
    objects of the library meanwhile."""
    fec = rova.CachedFec(1)
    ended = [rova.CachedVia(), rova.CachedFec(2), fec.via, iter(fec.via)]
    name = ended[1].strep()
    received = []
    with pipe() as (read, write):

        def drain():
            while not received or not received[-1].endswith(b"\0"):
                received.append(os.read(read, 65536))
                ended.clear()

        reader = threading.Thread(target=drain)
        reader.start()
        assert rova.RouteSorter(large.ip()).printRoutes(write, 1) is True
        os.write(write, b"\0")
        reader.join()
    assert b"".join(received).count(b"via 192.0.2.1") == ROUTES
    with pytest.raises(rova.RangeException):
        rova.CachedFec.from_strep(name)  # names what lives only


def test_other_threads_run_while_a_selection_yields(large):
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)  # threads change only where a lock is given up
    turns, done = [0], threading.Event()

    def count():
        while not done.is_set():
            turns[0] += 1
            time.sleep(0)

    counter = threading.Thread(target=count)
    try:
        counter.start()
        before = turns[0]
        rova.RouteSorter(large.ip())
        during = turns[0] - before
    finally:
        sys.setswitchinterval(interval)
        done.set()
        counter.join()
    assert during > 0


def test_threads_work_on_one_library(large):
    handles = large.ip()
    fec = rova.CachedFec(1)
    found, failures = [], []

    def work(number):
        try:
            for turn in range(300):
                fec.interface[number] = f"Ethernet{turn}"
                assert fec.interface[number] == f"Ethernet{turn}"
            found.append(len(rova.RouteSorter(handles).sortedRoute))
        except BaseException as error:  # a thread's own would go unseen
            failures.append(error)

    threads = [threading.Thread(target=work, args=[number]) for number in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failures and found == [ROUTES] * 4 and len(fec.interface) == 4


def resident():
    """Bytes of memory in use."""
    gc.collect()
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def raised(call):
    """Calls, and drops the exception that has to come."""
    try:
        call()
    except (TypeError, ValueError, AttributeError, KeyError, OSError):
        return
    raise AssertionError("nothing was raised")


VIA = rova.CachedVia(hop="10.0.0.1", intfId="Ethernet1")
FEC = rova.CachedFec(1)
FEC.interface[1] = "Ethernet1"
FEC.via[VIA] = True
POLICY = rova.type_of("SrTePolicy::PolicyKey")()
CONSTS = rova.RovaConsts(1, 2, "name")
REPEATED = {
    "construction": lambda: rova.CachedVia(viaIndex=1, hop="10.0.0.1"),
    "positional construction": lambda: rova.RouteSortKey("10.0.0.0/8", 1),
    "defaults": lambda: rova.CounterEntry({"packets": 5}, bytes=6),
    "failed construction": lambda: raised(lambda: rova.CachedVia(nothing=1)),
    "entity": lambda: rova.CachedFec(5),
    "reading an address": lambda: VIA.hop,
    "reading a notation": lambda: VIA.intfId,
    "reading a record": lambda: POLICY.endpoint,
    "reading a number": lambda: VIA.viaLabel,
    "writing": lambda: setattr(VIA, "viaWeight", "2/3"),
    "writing a record": lambda: setattr(POLICY, "endpoint", ("10.0.0.1",)),
    "failed writing": lambda: raised(lambda: setattr(VIA, "viaIndex", 1 << 80)),
    "wrong type": lambda: raised(lambda: setattr(VIA, "viaIndex", "x")),
    "read only": lambda: raised(lambda: setattr(VIA, "tunnelId", 1)),
    "member": lambda: FEC.interface[1],
    "missing member": lambda: raised(lambda: FEC.interface[2]),
    "writing a member": lambda: FEC.interface.update({1: "Ethernet1"}),
    "deleting a member": lambda: (FEC.interface.setdefault(7, "x"), FEC.interface.pop(7)),
    "walk": lambda: list(FEC.via.items()),
    "unfinished walk": lambda: next(iter(FEC.via)),
    "views": lambda: (FEC.interface.keys() & {1}, FEC.interface == {1: "Ethernet1"}),
    "method": lambda: rova.SortedTunVia("10.0.0.1").hash(),
    "bound method": lambda: FEC.strep and rova.SortedTunVia().hash,
    "failed call": lambda: raised(lambda: rova.SortedTunVia().hash(5)),
    "comparison": lambda: (CONSTS == VIA, VIA < rova.CachedVia(), bool(VIA)),
    "strep": lambda: rova.RovaConsts.from_strep(CONSTS.strep()),
    "failed strep": lambda: raised(lambda: rova.RovaConsts.from_strep("x")),
    "representation": lambda: (repr(FEC), repr(VIA), repr(FEC.via)),
    "documentation": lambda: (rova.RouteSorter.printRoutes.__doc__, rova.type_of("Rova::CachedFec")),
}


REPEATED_ON_A_DEVICE = {
    "selection": lambda h, s, fd: rova.RouteSorter(h),
    "failed selection": lambda h, s, fd: raised(lambda: rova.RouteSorter(h, ipStatus=None)),
    "listing": lambda h, s, fd: rova.RouteSorter(h).printRoutes(fd, 2),
    "failed listing": lambda h, s, fd: raised(lambda: rova.RouteSorter(h).printRoutes(9999, 1)),
    "question": lambda h, s, fd: s.protocolString("10.1.0.0/16"),
    "entity result": lambda h, s, fd: s.viasForPrefix("10.1.0.0/16").via,
    "record": lambda h, s, fd: s.sortedRoute["10.1.0.0/16"].key,
    "routes": lambda h, s, fd: list(s.sortedRoute.items()),
    "handle": lambda h, s, fd: s.routingStatus,
}


def growth(call):
    """Bytes that 100,000 calls leave behind."""
    for _ in range(2000):
        call()
    before = resident()
    for _ in range(100_000):
        call()
    return resident() - before


# As much as ten bytes a call; the allocator gives out no block of less than sixteen.
NOISE = 1 << 20


@pytest.mark.parametrize("name", REPEATED)
def test_nothing_is_left_behind(name):
    assert growth(REPEATED[name]) < NOISE


@pytest.mark.parametrize("name", REPEATED_ON_A_DEVICE)
def test_nothing_is_left_behind_by_work_on_a_device(name, vrfs_device):
    handles = vrfs_device.ip()
    sorter = rova.RouteSorter(handles)
    call = REPEATED_ON_A_DEVICE[name]
    with open(os.devnull, "wb") as sink:
        assert growth(lambda: call(handles, sorter, sink.fileno())) < NOISE


def test_references_are_given_back(vrfs_device):
    objects = [VIA, FEC, type(VIA), "Ethernet77", None, POLICY]
    before = [sys.getrefcount(item) for item in objects]
    for _ in range(100):
        VIA.intfId = objects[3]
        POLICY.endpoint = {"address": None}
        FEC.via[VIA] = True
        rova.CachedVia({"hop": None}, intfId=objects[3])
        raised(lambda: setattr(VIA, "viaIndex", None))
        raised(lambda: FEC.interface[objects[3]])
        raised(lambda: rova.CachedFec(VIA))
    gc.collect()
    after = [sys.getrefcount(item) for item in objects]
    assert all(abs(a - b) < 20 for a, b in zip(after, before))


def test_handles_outlive_their_device(vrfs_device):
    handles = rova.open(vrfs_device.source).ip()
    gc.collect()
    assert len(rova.RouteSorter(handles).sortedRoute) == 1
