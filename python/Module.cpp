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

/// The module with what each part enters in it.
Ref makeModule() {
  prepareLibrary();
  Ref module = owned(PyModule_Create(&definition));
  const auto enter = [&](PyObject* (*add)(PyObject*)) {
    if (!add(module.get())) throw PythonError();
  };
  enter(addErrors);
  enter(addCollection);
  enter(addTypes);
  enter(addCatalogue);
  enter(addDevice);
  enter(addModels);
  return module;
}

} // namespace

} // namespace rova_python

PyMODINIT_FUNC PyInit__rova() { return rova_python::guarded(rova_python::makeModule); }
