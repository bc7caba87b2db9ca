// Texts between the library, where they are bytes, and Python.
#pragma once

#include "Errors.h"
#include "lumo/Type.h"

#include <span>
#include <string>
#include <string_view>

namespace rova_python {

/// A str; bytes that are no UTF-8 become lone surrogates, which `bytesOf` turns back.
Ref strOf(std::string_view bytes);
/// The bytes of a str. Raises TypeError for anything else.
std::string bytesOf(PyObject* str);
/// The bytes of a name, which live as long as the str. Raises what Python does for lone surrogates.
std::string_view nameOf(PyObject* str);

/// The type's name in Python: "RouteSorter" for a type of the module, "Vanta.Fib.Route" for one
/// that is known by its full name only.
std::string pythonName(const Lumo::TypeRecord& type);

/// The rows of a table that ends with a null name; none for no table.
std::span<const Lumo::ArgumentRecord> argumentsOf(const Lumo::ArgumentRecord* table);

/// TypeError "expected TYPE, found TYPE".
[[noreturn]] void throwWrongType(const Lumo::TypeRecord& expected, PyObject* found);

} // namespace rova_python
