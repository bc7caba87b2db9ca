// `rova.open` and what it gives: a device, and the handles to its state by the names that the
// library's arguments have.
#pragma once

#include "Ref.h"

namespace rova_python {

/// Adds the class `Device` and the function `open`. Null with a Python exception when that fails.
PyObject* addDevice(PyObject* module);

} // namespace rova_python
