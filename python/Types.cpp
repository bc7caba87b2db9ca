#include "Types.h"

#include "Activity.h"
#include "Attribute.h"
#include "Method.h"
#include "Model.h"
#include "Object.h"
#include "Text.h"

#include <deque>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace rova_python {

namespace {

PyTypeObject* objectBase = nullptr;

/// What a class reads for as long as it lives; classes are never dropped.
struct MadeClass {
  const Lumo::TypeRecord* type;
  PyObject* made = nullptr;
  std::vector<PyGetSetDef> properties;
  std::deque<std::string> docs;
  Ref members; ///< of an enumeration, by number
};

// By full name, as the records of one type may stand in several libraries; then by record, which is
// quicker. Python's lock guards them.
std::map<std::string, MadeClass, std::less<>>& classes() {
  static auto* const all = new std::map<std::string, MadeClass, std::less<>>;
  return *all;
}
std::unordered_map<const Lumo::TypeRecord*, MadeClass*> classByRecord;
std::unordered_map<PyTypeObject*, const Lumo::TypeRecord*> typeByClass;

bool hasClass(const Lumo::TypeRecord& type) {
  switch (type.form) {
  case Lumo::ValueForm::record:
  case Lumo::ValueForm::entity:
  case Lumo::ValueForm::enumeration:
  case Lumo::ValueForm::none:
    return type.FromVoidPointer != nullptr; // of void there is none
  default:
    return false;
  }
}

const char* kindText(const Lumo::TypeRecord& type) {
  switch (type.kind) {
  case Lumo::TypeKind::entity:
    return type.attributes.empty() ? "an opaque handle" : "an entity";
  case Lumo::TypeKind::value:
    return "a value";
  case Lumo::TypeKind::statelessValue:
    return "methods without data";
  default:
    return "an opaque value";
  }
}

std::string constructorText(const Lumo::TypeRecord& type) {
  std::string text = std::string(shortName(type)) + "(defaults=..., /";
  for (const Lumo::ArgumentRecord& argument : argumentsOf(type.constructorArguments)) {
    text += std::string(", ") + argument.name + "=...";
  }
  return text + ", **attributes)\n--\n\n";
}

std::string constructorLine(const Lumo::TypeRecord& type) {
  std::string text;
  for (const Lumo::ArgumentRecord& argument : argumentsOf(type.constructorArguments)) {
    text += std::string(text.empty() ? "" : ", ") + argument.name + ": " + argument.type->name;
  }
  return "Constructor: " + std::string(shortName(type)) + "(" + text + ")\n";
}

/// The class's documentation: how it is built, then a line for each attribute.
std::string classDoc(const Lumo::TypeRecord& type) {
  std::string text = type.genericIfFromCtorArgs ? constructorText(type) : "";
  text += std::string(type.name) + ", " + kindText(type) + ".\n";
  if (type.genericIfFromCtorArgs) text += constructorLine(type);
  for (const Lumo::AttributeRecord& row : type.attributes) {
    text += "\n" + (row.kind == Lumo::AttributeKind::method
                        ? signatureOf(row)
                        : std::string(row.name) + ": " + docOf(row));
  }
  return text;
}

PyObject* model(PyObject* self, PyObject* args, PyObject* kwargs) {
  return locked([&] { return modelOf(genericOf(self), args, kwargs); });
}

PyMethodDef modelMethod = {
    "model", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(model)),
    METH_VARARGS | METH_KEYWORDS,
    "model($self, /, *args, **kwargs)\n--\n\n"
    "What the type displays, as dicts, lists and values. The arguments are those of the method\n"
    "that displays, without descriptor and format."};

void addModel(PyTypeObject* made, const Lumo::TypeRecord& type) {
  if (!displayMethod(type)) return;
  const Ref method = owned(PyDescr_NewMethod(made, &modelMethod));
  check(
      PyObject_SetAttrString(reinterpret_cast<PyObject*>(made), modelMethod.ml_name, method.get()));
}

void addMethods(PyTypeObject* made, const Lumo::TypeRecord& type) {
  for (const Lumo::AttributeRecord& row : type.attributes) {
    if (row.kind != Lumo::AttributeKind::method) continue;
    const Ref method = makeMethod(made, row);
    check(PyObject_SetAttrString(reinterpret_cast<PyObject*>(made), row.name, method.get()));
  }
  addModel(made, type);
}

void setText(PyObject* object, const char* attribute, const std::string& text) {
  check(PyObject_SetAttrString(object, attribute, strOf(text).get()));
}

PyObject* baseOf(const Lumo::TypeRecord& type) {
  return type.base ? classOf(*type.base) : reinterpret_cast<PyObject*>(objectBase);
}

void makeClass(MadeClass& entry) {
  const Lumo::TypeRecord& type = *entry.type;
  for (const Lumo::AttributeRecord& row : type.attributes) {
    if (row.kind == Lumo::AttributeKind::method) continue;
    entry.docs.push_back(docOf(row));
    entry.properties.push_back(propertyOf(row, entry.docs.back().c_str()));
  }
  entry.properties.push_back({nullptr, nullptr, nullptr, nullptr, nullptr});

  std::string doc = classDoc(type);
  const std::string name = "rova." + pythonName(type);
  PyType_Slot slots[] = {
      {Py_tp_doc, doc.data()},
      {Py_tp_getset, entry.properties.data()},
      {0, nullptr},
  };
  PyType_Spec spec = {name.c_str(), 0, 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, slots};
  const Ref bases = owned(PyTuple_Pack(1, baseOf(type)));
  Ref made = owned(PyType_FromSpecWithBases(&spec, bases.get()));
  setText(made.get(), "__module__", "rova");
  setText(made.get(), "__qualname__", pythonName(type));
  auto* const asType = reinterpret_cast<PyTypeObject*>(made.get());
  addMethods(asType, type);
  typeByClass.emplace(asType, &type);
  entry.made = made.release();
}

