#include "Method.h"

#include "Activity.h"
#include "Convert.h"
#include "Object.h"
#include "Precondition.h"
#include "Slot.h"
#include "Text.h"
#include "Types.h"
#include "lumo/Reflect.h"
#include "scrivo/AttrInfo.h"

#include <cstddef>
#include <structmember.h>

namespace rova_python {

namespace {

/// The method as its class holds it. It works like a function: an instance binds it.
struct Method {
  PyObject head;
  PyTypeObject* owner;
  const Lumo::AttributeRecord* row;
};

PyTypeObject* methodType = nullptr;

Method& methodOf(PyObject* self) { return *reinterpret_cast<Method*>(self); }

/// The library stops the process over a format that does not exist.
void needFormat(const Lumo::ArgumentRecord& argument, const Lumo::GenericPtr& value) {
  constexpr std::string_view format = "fmt";
  if (argument.name != format) return;
  const Lumo::AnyInteger number = argument.type->toInteger(value->voidPtrIs(*argument.type));
  if (number.bits == scrivo::textFormat || number.bits == scrivo::modelFormat) return;
  raise(PyExc_ValueError, "fmt is 1 for text or 2 for JSON, found " + std::to_string(number.bits));
}

/// Pairs positional and keyword arguments with the method's own.
class Arguments {
 public:
  explicit Arguments(const Lumo::AttributeRecord& method)
      : method_(method), count_(argumentsOf(method.arguments.data()).size()) {}

  void takePositional(PyObject* args, Py_ssize_t skip) {
    const auto count = static_cast<std::size_t>(PyTuple_GET_SIZE(args) - skip);
    if (count > count_) {
      fail("takes " + std::to_string(count_) + " arguments, found " + std::to_string(count));
    }
    for (std::size_t i = 0; i < count; ++i) {
      found_[i] = PyTuple_GET_ITEM(args, static_cast<Py_ssize_t>(i) + skip);
    }
  }

  void takeKeywords(PyObject* kwargs) {
    PyObject *key, *value;
    for (Py_ssize_t at = 0; PyDict_Next(kwargs, &at, &key, &value);) {
      const std::size_t index = indexOf(nameOf(key));
      if (found_[index]) fail(std::string("got ") + method_.arguments[index].name + " twice");
      found_[index] = value;
    }
  }

  Lumo::GenericArguments converted() const {
    Lumo::GenericArguments arguments;
    for (std::size_t i = 0; i < count_; ++i) {
      const Lumo::ArgumentRecord& argument = method_.arguments[i];
      if (!found_[i]) fail(std::string("needs ") + argument.name);
      arguments.push_back(namedFromPython(found_[i], *argument.type, argument.name));
      if (!arguments.back()) fail(std::string(argument.name) + " may not be None");
      needFormat(argument, arguments.back());
    }
    return arguments;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    raise(PyExc_TypeError, signatureOf(method_) + ": " + what);
  }

  std::size_t indexOf(std::string_view name) const {
    for (std::size_t i = 0; i < count_; ++i) {
      if (name == method_.arguments[i].name) return i;
    }
    fail("has no argument '" + std::string(name) + "'");
  }

