// The Python classes of the library's types, made from their records.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

#include <string_view>

namespace rova_python {

/// The class of a type with attributes, of an entity or of an enumeration, made when first asked
/// for and kept by the type's full name. Null for a type whose values are Python's own.
PyObject* classOf(const Lumo::TypeRecord& type);

/// The type of a class that `classOf` made or of one derived from it. Throws TypeError for others.
const Lumo::TypeRecord& typeOfClass(PyTypeObject* made);

/// The member of an enumeration's class; an int for a number without one.
Ref enumMember(const Lumo::TypeRecord& type, long number);

/// Enters a class for each registered type, and `type_of`. Null with an exception set.
PyObject* addTypes(PyObject* module);

} // namespace rova_python
