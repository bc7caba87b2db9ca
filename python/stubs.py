#!/usr/bin/env python3
"""Writes the package's type hints, `__init__.pyi`, from what the library tells of its types.

  stubs.py FILE     the package must be importable
"""

import sys
from pathlib import Path

HEADER = '''"""Routing state of a device, and the displays of it, as Python objects."""

import enum
import ipaddress
import os
from collections.abc import Iterator, MutableMapping
from typing import Any, Generic, TypeVar, overload

_K = TypeVar("_K")
_V = TypeVar("_V")
_D = TypeVar("_D")
_T = TypeVar("_T", bound="Object")

class Error(Exception): ...
class RangeException(Error, ValueError): ...
class InternalException(Error, RuntimeError): ...
class ErrnoException(Error, OSError): ...
class CorruptionDetectedException(Error): ...
class SourceError(Error): ...

class Device:
    @property
    def source(self) -> str: ...
    @property
    def state(self) -> dict[str, Any]: ...
    @property
    def vrfs(self) -> list[str]: ...
    def ip(self, vrf: str = "default", interface: str | None = None) -> dict[str, Any]: ...
    def ip6(self, vrf: str = "default", interface: str | None = None) -> dict[str, Any]: ...

def open(source: str | bytes | os.PathLike[str]) -> Device: ...
def types(all: bool = False) -> list[dict[str, Any]]: ...
def type_of(name: str) -> type[Any]: ...

class Object:
    def strep(self) -> str: ...
    @classmethod
    def from_strep(cls: type[_T], text: str, /) -> _T: ...
    def __bool__(self) -> bool: ...
    def __lt__(self: _T, other: _T) -> bool: ...
    def __gt__(self: _T, other: _T) -> bool: ...

# Keys and values are also taken in all the forms that the attributes of their types take.
class Collection(MutableMapping[_K, _V], Generic[_K, _V]):
    def __getitem__(self, key: Any, /) -> _V: ...
    def __setitem__(self, key: Any, value: Any, /) -> None: ...
    def __delitem__(self, key: Any, /) -> None: ...
    def __iter__(self) -> Iterator[_K]: ...
    def __len__(self) -> int: ...
    @overload
    def get(self, key: Any, /) -> _V | None: ...
    @overload
    def get(self, key: Any, /, default: _V | _D) -> _V | _D: ...
'''

COLLECTIONS = ("ordered", "hashed")
OUTPUT = ("fd", "fmt")


