// Instances: values and handles of the library as Python objects.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// Whether it is an instance of one of the library's types.
bool isObject(PyObject* object);
/// What an instance holds. The object must be one.
const Lumo::GenericPtr& genericOf(PyObject* object);
/// An instance of the class of the value's type.
Ref makeObject(const Lumo::GenericPtr& value);

/// Makes the base class of all instances. Throws `PythonError`.
PyTypeObject* makeObjectBase();

} // namespace rova_python
