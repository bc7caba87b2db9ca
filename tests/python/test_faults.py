"""What the system refuses in the middle of the work, and signals that came before it."""

import _thread
import errno
import gc
import operator
import os
import resource
import shutil
import signal
import subprocess
from contextlib import contextmanager

import pytest

import rova
from conftest import SCENARIOS, open_scenario

try:
    import _testcapi
except ImportError:
    _testcapi = None

STATE = str(SCENARIOS / "vrfs" / "snapshot.json")
# What the interpreter says when it finds no memory to handle an exception, of whomever.
UNHANDLED = "error return without exception set"
# Behind so many calls that succeed nothing asks for memory any more.
QUIET = 25


def constructed():
    via = rova.CachedVia(hop="10.0.0.1", intfId="Ethernet1", viaIndex=7, viaWeight="3")
    return via.hop, via.intfId, via.viaIndex, repr(via), via == rova.CachedVia()


def collected():
    saver = rova.StaticRoutesCliSaver()
    saver.sortedRoute[rova.RouteSortKey("10.0.0.0/8", 1)] = rova.NexthopInfo()
    key = next(iter(saver.sortedRoute))
    return str(key.prefix), key.preference, len(saver.sortedRoute), key in saver.sortedRoute


def refused():
    """The errors of calls that are wrong."""
    texts = []
    for call in (lambda: rova.open("/no/such/file"), lambda: rova.CachedVia(hop="10.0.0.256"),
                 lambda: rova.CachedVia(nothing=1), lambda: rova.CachedVia(viaIndex=65536),
                 lambda: rova.RouteSorter()):
        try:
            call()
        except (MemoryError, SystemError):
            raise
        except Exception as error:  # pylint: disable=broad-except
            texts.append((type(error), str(error)))
    return texts


def listed(device):
    return rova.RouteSorter(device.ip("red"), detail=True).model()


WORKS = {
    "open": lambda device: rova.open(STATE).vrfs,
    "handles": lambda device: sorted(device.ip6("red")),
    "model": listed,
    "values": lambda device: constructed(),
    "collections": lambda device: collected(),
    "errors": lambda device: refused(),
    "types": lambda device: rova.type_of("Vanta::Fib::RouteStatus").__name__,
    "methods": lambda device: rova.RouteSorter(device.ip()).protocolString("10.1.0.0/16"),
}


def without_memory(work, call):
    """What the work gives when its n-th request for memory of Python's is refused."""
    gc.disable()
    _testcapi.set_nomemory(call, call + 1)
    try:
        return work()
    finally:
        _testcapi.remove_mem_hooks()
        gc.enable()


@pytest.mark.skipif(not _testcapi, reason="needs Python's own tests, to refuse memory")
@pytest.mark.parametrize("name", WORKS)
def test_every_request_for_memory_may_be_refused(vrfs_device, name):
    def work():
        return WORKS[name](vrfs_device)

    expected, call, succeeded, failed = work(), 0, 0, 0
    while succeeded < QUIET:
        try:
            assert without_memory(work, call) == expected
            succeeded += 1
        except (MemoryError, SystemError) as error:
            assert isinstance(error, MemoryError) or str(error) == UNHANDLED
            succeeded = 0
            failed += 1
        call += 1
    assert failed > 0
    assert work() == expected


@contextmanager
def limited(kind, value):
    """A limit of the process."""
    before = resource.getrlimit(kind)
    resource.setrlimit(kind, (value, before[1]))
    try:
        yield
    finally:
        resource.setrlimit(kind, before)


def test_a_model_needs_a_file_of_its_length(vrfs_device):
    """The file in memory that a display goes to may be refused at every length."""
    sorter = rova.RouteSorter(vrfs_device.ip())
    expected, descriptors = sorter.model(), len(os.listdir("/proc/self/fd"))
    messages, length, model = set(), 0, None
    while model is None:
        try:
            with limited(resource.RLIMIT_FSIZE, length):
                model = sorter.model()
        except rova.Error as error:
            messages.add(str(error).split(":", maxsplit=1)[0])
        except OSError as error:
            assert error.errno == errno.EFBIG
            messages.add(str(error.strerror).split(":", maxsplit=1)[0])
        length += 1
    assert model == expected
    assert messages == {"no write to a file in memory", "cannot write the output",
                        "no room behind a file in memory"}
    assert len(os.listdir("/proc/self/fd")) == descriptors


def test_a_model_needs_a_descriptor(vrfs_device):
    sorter = rova.RouteSorter(vrfs_device.ip())
    with limited(resource.RLIMIT_NOFILE, 0), pytest.raises(rova.Error) as error:
        sorter.model()
    assert str(error.value) == "no file in memory: Too many open files"


def test_an_interrupt_that_came_before_ends_the_call(vrfs_device):
    """No line of Python runs between the signal and the call, which would notice it."""
    sorter = rova.RouteSorter(vrfs_device.ip())
    with pytest.raises(KeyboardInterrupt):
        list(map(operator.call, [_thread.interrupt_main, sorter.model]))
    assert signal.getsignal(signal.SIGINT) is signal.default_int_handler
    assert sorter.model()["routes"]


def test_a_signal_that_ends_the_process_goes_on_to_do_so(vrfs_device):
    before = signal.signal(signal.SIGINT, signal.SIG_DFL)
    try:
        assert rova.RouteSorter(vrfs_device.ip()).model()["routes"]
        assert signal.getsignal(signal.SIGINT) == signal.SIG_DFL
    finally:
        signal.signal(signal.SIGINT, before)


def ip(*words):
    return subprocess.run(["ip", *words], check=False, capture_output=True).returncode


@pytest.mark.skipif(os.geteuid() != 0 or not shutil.which("ip"), reason="needs root and iproute2")
def test_routes_that_no_listing_shows_are_told():
    name = f"rova-python-{os.getpid()}"
    if ip("netns", "add", name):
        pytest.skip("this machine makes no network namespaces")
    try:
        ip("-n", name, "link", "set", "lo", "up")
        for metric in ("1", "2", "3"):
            assert ip("-n", name, "route", "add", "20.0.0.0/8", "dev", "lo", "metric", metric) == 0
        assert rova.open(f"kernel:{name}").state == {"hiddenRoutes": 2}
    finally:
        ip("netns", "del", name)
