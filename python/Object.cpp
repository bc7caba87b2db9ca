#include "Object.h"

#include "Activity.h"
#include "Construct.h"
#include "Precondition.h"
#include "Slot.h"
#include "Text.h"
#include "Types.h"
#include "lumo/Reflect.h"

#include <memory>
#include <string>

namespace rova_python {

namespace {

struct Instance {
  PyObject head;
  Lumo::GenericPtr value;
};

PyTypeObject* base = nullptr;

Ref wrapAs(PyTypeObject* type, Lumo::GenericPtr value) {
  Ref made = owned(type->tp_alloc(type, 0));
  new (&reinterpret_cast<Instance*>(made.get())->value) Lumo::GenericPtr(std::move(value));
  return made;
}

PyObject* create(PyTypeObject* type, PyObject* args, PyObject* kwargs) {
  return locked([&] { return wrapAs(type, construct(typeOfClass(type), args, kwargs)); });
}

void destroy(PyObject* self) {
  PyTypeObject* const type = Py_TYPE(self);
  discard(reinterpret_cast<Instance*>(self)->value);
  type->tp_free(self);
  Py_DECREF(type);
}

const void* addressOf(const Lumo::GenericPtr& value) { return value->voidPtrIs(value->type()); }

PyObject* represent(PyObject* self) {
  return locked([&]() -> Ref {
    const Lumo::GenericPtr& value = genericOf(self);
    const Lumo::TypeRecord& type = value->type();
    if (type.isEntity()) {
      return owned(
          PyUnicode_FromFormat("<rova.%s at %p>", pythonName(type).c_str(), addressOf(value)));
    }
    const Lumo::String text = value->strRep();
    // Types without data have no strep text.
    return text.empty() ? strOf("rova." + pythonName(type) + "()") : strOf(text);
  });
}

Ref compare(const Lumo::GenericPtr& a, Lumo::OpCode code, const Lumo::GenericPtr& b) {
  return Ref::boolean(Lumo::unwrap<bool>(Lumo::operate(*a, {nullptr, code}, b)));
}

bool isTrue(const Ref& boolean) { return boolean.get() == Py_True; }

PyObject* richCompare(PyObject* self, PyObject* other, int how) {
  return locked([&]() -> Ref {
    const Ref notImplemented = Ref::borrow(Py_NotImplemented);
    if (!isObject(other)) return notImplemented;
    const Lumo::GenericPtr &a = genericOf(self), &b = genericOf(other);
    const Lumo::TypeRecord& type = a->type();
    if (!Lumo::isSameType(type, b->type())) return notImplemented;

    if (how == Py_EQ || how == Py_NE) {
      if (!type.isEntity() && !type.equal) return notImplemented;
      const Ref equal = compare(a, Lumo::OpCode::equal, b);
      return how == Py_EQ ? equal : Ref::boolean(!isTrue(equal));
    }
    if (!type.less || how == Py_LE || how == Py_GE) return notImplemented;
    return how == Py_LT ? compare(a, Lumo::OpCode::less, b) : compare(b, Lumo::OpCode::less, a);
  });
}

Py_hash_t hash(PyObject* self) {
  Py_hash_t result = -1;
  const int failed = lockedInt([&] {
    const Lumo::GenericPtr& value = genericOf(self);
    if (value->type().isEntity()) {
      result = _Py_HashPointer(addressOf(value));
      return 0;
    }
    try {
      result = value->hash();
    } catch (const Lumo::InternalException&) {
      raise(PyExc_TypeError, "unhashable type: '" + pythonName(value->type()) + "'");
    }
    return 0;
  });
  return failed ? -1 : result;
}

int truth(PyObject* self) {
  return lockedInt([&] {
    const Lumo::GenericPtr& value = genericOf(self);
    if (!value->type().isDefault) return 1;
    return isTrue(compare(value, Lumo::OpCode::isDefault, {})) ? 0 : 1;
  });
}

PyObject* strep(PyObject* self, PyObject*) {
  return locked([&] { return strOf(genericOf(self)->strRep()); });
}

/// Whether reading a text as the type would come to a collection, which stops the process.
bool meetsCollection(const Lumo::TypeRecord& type) {
  if (type.form != Lumo::ValueForm::record) return false;
  for (const Lumo::AttributeRecord& row : type.attributes) {
    if (!Lumo::isStored(row.kind)) continue;
    if (Lumo::isCollection(row.kind) || meetsCollection(*row.valueType)) return true;
  }
  return false;
}

PyObject* fromStrep(PyObject* made, PyObject* text) {
  return locked([&] {
    auto* const cls = reinterpret_cast<PyTypeObject*>(made);
    const Lumo::TypeRecord& type = typeOfClass(cls);
    if (meetsCollection(type)) {
      raise(PyExc_TypeError, pythonName(type) + " has a collection: no text holds it");
    }
    Lumo::GenericPtr value = Lumo::fromStrep(type, bytesOf(text));
    if (!addressOf(value)) return Ref::none();
    needPreconditions(Call(*value));
    return wrapAs(cls, std::move(value));
  });
}

PyMethodDef methods[] = {
    {"strep", strep, METH_NOARGS, "strep($self, /)\n--\n\nThe one-line text form of the value."},
    {"from_strep", fromStrep, METH_O | METH_CLASS,
     "from_strep($type, text, /)\n--\n\nReads what `strep` gives."},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

bool isObject(PyObject* object) { return PyObject_TypeCheck(object, base); }

const Lumo::GenericPtr& genericOf(PyObject* object) {
  return reinterpret_cast<const Instance*>(object)->value;
}

Ref makeObject(const Lumo::GenericPtr& value) {
  return wrapAs(reinterpret_cast<PyTypeObject*>(classOf(value->type())), value);
}

PyTypeObject* makeObjectBase() {
  PyType_Slot slots[] = {
      {Py_tp_doc, const_cast<char*>("The base of the library's values and entities.")},
      {Py_tp_new, slot(create)},
      {Py_tp_dealloc, slot(destroy)},
      {Py_tp_repr, slot(represent)},
      {Py_tp_richcompare, slot(richCompare)},
      {Py_tp_hash, slot(hash)},
      {Py_nb_bool, slot(truth)},
      {Py_tp_methods, methods},
      {0, nullptr},
  };
  PyType_Spec spec = {"rova.Object", sizeof(Instance), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE,
                      slots};
  base = reinterpret_cast<PyTypeObject*>(owned(PyType_FromSpec(&spec)).release());
  return base;
}

} // namespace rova_python
