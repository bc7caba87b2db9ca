"""The type hints say what the package has."""

import ast
import inspect
from pathlib import Path

import pytest

import rova

STUBS = Path(rova.__file__).with_name("__init__.pyi")


def hinted_classes():
    tree = ast.parse(STUBS.read_text())
    return {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}


CLASSES = hinted_classes()


def runtime_class(name):
    if not name.startswith("_"):
        return getattr(rova, name)
    return rova.type_of(next(row["name"] for row in rova.types(all=True)
                             if "_" + row["name"].replace("::", "_") == name))


def functions(node):
    return [child for child in node.body if isinstance(child, ast.FunctionDef)]


def is_property(function):
    return any(isinstance(d, ast.Name) and d.id == "property" for d in function.decorator_list)


def is_setter(function):
    return any(isinstance(d, ast.Attribute) and d.attr == "setter"
               for d in function.decorator_list)


def test_names_of_the_module():
    tree = ast.parse(STUBS.read_text())
    hinted = {node.name for node in tree.body
              if isinstance(node, (ast.ClassDef, ast.FunctionDef)) and node.name[0] != "_"}
    public = {name for name, value in vars(rova).items()
              if name[0] != "_" and not inspect.ismodule(value)}
    assert hinted == public


def test_names_are_defined():
    """Every name in an annotation is a class of the hints, imported, or built in."""
    tree = ast.parse(STUBS.read_text())
    imported = {alias.asname or alias.name for node in tree.body
                if isinstance(node, (ast.Import, ast.ImportFrom)) for alias in node.names}
    variables = {target.id for node in tree.body if isinstance(node, ast.Assign)
                 for target in node.targets}
    used = {node.id for node in ast.walk(tree) if isinstance(node, ast.Name)
            and isinstance(node.ctx, ast.Load)}
    properties = {function.name for node in CLASSES.values() for function in functions(node)
                  if is_setter(function)}
    assert used - imported - variables - set(CLASSES) - properties <= set(dir(__builtins__)) | set(
        __builtins__ if isinstance(__builtins__, dict) else ())


@pytest.mark.parametrize("name", sorted(CLASSES))
def test_attributes_of_a_class(name):
    made = runtime_class(name)
    named = {function.name for function in functions(CLASSES[name])} - {"__init__"}
    assert named <= set(dir(made))
    own = {key for key, value in vars(made).items()
           if key[0] != "_" and (inspect.isgetsetdescriptor(value) or callable(value))}
    if name != "Collection" and not issubclass(made, (int, Exception)):
        assert own <= named


@pytest.mark.parametrize("name", [row["name"] for row in rova.types()])
def test_what_can_be_written_is_hinted_so(name):
    node = CLASSES[name.rpartition("::")[2]]
    row = next(row for row in rova.types() if row["name"] == name)
    setters = {function.name for function in functions(node) if is_setter(function)}
    assert setters == {a["name"] for a in row["attributes"]
                       if not a["readOnly"] and a["kind"] in ("plain",
                                                              "writable-constructor")}


def test_enumerations_have_their_members():
    members = {target.id: ast.literal_eval(line.value)
               for line in CLASSES["AddrMatchType"].body for target in line.targets}
    assert members == {"allowNoMatch": 0, "allowExactMatch": 1, "allowAddressMatch": 2}


@pytest.mark.parametrize("type_name, attribute, result, taken", [
    ("CachedVia", "hop", "ipaddress.IPv4Address | ipaddress.IPv6Address | None", " | str"),
    ("RouteSortKey", "prefix", "ipaddress.IPv4Network | ipaddress.IPv6Network | None", None),
    ("RouteSorter", "prefix", "ipaddress.IPv4Network | None", None),
    ("Address6QueryParams", "addrWithMask", "ipaddress.IPv6Interface", " | str"),
    ("RouteSorter", "detail", "bool", None),
    ("RouteSorter", "quantify", "float", None),
    ("RouteSorter", "routingConfig", "_Routing_ConfigGen | None", None),
    ("RouteSorter", "sortedRoute", "Collection[ipaddress.IPv4Network | None, _Vanta_Fib_Route]",
     None),
    ("AddressQueryParams", "primaryMatch", "AddrMatchType", " | str | int"),
    ("CounterEntry", "packets", "int", None),
])
def test_types_of_attributes(type_name, attribute, result, taken):
    found = [function for function in functions(CLASSES[type_name]) if function.name == attribute]
    assert is_property(found[0]) and ast.unparse(found[0].returns) == result
    if taken:
        assert ast.unparse(found[1].args.args[1].annotation) == result + taken
    else:
        assert len(found) == 1 or ast.unparse(found[1].args.args[1].annotation) == result


@pytest.mark.parametrize("type_name, signatures", [
    ("RouteSortKey", ["self, prefix: P | str=..., preference: int=...",
                      "self, defaults: dict[str, Any], /, *, prefix: P | str=..., "
                      "preference: int=..."]),
    ("ClearIntfRoutesAndViasHelper", ["self"]),
])
def test_constructors(type_name, signatures):
    prefix = "ipaddress.IPv4Network | ipaddress.IPv6Network | None"
    found = [ast.unparse(function.args) for function in functions(CLASSES[type_name])
             if function.name == "__init__"]
    assert found == [text.replace("P", prefix) for text in signatures]
