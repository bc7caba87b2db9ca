// The extension module behind the package `rova`.
#include "Activity.h"
#include "Catalogue.h"
#include "Collection.h"
#include "Device.h"
#include "Errors.h"
#include "Model.h"
#include "Types.h"

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
    addErrors, addCollection, addTypes, addCatalogue, addDevice, addModels,
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
