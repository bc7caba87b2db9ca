#include "Device.h"

#include "Activity.h"
#include "Errors.h"
#include "Handles.h"
#include "Slot.h"
#include "Text.h"
#include "sources/Source.h"
#include "state/NoSuch.h"

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace rova_python {

namespace {

struct Device {
  state::DeviceState state;
  sources::Notes notes;
  std::string source; ///< the name that it was opened by
};

struct DeviceObject {
  PyObject base;
  std::unique_ptr<Device> device;
};

std::unique_ptr<Device>& deviceOf(PyObject* object) {
  return reinterpret_cast<DeviceObject*>(object)->device;
}

std::unique_ptr<Device> load(const std::string& source) {
  const Activity activity;
  const PythonUnlocked unlocked;
  auto state = sources::open(source);
  state.release(); // an object may live for days
  return std::make_unique<Device>(Device{std::move(state.device), std::move(state.notes), source});
}

const state::VrfState& vrfOf(const Device& device, const std::string& name) {
  if (const auto* const vrf = device.state.vrf(name)) return *vrf;
  throw sources::SourceError(device.source + ": " + state::noSuchVrf(device.state, name));
}

/// The name of an interface; nothing for None.
std::optional<std::string> interfaceOf(PyObject* given) {
  if (!given || given == Py_None) return std::nullopt;
  return bytesOf(given);
}

/// `ip` and `ip6`, which differ in the handles that they give.
template <Ref (*handles)(const HandleQuery&)>
PyObject* handlesMethod(PyObject* self, PyObject* args, PyObject* kwargs) {
  return locked([&] {
    static const char* const names[] = {"vrf", "interface", nullptr};
    PyObject* vrf = nullptr;
    PyObject* interface = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|UO", const_cast<char**>(names), &vrf,
                                     &interface)) {
      throw PythonError();
    }
    const Device& device = *deviceOf(self);
    return handles({device.state, vrfOf(device, vrf ? bytesOf(vrf) : L3::defaultVrfName),
                    interfaceOf(interface)});
  });
}

PyObject* vrfs(PyObject* self, void*) {
  return guarded([&] {
    Ref list = owned(PyList_New(0));
    for (const auto& vrf : deviceOf(self)->state.vrfs) {
      const Ref name = strOf(vrf.name.stringValue().view());
      check(PyList_Append(list.get(), name.get()));
    }
    return list;
  });
}

PyObject* source(PyObject* self, void*) {
  return guarded([&] { return strOf(deviceOf(self)->source); });
}

void addNote(const Ref& dictionary, const char* name, const Ref& value) {
  check(PyDict_SetItemString(dictionary.get(), name, value.get()));
}

/// The object "state" of the command's documents.
PyObject* state(PyObject* self, void*) {
  return guarded([&] {
    const sources::Notes& notes = deviceOf(self)->notes;
    Ref dictionary = owned(PyDict_New());
    if (!notes.moved.empty()) {
      const Ref moved = owned(PyList_New(0));
      for (const auto& table : notes.moved) check(PyList_Append(moved.get(), strOf(table).get()));
      addNote(dictionary, "moved", moved);
    }
    if (notes.silence) {
      addNote(dictionary, "agent", strOf(notes.silence->agent));
      addNote(dictionary, "currentAt", strOf(notes.silence->currentAt));
      addNote(dictionary, "age", owned(PyLong_FromLongLong(notes.silence->age)));
    }
    if (notes.hiddenRoutes != 0) {
      addNote(dictionary, "hiddenRoutes", owned(PyLong_FromUnsignedLongLong(notes.hiddenRoutes)));
    }
    return dictionary;
  });
}

PyObject* repr(PyObject* self) {
  return guarded([&] {
    const Ref name = strOf(deviceOf(self)->source);
    return owned(PyUnicode_FromFormat("<rova.Device %R>", name.get()));
  });
}

void deallocate(PyObject* self) {
  PyTypeObject* const type = Py_TYPE(self);
  discard(deviceOf(self));
  type->tp_free(self);
  Py_DECREF(type);
}

template <class Function>
PyCFunction asMethod(Function function) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef methods[] = {
    {"ip", asMethod(handlesMethod<handles4>), METH_VARARGS | METH_KEYWORDS,
     "ip(vrf='default', interface=None)\n--\n\n"
     "The handles of a VRF for IPv4, by the names of the library's arguments. With an\n"
     "interface, listings are of its routes alone. Raises SourceError for an unknown VRF."},
    {"ip6", asMethod(handlesMethod<handles6>), METH_VARARGS | METH_KEYWORDS,
     "ip6(vrf='default', interface=None)\n--\n\nThe same for IPv6."},
    {nullptr, nullptr, 0, nullptr},
};

PyGetSetDef properties[] = {
    {"vrfs", vrfs, nullptr, "The names of the VRFs, the default one first.", nullptr},
    {"state", state, nullptr,
     "What is to be known of the state: 'moved', the tables that changed while they were read,\n"
     "and 'hiddenRoutes', how many lose against another of their prefix. Empty for nothing.",
     nullptr},
    {"source", source, nullptr, "The name that the device was opened by.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyType_Slot slots[] = {
    {Py_tp_doc, const_cast<char*>("The state of a device; rova.open gives one. Handles to its "
                                  "state outlive it.")},
    {Py_tp_dealloc, slot(deallocate)},
    {Py_tp_repr, slot(repr)},
    {Py_tp_methods, methods},
    {Py_tp_getset, properties},
    {0, nullptr},
};

PyType_Spec spec = {
    "rova.Device", sizeof(DeviceObject), 0,
    Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE, slots};

PyTypeObject* deviceType = nullptr;

PyObject* open(PyObject*, PyObject* args, PyObject* kwargs) {
  return guarded([&] {
    static const char* const names[] = {"source", nullptr};
    PyObject* path = nullptr;
    if (!PyArg_ParseTupleAndKeywords(args, kwargs, "O&:open", const_cast<char**>(names),
                                     PyUnicode_FSConverter, &path)) {
      throw PythonError();
    }
    const Ref bytes = Ref::steal(path);
    auto device = load(PyBytes_AS_STRING(bytes.get())); // the converter refuses a NUL inside
    Ref object = owned(deviceType->tp_alloc(deviceType, 0));
    new (&deviceOf(object.get())) std::unique_ptr<Device>(std::move(device));
    return object;
  });
}

PyMethodDef functions[] = {
    {"open", asMethod(open), METH_VARARGS | METH_KEYWORDS,
     "open(source)\n--\n\n"
     "The state of a device: 'kernel' is that of this machine, 'kernel:NAME' that of a network\n"
     "namespace, anything else the path of a snapshot. Raises SourceError."},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PyObject* addDevice(PyObject* module) {
  deviceType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  if (!deviceType || PyModule_AddType(module, deviceType) < 0) return nullptr;
  return PyModule_AddFunctions(module, functions) < 0 ? nullptr : module;
}

} // namespace rova_python