class Stubs:
    """The hints for the types of a catalogue; `registered` are those that the module itself has."""

    def __init__(self, catalogue, registered):
        self.types = {row["name"]: row for row in catalogue}
        self.registered = registered

    def class_name(self, name):
        """That of the module for its own classes; types of the platform get a private one."""
        if name in self.registered:
            return name.rpartition("::")[2]
        return "_" + name.replace("::", "_")

    def is_class(self, name):
        return self.types[name]["python"] is None

    def is_handle(self, name):
        return self.types[name]["form"] == "entity"

    def given(self, name):
        """What reading a value of the type gives."""
        if name == "void":
            return "None"
        return self.types[name]["python"] or self.class_name(name)

    def taken(self, name):
        """What is taken where a value of the type is needed."""
        row = self.types[name]
        form = row["form"]
        if form == "notation" and row["python"] != "str":
            return f"{row['python']} | str"
        if form == "enumeration":
            return f"{self.class_name(name)} | str | int"
        if form == "record":
            return f"{self.class_name(name)} | dict[str, Any] | tuple[Any, ...]"
        return self.given(name)

    def parameter(self, name, type_name, may_be_null):
        """A parameter of a constructor; only handles that may not be null have no default."""
        taken = self.taken(type_name)
        if not self.is_handle(type_name):
            return f"{name}: {taken} = ..."
        return f"{name}: {taken} | None = ..." if may_be_null else f"{name}: {taken}"

    def constructor(self, row):
        null = {a["name"]: a["mayBeNull"] for a in row["attributes"]}
        own = [self.parameter(a["name"], a["type"], null[a["name"]]) for a in row["constructor"]]
        later = [self.parameter(a["name"], a["type"], True)
                 for a in row["attributes"] if a["kind"] == "plain" and not a["readOnly"]]
        optional = [p if p.endswith("= ...") else p + " = ..." for p in own]
        positional = ", ".join(["self"] + own + (["*"] + later if later else []))
        if not own:
            return [f"def __init__({positional}) -> None: ..."]
        # Behind a parameter with a default no other may lack one, unless it is given by keyword.
        if any(a.endswith("= ...") and not b.endswith("= ...") for a, b in zip(own, own[1:])):
            positional = ", ".join(["self", "*"] + own + later)
        defaults = ", ".join(["self", "defaults: dict[str, Any]", "/", "*"] + optional + later)
        return ["@overload", f"def __init__({positional}) -> None: ...",
                "@overload", f"def __init__({defaults}) -> None: ..."]

    def method(self, attribute):
        parameters = ["self"] + [f"{a['name']}: {self.taken(a['type'])}"
                                 for a in attribute["arguments"]]
        result = self.given(attribute["type"])
        if attribute["type"] != "void" and self.is_handle(attribute["type"]):
            result += " | None"
        return [f"def {attribute['name']}({', '.join(parameters)}) -> {result}: ..."]

    def is_writable_in_base(self, row, name):
        """A type may fix what the type that it is derived from lets one write."""
        while row["base"]:
            row = self.types[row["base"]]
            if any(a["name"] == name and not a["readOnly"] for a in row["attributes"]):
                return True
        return False

    def attribute(self, row, attribute):
        name, kind = attribute["name"], attribute["kind"]
        if kind == "method":
            return self.method(attribute)
        value = self.given(attribute["type"])
        if kind in COLLECTIONS:
            key = self.given(attribute["key"])
            return ["@property", f"def {name}(self) -> Collection[{key}, {value}]: ..."]
        if self.is_handle(attribute["type"]):
            value += " | None"
        lines = ["@property", f"def {name}(self) -> {value}: ..."]
        if attribute["readOnly"] and self.is_writable_in_base(row, name):
            lines[0] += "  # type: ignore[misc]"
        if not attribute["readOnly"]:
            taken = self.taken(attribute["type"])
            if self.is_handle(attribute["type"]):
                taken += " | None"
            lines += [f"@{name}.setter", f"def {name}(self, value: {taken}) -> None: ..."]
        return lines

    def model(self, row):
        """`model`, which types that display have: it takes the other arguments of the display."""
        plain = {a["name"] for a in row["attributes"] if a["kind"] == "plain"}
        for attribute in row["attributes"]:
            names = {a["name"] for a in attribute["arguments"]}
            if names.issuperset(OUTPUT) or (attribute["name"] == "dump" and
                                            plain.issuperset(OUTPUT)):
                parameters = ["self"] + [f"{a['name']}: {self.taken(a['type'])}"
                                         for a in attribute["arguments"] if a["name"] not in OUTPUT]
                return [f"def model({', '.join(parameters)}) -> dict[str, Any]: ..."]
        return []

    def enumeration(self, row):
        return [f"class {self.class_name(row['name'])}(enum.IntEnum):",
                *(f"    {name} = {number}" for name, number in row["entries"])]

    def type(self, row):
        if row["kind"] == "enumeration":
            return self.enumeration(row)
        body = self.constructor(row) if row["constructible"] else []
        for attribute in row["attributes"]:
            body += self.attribute(row, attribute)
        body += self.model(row)
        base = self.class_name(row["base"]) if row["base"] else "Object"
        head = f"class {self.class_name(row['name'])}({base}):"
        return [head, *("    " + line for line in body)] if body else [f"{head} ..."]

    def text(self):
        blocks = ["\n".join(self.type(row)) for name, row in self.types.items()
                  if self.is_class(name)]
        return "\n\n".join([HEADER.rstrip(), *blocks]) + "\n"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    # Beside this file stands the package's source, which lacks the extension module.
    here = Path(__file__).resolve().parent
    sys.path[:] = [path for path in sys.path if Path(path).resolve() != here]
    import rova
    registered = {row["name"] for row in rova.types()}
    text = Stubs(rova.types(all=True), registered).text()
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write(text)


if __name__ == "__main__":
    main()