void makeEnumeration(MadeClass& entry) {
  const Lumo::TypeRecord& type = *entry.type;
  const Ref members = owned(PyList_New(0));
  for (const Lumo::EnumEntry& value : type.enumEntries) {
    const Ref member = owned(Py_BuildValue("(NI)", strOf(value.name).release(), value.value));
    check(PyList_Append(members.get(), member.get()));
  }
  const Ref module = owned(PyImport_ImportModule("enum"));
  const Ref intEnum = owned(PyObject_GetAttrString(module.get(), "IntEnum"));
  const Ref args = owned(Py_BuildValue("(NO)", strOf(shortName(type)).release(), members.get()));
  const Ref kwargs = owned(
      Py_BuildValue("{ss,sN}", "module", "rova", "qualname", strOf(pythonName(type)).release()));
  Ref made = owned(PyObject_Call(intEnum.get(), args.get(), kwargs.get()));
  setText(made.get(), "__doc__", std::string(type.name) + ", an enumeration.");
  entry.members = owned(PyObject_GetAttrString(made.get(), "_value2member_map_"));
  entry.made = made.release();
}

MadeClass& entryOf(const Lumo::TypeRecord& type) {
  if (const auto known = classByRecord.find(&type); known != classByRecord.end()) {
    return *known->second;
  }
  auto found = classes().find(std::string_view(type.name));
  if (found == classes().end()) {
    MadeClass made{&type, {}, {}, {}, {}};
    if (type.form == Lumo::ValueForm::enumeration) {
      makeEnumeration(made);
    } else {
      makeClass(made);
    }
    // Moving keeps the places of what the class points to.
    found = classes().emplace(type.name, std::move(made)).first;
  }
  classByRecord.emplace(&type, &found->second);
  return found->second;
}

using TypesByName = std::map<std::string_view, const Lumo::TypeRecord*>;

/// Enters the type and what its tables lead to.
void collectReachable(const Lumo::TypeRecord* type, TypesByName& found) {
  if (!type || !found.emplace(type->name, type).second) return;
  collectReachable(type->base, found);
  for (const Lumo::ArgumentRecord& argument : argumentsOf(type->constructorArguments)) {
    collectReachable(argument.type, found);
  }
  for (const Lumo::AttributeRecord& row : type->attributes) {
    collectReachable(row.valueType, found);
    collectReachable(row.keyType, found);
    for (const Lumo::ArgumentRecord& argument : row.arguments) {
      collectReachable(argument.type, found);
    }
  }
}

const TypesByName& reachableTypes() {
  static const TypesByName found = [] {
    TypesByName types;
    for (const Lumo::TypeRecord* type : Lumo::typeNodes()) collectReachable(type, types);
    return types;
  }();
  return found;
}

PyObject* typeOf(PyObject*, PyObject* name) {
  return guarded([&] {
    const std::string wanted = bytesOf(name);
    if (const auto known = classes().find(wanted); known != classes().end()) {
      return Ref::borrow(known->second.made);
    }
    const auto found = reachableTypes().find(wanted);
    PyObject* const made = found == reachableTypes().end() ? nullptr : classOf(*found->second);
    if (!made) raise(PyExc_KeyError, "no class of the name " + wanted);
    return Ref::borrow(made);
  });
}

PyMethodDef functions[] = {
    {"type_of", typeOf, METH_O,
     "type_of(name, /)\n--\n\n"
     "The class of a type by its full name, as 'Routing::RouteKey'. KeyError for a name that no\n"
     "type of the library leads to, and for types whose values are Python's own."},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PyObject* classOf(const Lumo::TypeRecord& type) {
  return hasClass(type) ? entryOf(type).made : nullptr;
}

const Lumo::TypeRecord& typeOfClass(PyTypeObject* made) {
  for (PyTypeObject* at = made; at; at = at->tp_base) {
    if (const auto found = typeByClass.find(at); found != typeByClass.end()) return *found->second;
  }
  raise(PyExc_TypeError, std::string(made->tp_name) + " is no type of the library");
}

Ref enumMember(const Lumo::TypeRecord& type, long number) {
  const Ref value = owned(PyLong_FromLong(number));
  PyObject* const member = PyDict_GetItemWithError(entryOf(type).members.get(), value.get());
  if (!member && PyErr_Occurred()) throw PythonError();
  return member ? Ref::borrow(member) : value;
}

PyObject* addTypes(PyObject* module) {
  return guarded([&] {
    objectBase = makeObjectBase();
    makeMethodType();
    check(PyModule_AddObjectRef(module, "Object", reinterpret_cast<PyObject*>(objectBase)));
    for (const Lumo::TypeRecord* type : Lumo::typeNodes()) {
      const std::string name(shortName(*type));
      check(PyModule_AddObjectRef(module, name.c_str(), classOf(*type)));
    }
    check(PyModule_AddFunctions(module, functions));
    return Ref::borrow(module);
  });
}

} // namespace rova_python
