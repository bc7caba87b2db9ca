// Building objects of the library from Python's arguments.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// Builds an object from positional (tuple) and keyword (dict or null) arguments.
///
/// - They are those of the constructor. Keywords also name plain attributes, which are written when
///   the object is built.
/// - A dict as the first positional argument holds defaults by name. The type takes those it has; a
///   plain attribute leaves one that is outside its range.
/// - What is missing gets the default of its type; a handle is null if the type takes that.
///
/// Raises TypeError for names that the type does not have, for handles that are missing or null,
/// and for values of a wrong type, besides what building raises.
Lumo::GenericPtr construct(const Lumo::TypeRecord& type, PyObject* args, PyObject* kwargs);

/// From the attributes by name.
Lumo::GenericPtr constructFromDict(const Lumo::TypeRecord& type, PyObject* dict);
/// From a tuple of all fields, the attributes that are no collections, in their order.
Lumo::GenericPtr constructFromFields(const Lumo::TypeRecord& type, PyObject* tuple);

} // namespace rova_python
