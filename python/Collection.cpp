#include "Collection.h"

#include "Activity.h"
#include "CollectionWalk.h"
#include "Convert.h"
#include "Object.h"
#include "Slot.h"
#include "Text.h"
#include "lumo/Reflect.h"

#include <memory>

namespace rova_python {

namespace {

struct Collection {
  PyObject head;
  Lumo::GenericPtr object;
  const Lumo::AttributeRecord* row;
};

PyTypeObject* collectionType = nullptr;
PyObject* mappingClass = nullptr; ///< of collections.abc

Collection& collectionOf(PyObject* self) { return *reinterpret_cast<Collection*>(self); }

std::string nameOf(const Collection& self) {
  return pythonName(self.object->type()) + "." + self.row->name;
}

void needChangeable(const Collection& self) {
  if (!self.object->constant()) return;
  raise(PyExc_TypeError, nameOf(self) + " can be read only: its handle is constant");
}

Lumo::GenericPtr keyFrom(const Collection& self, PyObject* key) {
  auto value = namedFromPython(key, *self.row->keyType, "key");
  if (!value) raise(PyExc_TypeError, nameOf(self) + " has no None among its keys");
  return value;
}

Lumo::GenericPtr operate(const Collection& self, Lumo::OpCode code,
                         const Lumo::GenericPtr& key = {}, const Lumo::GenericPtr& value = {}) {
  return Lumo::operate(*self.object, {self.row, code}, key, value);
}

bool has(const Collection& self, const Lumo::GenericPtr& key) {
  return Lumo::unwrap<bool>(operate(self, Lumo::OpCode::has, key));
}

/// The key that is a member's, or KeyError.
Lumo::GenericPtr memberKey(const Collection& self, PyObject* key) {
  auto found = keyFrom(self, key);
  if (has(self, found)) return found;
  PyErr_SetObject(PyExc_KeyError, key);
  throw PythonError();
}

/// Where members hold their key themselves, requires that it is the one given.
void needOwnKey(const Collection& self, const Lumo::GenericPtr& key,
                const Lumo::GenericPtr& member) {
  if (!self.row->internalKey || !member) return;
  const Lumo::AttributeRecord* const inside = member->type().attribute(self.row->internalKey);
  if (!inside) return;
  const auto own = Lumo::operate(*member, {inside, Lumo::OpCode::read});
  if (Lumo::unwrap<bool>(Lumo::operate(*key, {nullptr, Lumo::OpCode::equal}, own))) return;
  raise(PyExc_ValueError, nameOf(self) + ": the key given is not the member's own " + inside->name);
}

Ref walkOver(const Collection& self, Part part) { return startWalk(self.object, *self.row, part); }

Py_ssize_t length(PyObject* object) {
  return lockedInt([&] {
    return static_cast<int>(
        Lumo::unwrap<std::uint32_t>(operate(collectionOf(object), Lumo::OpCode::count)));
  });
}

PyObject* get(PyObject* object, PyObject* key) {
  return locked([&] {
    const Collection& self = collectionOf(object);
    return toPython(operate(self, Lumo::OpCode::read, memberKey(self, key)));
  });
}

int put(PyObject* object, PyObject* key, PyObject* value) {
  return lockedInt([&] {
    const Collection& self = collectionOf(object);
    needChangeable(self);
    if (!value) {
      operate(self, Lumo::OpCode::del, memberKey(self, key));
      return 0;
    }
    const auto own = keyFrom(self, key);
    const auto member = namedFromPython(value, *self.row->valueType, self.row->name);
    needOwnKey(self, own, member);
    operate(self, Lumo::OpCode::write, own, member);
    return 0;
  });
}

int contains(PyObject* object, PyObject* key) {
  return lockedInt([&] {
    const Collection& self = collectionOf(object);
    return has(self, keyFrom(self, key)) ? 1 : 0;
  });
}

PyObject* walkKeys(PyObject* object) {
  return locked([&] { return walkOver(collectionOf(object), Part::keys); });
}

/// The other mapping's member of that key; empty when it has none or such keys are none of its.
Ref memberOf(PyObject* mapping, PyObject* key) {
  Ref member = Ref::steal(PyObject_GetItem(mapping, key));
  if (member) return member;
  for (PyObject* const expected : {PyExc_KeyError, PyExc_TypeError, PyExc_ValueError}) {
    if (!PyErr_ExceptionMatches(expected)) continue;
    PyErr_Clear();
    return {};
  }
  throw PythonError();
}

bool isMapping(PyObject* object) {
  const int is = PyObject_IsInstance(object, mappingClass);
  check(is);
  return is == 1;
}

/// Whether a mapping has the same keys with equal values.
bool equals(PyObject* object, PyObject* other) {
  const Py_ssize_t size = PyObject_Size(other);
  if (size < 0) throw PythonError();
  if (size != length(object)) return false;
  const Ref walk = walkOver(collectionOf(object), Part::items);
  while (const Ref item = Ref::steal(PyIter_Next(walk.get()))) {
    const Ref theirs = memberOf(other, PyTuple_GET_ITEM(item.get(), 0));
    if (!theirs) return false;
    const int equal =
        PyObject_RichCompareBool(PyTuple_GET_ITEM(item.get(), 1), theirs.get(), Py_EQ);
    check(equal);
    if (equal == 0) return false;
  }
  if (PyErr_Occurred()) throw PythonError();
  return true;
}

PyObject* compare(PyObject* object, PyObject* other, int how) {
  return locked([&]() -> Ref {
    if ((how != Py_EQ && how != Py_NE) || !isMapping(other)) {
      return Ref::borrow(Py_NotImplemented);
    }
    return Ref::boolean(equals(object, other) == (how == Py_EQ));
  });
}

PyObject* represent(PyObject* object) {
  return locked([&] {
    return owned(PyUnicode_FromFormat("<collection %s, %zd members>",
                                      nameOf(collectionOf(object)).c_str(), length(object)));
  });
}

void destroyCollection(PyObject* object) {
  PyTypeObject* const type = Py_TYPE(object);
  discard(collectionOf(object).object);
  type->tp_free(object);
  Py_DECREF(type);
}

// keys(), values() and items() are those of collections.abc, which are live too and sets where sets
// make sense. Their walks alone are ours: theirs would look up each key again.

PyObject* keysView = nullptr;
PyObject* valuesView = nullptr;
PyObject* itemsView = nullptr;

PyObject* walkView(PyObject* view, Part part) {
  return locked([&] {
    const Ref mapping = owned(PyObject_GetAttrString(view, "_mapping"));
    if (!PyObject_TypeCheck(mapping.get(), collectionType)) {
      raise(PyExc_TypeError, "a view of a collection of the library is needed");
    }
    return walkOver(collectionOf(mapping.get()), part);
  });
}
PyObject* walkValues(PyObject*, PyObject* view) { return walkView(view, Part::values); }
PyObject* walkItems(PyObject*, PyObject* view) { return walkView(view, Part::items); }

PyMethodDef valuesWalk = {"__iter__", walkValues, METH_O, nullptr};
PyMethodDef itemsWalk = {"__iter__", walkItems, METH_O, nullptr};

/// A view class like that of collections.abc, with a walk of our own.
PyObject* makeView(PyObject* abc, const char* name, PyMethodDef* walk) {
  const Ref view = owned(PyObject_GetAttrString(abc, name));
  const Ref function = owned(PyCFunction_New(walk, nullptr));
  const Ref method = owned(PyInstanceMethod_New(function.get()));
  const Ref body = owned(
      Py_BuildValue("{s(),ss,sO}", "__slots__", "__module__", "rova", "__iter__", method.get()));
  const Ref metaclass = Ref::borrow(reinterpret_cast<PyObject*>(Py_TYPE(view.get())));
  return owned(PyObject_CallFunction(metaclass.get(), "s(O)O", name, view.get(), body.get()))
      .release();
}

PyObject* pop(PyObject* object, PyObject* args) {
  return locked([&]() -> Ref {
    PyObject *key, *fallback = nullptr;
    if (!PyArg_UnpackTuple(args, "pop", 1, 2, &key, &fallback)) throw PythonError();
    const Collection& self = collectionOf(object);
    needChangeable(self);
    if (fallback && !has(self, keyFrom(self, key))) return Ref::borrow(fallback);
    return toPython(operate(self, Lumo::OpCode::del, memberKey(self, key)));
  });
}

PyObject* keys(PyObject* self, PyObject*) { return PyObject_CallOneArg(keysView, self); }
PyObject* values(PyObject* self, PyObject*) { return PyObject_CallOneArg(valuesView, self); }
PyObject* items(PyObject* self, PyObject*) { return PyObject_CallOneArg(itemsView, self); }

PyMethodDef methods[] = {
    {"keys", keys, METH_NOARGS, "keys($self, /)\n--\n\nA live view of the keys."},
    {"values", values, METH_NOARGS, "values($self, /)\n--\n\nA live view of the members."},
    {"items", items, METH_NOARGS, "items($self, /)\n--\n\nA live view of keys and members."},
    {"pop", pop, METH_VARARGS,
     "pop($self, key, default=..., /)\n--\n\n"
     "Deletes the member and gives it; the default, or KeyError, when there is none."},
    {nullptr, nullptr, 0, nullptr},
};

PyTypeObject* makeCollectionType() {
  PyType_Slot slots[] = {
      {Py_tp_doc, const_cast<char*>("A collection of an object, as a live mapping.")},
      {Py_tp_dealloc, slot(destroyCollection)},
      {Py_tp_repr, slot(represent)},
      {Py_tp_richcompare, slot(compare)},
      {Py_tp_hash, slot(PyObject_HashNotImplemented)},
      {Py_tp_iter, slot(walkKeys)},
      {Py_mp_length, slot(length)},
      {Py_mp_subscript, slot(get)},
      {Py_mp_ass_subscript, slot(put)},
      {Py_sq_contains, slot(contains)},
      {Py_tp_methods, methods},
      {0, nullptr},
  };
  PyType_Spec spec = {"rova.Collection", sizeof(Collection), 0,
                      Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_MAPPING,
                      slots};
  return reinterpret_cast<PyTypeObject*>(owned(PyType_FromSpec(&spec)).release());
}

/// The rest of a mapping's methods are those that collections.abc makes from the ones here.
void addMixins(PyObject* made, PyObject* mutableMapping) {
  for (const char* name : {"get", "popitem", "clear", "update", "setdefault"}) {
    const Ref function = owned(PyObject_GetAttrString(mutableMapping, name));
    check(PyObject_SetAttrString(made, name, function.get()));
  }
  owned(PyObject_CallMethod(mutableMapping, "register", "O", made));
}

bool hasAttribute(const Lumo::TypeRecord& type, const Lumo::AttributeRecord& attribute) {
  for (const Lumo::TypeRecord* at = &type; at; at = at->base) {
    if (Lumo::isSameType(*at, *attribute.owner)) return true;
  }
  return false;
}

} // namespace

Ref makeCollection(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& attribute) {
  // Python lets the class of an object be changed, and walks do not look at the type.
  if (!hasAttribute(object->type(), attribute)) {
    raise(PyExc_TypeError, pythonName(object->type()) + " has no collection " + attribute.name);
  }
  Ref made = owned(collectionType->tp_alloc(collectionType, 0));
  new (&collectionOf(made.get()).object) Lumo::GenericPtr(object);
  collectionOf(made.get()).row = &attribute;
  return made;
}

PyObject* addCollection(PyObject* module) {
  return guarded([&] {
    collectionType = makeCollectionType();
    makeWalkType();
    const Ref abc = owned(PyImport_ImportModule("collections.abc"));
    keysView = owned(PyObject_GetAttrString(abc.get(), "KeysView")).release();
    valuesView = makeView(abc.get(), "ValuesView", &valuesWalk);
    itemsView = makeView(abc.get(), "ItemsView", &itemsWalk);
    mappingClass = owned(PyObject_GetAttrString(abc.get(), "Mapping")).release();
    const Ref mapping = owned(PyObject_GetAttrString(abc.get(), "MutableMapping"));
    auto* const made = reinterpret_cast<PyObject*>(collectionType);
    addMixins(made, mapping.get());
    check(PyModule_AddObjectRef(module, "Collection", made));
    return Ref::borrow(module);
  });
}

} // namespace rova_python
