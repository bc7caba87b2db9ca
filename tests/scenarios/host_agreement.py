"""Text and model of one host table show the same values, in both directions and the same order."""

import re

# The hardware mark, the code, two blanks, the address.
HEAD = re.compile(r"^([* ])([-RBDFA])  ([0-9a-f.:]+)((?: (?:via|to|on) .*)?)$")
VIA = re.compile(r"^(?: via (\S+))?( to cpu)?(?: on (\S+))?$")
NO_VIA = (None, False, None)


def sections(text, vrfs):
    """The table of each VRF: its name and its lines. A single table does not name its VRF."""
    parts = re.split(r"^VRF: (.*)$", text, flags=re.MULTILINE)
    if len(parts) == 1 and len(vrfs) == 1:
        return {vrfs[0]: text.splitlines()}
    return {name: body.splitlines() for name, body in zip(parts[1::2], parts[2::2])}


def via_of(line):
    match = VIA.match(line)
    return (match[1], match[2] is not None, match[3]) if match else line


def routes_of(lines):
    """What the lines show: address, hardware mark and vias of each route."""
    routes = []
    for line in lines:
        head = HEAD.match(line)
        if head:
            routes.append([head[3], head[1] == " ", [via_of(head[4])]])
        elif routes and line.startswith(" " * (len(routes[-1][0]) + 4) + " "):
            routes[-1][2].append(via_of(line[len(routes[-1][0]) + 4:]))
    return routes


def model_of(table):
    """The same of a VRF's part of the model."""
    for prefix, entry in table.get("routes", {}).items():
        vias = [(via.get("nexthopAddr"), via["toCpu"], via.get("interface"))
                for via in entry["vias"]]
        yield [prefix.partition("/")[0], entry["hardwareProgrammed"], vias or [NO_VIA]]


def problems_of(text, model):
    """What text and model disagree about, one line each."""
    texts = sections(text, list(model["vrfs"]))
    if list(texts) != list(model["vrfs"]):
        return [f"VRFs: text {list(texts)}, model {list(model['vrfs'])}"]
    found = []
    for vrf, lines in texts.items():
        shown, meant = routes_of(lines), list(model_of(model["vrfs"][vrf]))
        if shown != meant:
            found.append(f"VRF {vrf}: the text shows {shown}, the model has {meant}")
        if not meant and any(lines):
            found.append(f"VRF {vrf}: the model is empty, the text is not")
    return found
