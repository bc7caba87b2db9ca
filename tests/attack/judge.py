"""What a run of the program may end in, whatever it was given."""

import re
import signal
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "scenarios"))
# pylint: disable=wrong-import-position,unused-import
from output_schema import check_output
from scenario import HERE, ROOT, all_scenarios, parse_json, program

# Records that must not exist stop the process, with one of these lines, and so does a network
# namespace that cannot be left.
STOPS = {f"Assertion failed: {text}\n" for text in (
    "(value_ >> Fib::adjTypePos()) < Fib::adjTypeMax()", '0 && "unexpected RouteType"',
    '!"Invalid Routing::RouteType argument"', 'false && "encap type not implemented"',
    '0 && "mpls not supported on static interface tunnels"', "!via.vtepAddr()", "false", "fec",
    "setns(home, CLONE_NEWNET) == 0")}
# Escapes of the terminal, line breaks inside a line, and what turns the direction of the text.
CONTROL = re.compile(
    r"[\x00-\x09\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]")


def end_fault(result):
    """What is wrong with the end of a run; nothing when it ended as it may."""
    err = result.stderr.decode("utf-8", "replace")
    if result.returncode == -signal.SIGABRT:
        return None if err in STOPS else f"aborted: {err.strip()}"
    if result.returncode not in (0, 1):
        return f"ended with {result.returncode}: {err.strip()}"
    if result.returncode == 1 and not (result.stdout or re.fullmatch("rova: [^\n]+\n", err)):
        return f"no message of one line: {err!r}"
    if CONTROL.search(err):
        return f"control character {CONTROL.search(err)[0]!r} in the message"
    return None


def output_fault(result, model):
    """What is wrong with the output of a run that succeeded."""
    try:
        text = result.stdout.decode("utf-8")
        if model and text:
            parse_json(text)
            check_output(text)
    except (AssertionError, ValueError) as error:
        return f"output: {error}"
    if not model and CONTROL.search(text):
        return f"control character {CONTROL.search(text)[0]!r} in the text"
    return None


def fault_of(result, model):
    return end_fault(result) or (output_fault(result, model) if result.returncode == 0 else None)


def all_of(function, items, workers=2):
    """The results of a function that waits for processes, in order."""
    with ThreadPoolExecutor(workers) as pool:
        return list(pool.map(function, items))
