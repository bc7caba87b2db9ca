"""Makes damaged snapshots of whole ones. A mutation knows what a snapshot is made of: it puts
values where others of the same kind stood, so that much of what it makes still loads and gets as
far as the displays.

What Python's JSON cannot hold goes in by marks that `text_of` resolves: a key that ends in TWICE
loses it, which makes it stand twice, and a text RAW + "1e999" stands as 1e999."""

import copy
import json
import re

TWICE, RAW = "\x01twice", "\x01raw:"

NUMBERS = [0, 1, -1, 7, 15, 16, 19, 20, 32, 33, 128, 255, 256, 511, 512, 513, 65535, 65536,
           0x7fffff, 0x800000, 0x800001, 2**31, 2**32 - 1, 2**32, 2**56, 2**63, 2**64 - 1, 2**64,
           10**30, 1.5, RAW + "1e999", RAW + "-0", RAW + "0" * 40, RAW + "9" * 400]
TEXTS = ["", " ", "default", "0.0", "1.1", "15.1", "19.7", "20.1", "255.9", "15.72057594037927935",
         "0.0.0.0/0", "255.255.255.255/32", "10.0.0.0/33", "10.0.0.1/8", "::/0", "fe80::/10",
         "::ffff:10.0.0.1/128", "0.0.0.0", "255.255.255.255", "224.0.0.1", "::", "ff02::1",
         "Fec:15.1", "Fec:0.1", "DynamicTunnel:3.1", "DynamicTunnel:9.5", "NexthopGroup:7",
         "Tunnel5", "Tunnel65541", "Vlan4095", "Ethernet1/1/1.4094", "%s%n%99999d", "\0", "\n",
         "\x1b[2J", "\u202e", "\ud800", "\U0010ffff", "é" * 60, "a" * 101, "a" * 100_000,
         RAW + '"\xff"', RAW + "nan", RAW + "'single'", RAW + '"\\x"', RAW + "01"]
DEEP = 5000
OTHERS = [None, True, False, [], {}, [[]], {"": {}}, RAW + "[" * DEEP + "]" * DEEP,
          RAW + '{"vias":' * DEEP + "0" + "}" * DEEP, RAW + "[" * DEEP]


def spots(node, path=()):
    """The ways to all values, the outermost left out."""
    members = node.items() if isinstance(node, dict) else (
        enumerate(node) if isinstance(node, list) else ())
    for key, child in list(members):
        yield (*path, key)
        yield from spots(child, (*path, key))


def parent_of(document, path):
    for key in path[:-1]:
        document = document[key]
    return document


def kind_of(path):
    """The fields on the way; what stands under names and indices of one field is of one kind."""
    return tuple(key for key in path if re.fullmatch("[a-z][A-Za-z0-9]+", str(key)))


class Mutator:
    """Mutations of the documents, by a source of chance."""

    def __init__(self, documents, random):
        self.documents, self.random = documents, random
        self.by_kind, self.keys = {}, set()
        for document in documents:
            for path in spots(document):
                self.by_kind.setdefault(kind_of(path), []).append(
                    (path[-1], parent_of(document, path)[path[-1]]))
                self.keys.update(key for key in path if isinstance(key, str))
        self.keys = sorted(self.keys)

    def mutated(self, document, most=3):
        """A copy with some mutations, as the bytes of a file."""
        document = copy.deepcopy(document)
        for _ in range(self.random.randint(1, most)):
            paths = list(spots(document))
            if paths:
                path = self.random.choice(paths)
                self.random.choice(self.ACTS)(self, parent_of(document, path), path)
        return text_of(document)

    def change_value(self, parent, path):
        old = parent[path[-1]]
        if isinstance(old, (int, float)) and not isinstance(old, bool):
            parent[path[-1]] = self.random.choice([*NUMBERS, old + 1, old - 1, old * 2])
        elif isinstance(old, str):
            parent[path[-1]] = self.random.choice([*TEXTS, *self.keys, old[:-1], old + old])
        else:
            self.change_type(parent, path)

    def change_type(self, parent, path):
        parent[path[-1]] = self.random.choice([*OTHERS, *NUMBERS, *TEXTS])

    def graft(self, parent, path):
        """Puts in what stands under the same field elsewhere, maybe under another name."""
        key, value = self.random.choice(self.by_kind.get(kind_of(path), [(path[-1], None)]))
        if isinstance(parent, list):
            parent.insert(path[-1], copy.deepcopy(value))
        else:
            parent[key if self.random.random() < 0.5 else path[-1]] = copy.deepcopy(value)

    def rename(self, parent, path):
        if isinstance(parent, dict):
            key = self.random.choice([*TEXTS, *self.keys, *map(str, NUMBERS[:26])])
            parent[key.replace(RAW, "")] = parent.pop(path[-1])

    def delete(self, parent, path):
        del parent[path[-1]]

    def duplicate(self, parent, path):
        if isinstance(parent, list):
            parent.extend([copy.deepcopy(parent[path[-1]])] * self.random.choice([1, 8, 600]))
        else:
            parent[path[-1] + TWICE] = copy.deepcopy(parent[path[-1]])

    def nest(self, parent, path):
        depth = self.random.choice([1, 2, 40])
        value = parent[path[-1]]
        for _ in range(depth):
            value = [value] if self.random.random() < 0.5 else {"vias": value}
        parent[path[-1]] = value

    # What tends to load stands more often.
    ACTS = [graft, graft, graft, change_value, change_value, rename, delete, delete, change_type,
            duplicate, nest]


def text_of(document):
    text = json.dumps(document).replace(json.dumps(TWICE)[1:-1], "")
    text = re.sub(r'"\\u0001raw:((?:[^"\\]|\\.)*)"', lambda m: json.loads(f'"{m[1]}"'), text)
    return text.encode("latin-1")
