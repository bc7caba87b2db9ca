#include "Catalogue.h"

#include "Activity.h"
#include "Address.h"
#include "Errors.h"
#include "Text.h"
#include "lumo/KindWords.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace rova_python {

namespace {

using Lumo::AttributeKind;
using Lumo::ValueForm;

constexpr Lumo::EnumName<ValueForm> forms[] = {
    {ValueForm::none, "none"},         {ValueForm::boolean, "boolean"},
    {ValueForm::integer, "integer"},   {ValueForm::real, "real"},
    {ValueForm::text, "text"},         {ValueForm::number, "number"},
    {ValueForm::notation, "notation"}, {ValueForm::enumeration, "enumeration"},
    {ValueForm::record, "record"},     {ValueForm::entity, "entity"},
};

/// None for a null text.
Ref textOf(const char* text) { return text ? strOf(text) : Ref::none(); }

Ref typeName(const Lumo::TypeRecord* type) { return textOf(type ? type->name : nullptr); }

template <class Enum, std::size_t count>
Ref word(const Lumo::EnumName<Enum> (&names)[count], Enum value) {
  for (const auto& row : names) {
    if (row.value == value) return strOf(row.name);
  }
  return Ref::none();
}

/// A list of what `make` makes of each element.
template <class Range, class Make>
Ref listOf(const Range& range, Make make) {
  Ref list = owned(PyList_New(0));
  for (const auto& element : range) {
    check(PyList_Append(list.get(), make(element).get()));
  }
  return list;
}

Ref describe(const Lumo::ArgumentRecord& argument) {
  Ref row = owned(PyDict_New());
  setItem(row, "name", textOf(argument.name));
  setItem(row, "type", typeName(argument.type));
  return row;
}

bool isReadOnly(const Lumo::AttributeRecord& attribute) {
  if (attribute.kind == AttributeKind::method) return attribute.isConstant;
  return !attribute.write && !attribute.writeMember;
}

Ref describe(const Lumo::AttributeRecord& attribute) {
  Ref row = owned(PyDict_New());
  setItem(row, "name", textOf(attribute.name));
  setItem(row, "kind", strOf(Lumo::kindWord(attribute.kind)));
  setItem(row, "index", owned(PyLong_FromUnsignedLong(attribute.index)));
  setItem(row, "owner", typeName(attribute.owner));
  setItem(row, "type", typeName(attribute.valueType));
  setItem(row, "key", typeName(attribute.keyType));
  setItem(row, "internalKey", textOf(attribute.internalKey));
  setItem(row, "arguments",
          listOf(argumentsOf(attribute.arguments.data()),
                 [](const auto& argument) { return describe(argument); }));
  setItem(row, "mayBeNull", Ref::boolean(attribute.mayBeNull));
  setItem(row, "readOnly", Ref::boolean(isReadOnly(attribute)));
  return row;
}

Ref describe(const Lumo::EnumEntry& entry) {
  const Ref name = strOf(entry.name);
  return owned(Py_BuildValue("(OI)", name.get(), static_cast<unsigned>(entry.value)));
}

/// Whether the type reads a text as what the text says.
bool reads(const Lumo::TypeRecord& type, const std::string& text) {
  try {
    const auto value = type.fromText(text);
    return type.toText(value->voidPtrIs(type)) == Lumo::String(text);
  } catch (const Lumo::RangeException&) {
    return false;
  }
}

/// The classes of `ipaddress` that the type's values are of, as an annotation writes them.
std::string annotation(const Lumo::TypeRecord& type, const AddressType& address) {
  const std::string_view shape = address.shape;
  const bool hasLength = shape != "Address";
  std::string text;
  const auto add = [&](const std::string& name) { text += (text.empty() ? "" : " | ") + name; };
  if (reads(type, hasLength ? "192.0.2.1/32" : "192.0.2.1")) {
    add("ipaddress.IPv4" + std::string(shape));
  }
  if (reads(type, hasLength ? "2001:db8::1/128" : "2001:db8::1")) {
    add("ipaddress.IPv6" + std::string(shape));
  }
  if (address.none) add("None");
  return text;
}

/// What a value of the type is in Python; None for one of a class of its own.
Ref pythonType(const Lumo::TypeRecord& type) {
  if (const auto* const address = addressType(type)) return strOf(annotation(type, *address));
  switch (type.form) {
  case ValueForm::boolean:
    return strOf("bool");
  case ValueForm::integer:
  case ValueForm::number:
    return strOf("int");
  case ValueForm::real:
    return strOf("float");
  case ValueForm::text:
  case ValueForm::notation:
    return strOf("str");
  default:
    return Ref::none();
  }
}

Ref describe(const Lumo::TypeRecord& type) {
  const auto each = [](const auto& element) { return describe(element); };
  Ref row = owned(PyDict_New());
  setItem(row, "name", textOf(type.name));
  setItem(row, "kind", strOf(Lumo::kindWord(type.kind)));
  setItem(row, "form", word(forms, type.form));
  setItem(row, "python", pythonType(type));
  setItem(row, "base", typeName(type.base));
  setItem(row, "constructor", listOf(argumentsOf(type.constructorArguments), each));
  setItem(row, "constructible", Ref::boolean(type.genericIfFromCtorArgs));
  setItem(row, "attributes", listOf(type.attributes, each));
  setItem(row, "entries", listOf(type.enumEntries, each));
  return row;
}

/// The types that others lead to, each once: records of one type may stand in several libraries.
class Reached {
 public:
  void add(const Lumo::TypeRecord* type) {
    if (!type || !type->FromVoidPointer) return; // of void there are no values
    if (!names_.insert(type->name).second) return;
    types_.push_back(type);
    add(type->base);
    for (const auto& attribute : type->attributes) {
      add(attribute.valueType);
      add(attribute.keyType);
      for (const auto& argument : argumentsOf(attribute.arguments.data())) add(argument.type);
    }
  }
  const std::vector<const Lumo::TypeRecord*>& types() const { return types_; }

 private:
  std::unordered_set<std::string_view> names_;
  std::vector<const Lumo::TypeRecord*> types_;
};

PyObject* types(PyObject*, PyObject* args, PyObject* kwargs) {
  return locked([&] {
    static const char* const names[] = {"all", nullptr};
    int all = 0;
    if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|p:types", const_cast<char**>(names), &all)) {
      throw PythonError();
    }
    const auto each = [](const Lumo::TypeRecord* type) { return describe(*type); };
    if (!all) return listOf(Lumo::typeNodes(), each);
    Reached reached;
    for (const auto* const type : Lumo::typeNodes()) reached.add(type);
    return listOf(reached.types(), each);
  });
}

PyMethodDef functions[] = {
    {"types", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(types)),
     METH_VARARGS | METH_KEYWORDS,
     "types(all=False)\n--\n\n"
     "What the library tells of its types, a dictionary for each; with `all` also those of the\n"
     "platform that they lead to."},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PyObject* addCatalogue(PyObject* module) {
  return PyModule_AddFunctions(module, functions) < 0 ? nullptr : module;
}

} // namespace rova_python
