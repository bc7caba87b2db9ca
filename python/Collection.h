// Collections of an object as live mappings.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// A view on the collection; it keeps the object alive.
Ref makeCollection(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& attribute);

/// Enters the class in the module and among Python's mutable mappings. Null with an exception set.
PyObject* addCollection(PyObject* module);

} // namespace rova_python