  const Lumo::AttributeRecord& method_;
  std::size_t count_;
  /// Borrowed from the call's arguments, which outlive it.
  std::array<PyObject*, Lumo::AttributeRecord::maxArguments> found_{};
};

/// Whether the method may write to a descriptor: it has one as an argument, or its object has one
/// and the method is no mere question.
bool mayWrite(const Lumo::TypeRecord& type, const Lumo::AttributeRecord& method) {
  constexpr std::string_view descriptor = "fd";
  for (const Lumo::ArgumentRecord& argument : method.arguments) {
    if (argument.name && argument.name == descriptor) return true;
  }
  return !method.isConstant && type.attribute(descriptor);
}

Lumo::GenericPtr run(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method,
                     const Lumo::GenericArguments& arguments) {
  const Lumo::ArgumentSpan given{arguments.data(), arguments.size()};
  const auto work = [&] {
    needPreconditions({*object, method, given});
    return Lumo::operate(*object, {&method, Lumo::OpCode::call, given});
  };
  if (!mayWrite(object->type(), method)) return work();
  Lumo::GenericPtr result;
  {
    // Only what writes sees an interrupt, and waits for a reader, who may be another thread. Signal
    // handlers, which may change the object, run before the check and not behind it.
    const Interrupts interrupts;
    const PythonUnlocked unlocked;
    result = work();
  }
  return result;
}

PyObject* call(PyObject* self, PyObject* args, PyObject* kwargs) {
  return locked([&]() -> Ref {
    const Method& method = methodOf(self);
    PyObject* const object = PyTuple_GET_SIZE(args) > 0 ? PyTuple_GET_ITEM(args, 0) : nullptr;
    if (!object || !PyObject_TypeCheck(object, method.owner)) {
      raise(PyExc_TypeError, std::string(method.row->name) + " needs an instance of " +
                                 method.owner->tp_name + " as its first argument");
    }
    return callMethod(genericOf(object), *method.row, args, 1, kwargs);
  });
}

PyObject* bind(PyObject* self, PyObject* object, PyObject*) {
  return guarded([&] {
    return object && object != Py_None ? owned(PyMethod_New(self, object)) : Ref::borrow(self);
  });
}

void destroy(PyObject* self) {
  PyTypeObject* const type = Py_TYPE(self);
  type->tp_free(self); // its class is borrowed: it holds the method, and neither ever ends
  Py_DECREF(type);
}

PyObject* represent(PyObject* self) {
  return guarded([&] {
    const Method& method = methodOf(self);
    return owned(PyUnicode_FromFormat("<method %s of %s>", signatureOf(*method.row).c_str(),
                                      method.owner->tp_name));
  });
}

PyObject* getName(PyObject* self, void*) {
  return guarded([&] { return strOf(methodOf(self).row->name); });
}

PyObject* getQualifiedName(PyObject* self, void*) {
  return guarded([&] {
    const Method& method = methodOf(self);
    return strOf(pythonName(typeOfClass(method.owner)) + "." + method.row->name);
  });
}

PyObject* getDoc(PyObject* self, void*) {
  return guarded([&] {
    const Lumo::AttributeRecord& row = *methodOf(self).row;
    return strOf(signatureOf(row) +
                 (row.isConstant ? "" : "\n\nIt may change the object, so needs one that can be."));
  });
}

PyObject* getTextSignature(PyObject* self, void*) {
  return guarded([&] {
    std::string text = "($self";
    for (const Lumo::ArgumentRecord& argument : methodOf(self).row->arguments) {
      if (argument.name) text += std::string(", ") + argument.name;
    }
    return strOf(text + ")");
  });
}

PyObject* getModule(PyObject*, void*) { return PyUnicode_FromString("rova"); }

PyGetSetDef properties[] = {
    {"__name__", getName, nullptr, nullptr, nullptr},
    {"__qualname__", getQualifiedName, nullptr, nullptr, nullptr},
    {"__doc__", getDoc, nullptr, nullptr, nullptr},
    {"__module__", getModule, nullptr, nullptr, nullptr},
    {"__text_signature__", getTextSignature, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyMemberDef members[] = {
    {"__objclass__", T_OBJECT, offsetof(Method, owner), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

} // namespace

Ref callMethod(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method, PyObject* args,
               PyObject* kwargs) {
  return callMethod(object, method, args, 0, kwargs);
}

Ref callMethod(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method, PyObject* args,
               Py_ssize_t skip, PyObject* kwargs) {
  const Activity activity;
  if (object->constant() && !method.isConstant) {
    raise(PyExc_TypeError, std::string(method.name) + " changes the " + pythonName(object->type()) +
                               ", whose handle is constant");
  }
  Arguments arguments(method);
  arguments.takePositional(args, skip);
  if (kwargs) arguments.takeKeywords(kwargs);
  return toPython(run(object, method, arguments.converted()));
}

std::string signatureOf(const Lumo::AttributeRecord& method) {
  std::string text = std::string(method.name) + "(";
  const char* separator = "";
  for (const Lumo::ArgumentRecord& argument : method.arguments) {
    if (!argument.name) break;
    text += std::string(separator) + argument.name + ": " + argument.type->name;
    separator = ", ";
  }
  text += ")";
  if (method.valueType && method.valueType->FromVoidPointer) {
    text += std::string(" -> ") + method.valueType->name;
  }
  return text;
}

Ref makeMethod(PyTypeObject* owner, const Lumo::AttributeRecord& method) {
  Ref made = owned(methodType->tp_alloc(methodType, 0));
  methodOf(made.get()).owner = owner;
  methodOf(made.get()).row = &method;
  return made;
}

void makeMethodType() {
  PyType_Slot slots[] = {
      {Py_tp_call, slot(call)},
      {Py_tp_descr_get, slot(bind)},
      {Py_tp_dealloc, slot(destroy)},
      {Py_tp_repr, slot(represent)},
      {Py_tp_getset, properties},
      {Py_tp_members, members},
      {0, nullptr},
  };
  PyType_Spec spec = {
      "rova.Method", sizeof(Method), 0,
      Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_METHOD_DESCRIPTOR, slots};
  methodType = reinterpret_cast<PyTypeObject*>(owned(PyType_FromSpec(&spec)).release());
}

} // namespace rova_python
