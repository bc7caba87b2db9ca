// Methods of the library's types as callables.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

#include <string>

namespace rova_python {

/// Calls a method with positional (tuple) and keyword (dict or null) arguments. Raises TypeError
/// for wrong arguments, for None where a handle is needed, and for a method that would change what
/// is read only; what the method raises passes.
Ref callMethod(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method, PyObject* args,
               PyObject* kwargs);

/// What `callMethod` does, behind the first `skip` positional arguments.
Ref callMethod(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method, PyObject* args,
               Py_ssize_t skip, PyObject* kwargs);

/// The descriptor that a class holds for the method; an instance gives it bound.
Ref makeMethod(PyTypeObject* owner, const Lumo::AttributeRecord& method);

/// "NAME(ARGUMENT: TYPE, ...) -> TYPE"
std::string signatureOf(const Lumo::AttributeRecord& method);

/// Makes the descriptors' type. Throws `PythonError`.
void makeMethodType();

} // namespace rova_python
