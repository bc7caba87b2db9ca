"""Text and model of one route summary show the same counts, in the same order."""

import re

SECTION = re.compile(r"^VRF: (.*)\n\nRoutes by kind\n((?:  .*\n)*)"
                     r"Routes by mask length\n((?:  .*\n)*)Total +(\d+)$", re.MULTILINE)


def rows(block):
    """The label and the count of each line."""
    return [(label.strip(), int(count)) for label, count in
            (line.rsplit(maxsplit=1) for line in block.splitlines())]


def shown_counts(text):
    """By VRF: the counts by kind, those by length with their labels, the total."""
    return {name: ([count for _, count in rows(kinds)], rows(masks), int(total))
            for name, kinds, masks, total in SECTION.findall(text)}


def model_counts(model):
    return {name: (list(vrf["routesByKind"].values()),
                   [("/" + length, count) for length, count in vrf["routesByMaskLength"].items()],
                   vrf["totalRoutes"])
            for name, vrf in model["vrfs"].items()}


def problems_of(text, model):
    """What text and model disagree about, one line each."""
    shown, meant = shown_counts(text), model_counts(model)
    if list(shown) != list(meant):
        return [f"VRFs: text {list(shown)}, model {list(meant)}"]
    return [f"VRF {vrf}: the text shows {shown[vrf]}, the model has {meant[vrf]}"
            for vrf in shown if shown[vrf] != meant[vrf]]
