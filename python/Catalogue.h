// `rova.types()`: what the library tells of its types, as dictionaries.
#pragma once

#include "Ref.h"

namespace rova_python {

/// Adds the function `types`. Null with a Python exception when that fails.
PyObject* addCatalogue(PyObject* module);

} // namespace rova_python
