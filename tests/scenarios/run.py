#!/usr/bin/env python3
"""Runs scenarios as text and as JSON and compares what they print with what their folders expect.
Listings of routes are also compared with each other: text and model show the same values.

    run.py                     all scenarios
    run.py ecmp leaked/ip      those of a folder, and one
    run.py --rewrite NAME...   writes what NAME prints now, for review of the diff

The program is $ROVA, or that of the release build. The exit status is 1 when a scenario fails.
"""

import argparse
import difflib
import json
import sys

import agreement
import host_agreement
import summary_agreement
from scenario import all_scenarios, parse_json, without_times


def difference(name, expected, found):
    lines = difflib.unified_diff(expected.splitlines(True), found.splitlines(True),
                                 f"expected {name}", f"found {name}")
    return "".join(line if line.endswith("\n") else line + "\n" for line in lines)


def pretty(model):
    return json.dumps(model, indent=2, ensure_ascii=False) + "\n"


def end_problems(scenario, kind, result):
    """Compares exit status and standard error."""
    status = int(scenario.expected("status", "0"))
    if result.returncode != status:
        yield f"{kind}: exit status {result.returncode}, expected {status}\n"
    err = result.stderr.decode("utf-8", "replace")
    if err != scenario.expected("err", ""):
        yield difference(f"standard error of {kind}", scenario.expected("err", ""), err)


def text_problems(scenario, text):
    if without_times(text) != scenario.expected("txt", ""):
        yield difference("text", scenario.expected("txt", ""), without_times(text))


def comparison(scenario):
    """What compares text and model of the display, which those of routes have."""
    words = scenario.words
    if "ip" not in words and "ipv6" not in words:
        return None
    if "summary" in words:
        return summary_agreement
    return host_agreement if "host" in words else agreement


def model_problems(scenario, output, text):
    wanted = scenario.expected("json", "")
    if not wanted:
        if output:
            yield f"JSON: found {output!r}, expected nothing\n"
        return
    try:
        model = parse_json(output)
    except ValueError as error:
        yield f"JSON: {error}\n"
        return
    expected = parse_json(wanted)
    if model != expected:
        yield difference("JSON", json.dumps(expected, indent=2, sort_keys=True),
                         json.dumps(model, indent=2, sort_keys=True))
    values = comparison(scenario)
    for problem in values.problems_of(text, model) if values else ():
        yield f"text and model disagree: {problem}\n"


def problems_of(scenario):
    text, model = scenario.run(), scenario.run("--format", "json")
    shown = text.stdout.decode("utf-8", "replace")
    found = [*end_problems(scenario, "text", text), *text_problems(scenario, shown)]
    return found + [*end_problems(scenario, "JSON", model),
                    *model_problems(scenario, model.stdout, shown)]


def rewrite(scenario):
    text, model = scenario.run(), scenario.run("--format", "json")
    for name, content, default in (
            ("txt", without_times(text.stdout.decode()), ""),
            ("json", pretty(parse_json(model.stdout)) if model.stdout else "", ""),
            ("status", f"{text.returncode}\n", "0\n"), ("err", text.stderr.decode(), "")):
        path = scenario.folder / f"expected.{name}"
        if content != default:
            path.write_text(content)
        else:
            path.unlink(missing_ok=True)


def chosen(names):
    """The scenarios that the names stand for; all without a name."""
    scenarios = all_scenarios()
    names = [name.rstrip("/") for name in names]
    for name in names:
        if not any(fits(scenario, name) for scenario in scenarios):
            sys.exit(f"run.py: there is no scenario {name}")
    return [s for s in scenarios if not names or any(fits(s, name) for name in names)]


def fits(scenario, name):
    return scenario.name == name or scenario.name.startswith(name + "/")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("names", nargs="*", metavar="NAME")
    parser.add_argument("--rewrite", action="store_true")
    options = parser.parse_args()
    if options.rewrite and not options.names:
        parser.error("--rewrite needs the names of the scenarios to rewrite")
    scenarios = chosen(options.names)
    if options.rewrite:
        for scenario in scenarios:
            rewrite(scenario)
        return 0
    failed = 0
    for scenario in scenarios:
        found = problems_of(scenario)
        failed += bool(found)
        if found:
            print(f"FAILED {scenario.name}\n" + "".join(found))
    print(f"{len(scenarios)} scenarios, {failed} failed")
    return 1 if failed or not scenarios else 0


if __name__ == "__main__":
    sys.exit(main())
