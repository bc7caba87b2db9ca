// The extension module behind the package `rova`.
#include "Activity.h"
#include "Collection.h"
#include "Errors.h"
#include "Types.h"

#if __has_include("Catalogue.h")
#include "Catalogue.h"
#endif
#if __has_include("Device.h")
#include "Device.h"
#endif

namespace rova_python {

namespace {

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT,
    "rova._rova",
    "The routing displays of a device as Python objects.",
    -1, // one interpreter: the library has one registry of types a process
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

/// What each part enters in the module.
constexpr PyObject* (*parts[])(PyObject*) = {
    addErrors,
    addCollection,
    addTypes,
#if __has_include("Catalogue.h")
    addCatalogue,
#endif
#if __has_include("Device.h")
    addDevice,
#endif
};

Ref makeModule() {
  prepareLibrary();
  Ref module = owned(PyModule_Create(&definition));
  for (const auto add : parts) {
    if (!add(module.get())) throw PythonError();
  }
  return module;
}

} // namespace

} // namespace rova_python

PyMODINIT_FUNC PyInit__rova() { return rova_python::guarded(rova_python::makeModule); }
