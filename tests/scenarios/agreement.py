"""Text and model of one listing of routes show the same values.

Each route's lines in the text are taken apart into the values on them, and compared with the values
of the route's entry in the model, in both directions and in the same order.
"""

import re

# A mark, the code, the leak mark and a mark fill ten columns in front of the prefix.
HEAD = re.compile(r"^([* ])([A-Z0-9 ]*?)( L)?([ %])( *)(\S+/\d+)(?= |$)")
HEAD_COLUMNS = 10
PREFERENCE_AND_SOURCE = re.compile(r" (?:\[(\d+)/(\d+)\])?(?: \(source VRF (.*?)\))?")
# Words of a via's line that name values or stand for none.
WORDS = {"via", "is", "directly", "connected", "<Internal>", "Null0", "label", "weight", "VTEP",
         "VNI", "router-mac", "Nexthop", "Group", "ID", "tunnel", "index", "endpoint",
         "destination", "source", "key", "ttl", "tos", "SR-TE", "Policy", "color"}
# What the model of a tunnel interface's encapsulation says beyond the text.
OF_THE_INTERFACE = {"tunnelType", "tunnelIndex"}
NAMED_LABEL = re.compile(r"[a-z0-9-]+\((\d+)\)")


def sections(text):
    """The listing of each VRF: its name and its lines."""
    parts = re.split(r"^VRF: (.*)$", text, flags=re.MULTILINE)
    return {name: body.splitlines() for name, body in zip(parts[1::2], parts[2::2])}


def is_head(line):
    match = HEAD.match(line)
    return match is not None and match.start(6) == HEAD_COLUMNS


def route_blocks(lines):
    """The lines of each route of a section, in order."""
    blocks, is_open = [], False
    for line in lines:
        # The note of a route without a FEC ends without a line end.
        line = line.rpartition(" not found>")[2]
        if is_head(line):
            blocks.append([line])
            is_open = True
        elif not line:
            is_open = False
        elif is_open:
            blocks[-1].append(line)
    return blocks


def tokens(text):
    found = [NAMED_LABEL.sub(r"\1", token) for token in re.split(r"[ ,]+", text) if token]
    return sorted(token for token in found if token not in WORDS)


def shown_number(key, value):
    """The number as the text has it: the format of a group's identifier takes it as signed."""
    return value - (1 << 32) if key == "groupId" and value >> 31 else value


def via_values(value):
    """The values of a via that its line shows."""
    if isinstance(value, dict):
        shown = [via_values(shown_number(key, item)) for key, item in value.items()]
    elif isinstance(value, list):
        shown = [via_values(item) for item in value]
    elif isinstance(value, bool) or value == "active":
        return []
    else:
        return tokens(str(value))
    return sorted(sum(shown, []))


def shown_vias(entry):
    """What has a line of its own: the vias of a route, each with those of its tunnel behind it."""
    shown = []
    for via in entry["vias"]:
        own = {key: value for key, value in via.items() if key != "tunnelVias"}
        if "tunnelEncap" in own:
            encap = own["tunnelEncap"].items()
            own["tunnelEncap"] = {key: value for key, value in encap if key not in OF_THE_INTERFACE}
        shown += [own, *via.get("tunnelVias", [])]
    return shown


def head_problems(head, entry):
    """Compares marks, preference, metric and source VRF; returns the rest of the line too."""
    match = HEAD.match(head)
    rest = head[match.end(6):]
    numbers = PREFERENCE_AND_SOURCE.match(rest)
    shown = {"hardwareProgrammed": match[1] == " ", "kernelProgrammed": match[4] == " ",
             "routeLeaked": match[3] is not None}
    if numbers and numbers[1]:
        shown.update(preference=int(numbers[1]), metric=int(numbers[2]))
    if numbers and numbers[3] is not None:
        shown["srcVrf"] = numbers[3]
    problems = [f"{key}: text shows {value!r}, model has {entry.get(key)!r}"
                for key, value in shown.items() if entry.get(key) != value]
    if "preference" not in shown and not entry["directlyConnected"]:
        problems.append("the text lacks preference and metric")
    if "srcVrf" in entry and "srcVrf" not in shown:
        problems.append("the text lacks the source VRF")
    return problems, rest[numbers.end():] if numbers and numbers[0].strip() else rest


def route_problems(block, entry):
    problems, rest = head_problems(block[0], entry)
    if ("Null0" in block[0] or "Null0" in block[-1]) != (entry["routeAction"] == "drop"):
        problems.append(f"routeAction {entry['routeAction']} does not fit the text")
    lines = ([rest] if rest else []) + block[1:]
    older = {"nexthopGroup": entry["nexthopGroup"]} if "nexthopGroup" in entry else {}
    vias = shown_vias(entry) or [older]
    if "srTePolicy" in entry:
        # The tunnels of a policy stand in the text alone.
        lines, vias = [line for line in lines if " SR-TE Policy " in line], entry["srTePolicy"]
    if len(lines) != len(vias):
        return problems + [f"the text has {len(lines)} via lines, the model {len(vias)}"]
    for line, via in zip(lines, vias):
        if tokens(line) != via_values(via):
            problems.append(f"the text shows {tokens(line)}, the model has {via_values(via)}")
    return problems


def problems_of(text, model):
    """What text and model of route listings disagree about, one line each."""
    found = []
    texts = sections(text)
    if list(texts) != list(model["vrfs"]):
        return [f"VRFs: text {list(texts)}, model {list(model['vrfs'])}"]
    for vrf, lines in texts.items():
        blocks = route_blocks(lines)
        prefixes = [HEAD.match(block[0])[6] for block in blocks]
        routes = model["vrfs"][vrf]["routes"]
        if prefixes != list(routes):
            found.append(f"VRF {vrf}: routes of the text {prefixes}, of the model {list(routes)}")
            continue
        for prefix, block in zip(prefixes, blocks):
            found += [f"{prefix}: {problem}" for problem in route_problems(block, routes[prefix])]
    return found
