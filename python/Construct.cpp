#include "Construct.h"

#include "Convert.h"
#include "Errors.h"
#include "Precondition.h"
#include "Text.h"
#include "lumo/Reflect.h"

#include <string>
#include <utility>
#include <vector>

namespace rova_python {

namespace {

/// Whether the constructor does not take it but it can be written when the object is there.
bool isWrittenLater(const Lumo::AttributeRecord& row) {
  return row.kind == Lumo::AttributeKind::plain && row.write;
}

Lumo::GenericPtr defaultOf(const Lumo::TypeRecord& type) {
  if (type.isEntity()) return {};
  Lumo::GenericArguments arguments;
  for (const Lumo::ArgumentRecord& argument : argumentsOf(type.constructorArguments)) {
    arguments.push_back(defaultOf(*argument.type));
  }
  return Lumo::construct(type, arguments);
}

/// One object under construction.
class Construction {
 public:
  explicit Construction(const Lumo::TypeRecord& type)
      : type_(type),
        values_(argumentsOf(type.constructorArguments).size()),
        given_(values_.size()) {}

  void takePositional(PyObject* args) {
    const auto count = static_cast<std::size_t>(PyTuple_GET_SIZE(args));
    const bool hasDefaults = count > 0 && PyDict_Check(PyTuple_GET_ITEM(args, 0));
    const std::size_t skip = hasDefaults ? 1 : 0;
    if (hasDefaults) defaults_ = PyTuple_GET_ITEM(args, 0);
    if (count - skip > values_.size()) {
      fail("takes " + std::to_string(values_.size()) + " positional arguments, found " +
           std::to_string(count - skip));
    }
    for (std::size_t i = skip; i < count; ++i) {
      giveArgument(i - skip, PyTuple_GET_ITEM(args, static_cast<Py_ssize_t>(i)));
    }
  }

  void takeKeywords(PyObject* kwargs) {
    PyObject *key, *value;
    for (Py_ssize_t at = 0; PyDict_Next(kwargs, &at, &key, &value);) {
      const Ref heldKey = Ref::borrow(key), heldValue = Ref::borrow(value);
      takeKeyword(key, value);
    }
  }

  Lumo::GenericPtr finish() {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (!given_[i]) fillIn(i);
    }
    takeDefaultsForLater();
    needPreconditions({type_, {values_.data(), values_.size()}});
    auto object = Lumo::construct(type_, arguments());
    for (const auto& [row, value] : later_) {
      Lumo::operate(*object, {row, Lumo::OpCode::write}, {}, value);
    }
    return object;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    raise(PyExc_TypeError, pythonName(type_) + " " + what);
  }

  void takeKeyword(PyObject* key, PyObject* value) {
    if (!PyUnicode_Check(key)) fail("takes names as keywords only");
    const std::string_view name = nameOf(key);
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (name != type_.constructorArguments[i].name) continue;
      if (given_[i]) fail("got " + std::string(name) + " twice");
      return giveArgument(i, value);
    }
    const Lumo::AttributeRecord* const row = type_.attribute(name);
    if (!row || !isWrittenLater(*row)) throwUnknown(name);
    later_.emplace_back(row, namedFromPython(value, *row->valueType, row->name));
  }

  void giveArgument(std::size_t index, PyObject* value) {
    const Lumo::ArgumentRecord& argument = type_.constructorArguments[index];
    values_[index] = namedFromPython(value, *argument.type, argument.name);
    if (!values_[index] && !mayBeNull(argument)) throwMissing(argument);
    given_[index] = true;
  }

  void fillIn(std::size_t index) {
    const Lumo::ArgumentRecord& argument = type_.constructorArguments[index];
    if (const Ref value = defaultNamed(argument.name)) return giveArgument(index, value.get());
    if (argument.type->isEntity() && !mayBeNull(argument)) throwMissing(argument);
    values_[index] = defaultOf(*argument.type);
  }

  void takeDefaultsForLater() {
    if (!defaults_) return;
    std::vector<std::pair<const Lumo::AttributeRecord*, Lumo::GenericPtr>> found;
    for (const Lumo::AttributeRecord& row : type_.attributes) {
      const Ref value = isWrittenLater(row) ? defaultNamed(row.name) : Ref();
      if (!value) continue;
      try {
        found.emplace_back(&row, namedFromPython(value.get(), *row.valueType, row.name));
      } catch (const Lumo::RangeException&) {
        // a default for constructors that take more, as a descriptor of -1
      }
    }
    later_.insert(later_.begin(), found.begin(), found.end()); // keywords win: they come later
  }

  /// Empty when there is none.
  Ref defaultNamed(const char* name) const {
    if (!defaults_) return {};
    const Ref key = owned(PyUnicode_FromString(name));
    PyObject* const value = PyDict_GetItemWithError(defaults_, key.get());
    if (!value && PyErr_Occurred()) throw PythonError();
    return Ref::borrow(value);
  }

  bool mayBeNull(const Lumo::ArgumentRecord& argument) const {
    if (!argument.type->isEntity()) return true;
    const Lumo::AttributeRecord* const row = type_.attribute(argument.name);
    return row && row->mayBeNull;
  }

  [[noreturn]] void throwMissing(const Lumo::ArgumentRecord& argument) const {
    fail(std::string("needs ") + argument.name + ", a handle to " + argument.type->name +
         ": pass the handles of a device, as device.ip() gives them");
  }

  [[noreturn]] void throwUnknown(std::string_view name) const {
    std::string known;
    for (const Lumo::ArgumentRecord& argument : argumentsOf(type_.constructorArguments)) {
      known += std::string(" ") + argument.name;
    }
    for (const Lumo::AttributeRecord& row : type_.attributes) {
      if (isWrittenLater(row)) known += std::string(" ") + row.name;
    }
    fail("has no argument or attribute '" + std::string(name) + "', but:" + known);
  }

  Lumo::GenericArguments arguments() const { return {values_.begin(), values_.end()}; }

  const Lumo::TypeRecord& type_;
  std::vector<Lumo::GenericPtr> values_; ///< of the constructor's arguments
  std::vector<bool> given_;
  std::vector<std::pair<const Lumo::AttributeRecord*, Lumo::GenericPtr>> later_;
  PyObject* defaults_ = nullptr; ///< borrowed from the arguments
};

} // namespace

Lumo::GenericPtr construct(const Lumo::TypeRecord& type, PyObject* args, PyObject* kwargs) {
  if (!type.genericIfFromCtorArgs) {
    raise(PyExc_TypeError, pythonName(type) + " is not built by name: devices give its handles");
  }
  Construction construction(type);
  construction.takePositional(args);
  if (kwargs) construction.takeKeywords(kwargs);
  return construction.finish();
}

Lumo::GenericPtr constructFromDict(const Lumo::TypeRecord& type, PyObject* dict) {
  const Ref none = owned(PyTuple_New(0));
  return construct(type, none.get(), dict);
}

Lumo::GenericPtr constructFromFields(const Lumo::TypeRecord& type, PyObject* tuple) {
  const Ref fields = owned(PyDict_New());
  Py_ssize_t count = 0;
  for (const Lumo::AttributeRecord& row : type.attributes) {
    if (!Lumo::isStored(row.kind) || Lumo::isCollection(row.kind)) continue;
    if (count < PyTuple_GET_SIZE(tuple)) {
      check(PyDict_SetItemString(fields.get(), row.name, PyTuple_GET_ITEM(tuple, count)));
    }
    ++count;
  }
  if (count != PyTuple_GET_SIZE(tuple)) {
    raise(PyExc_TypeError, std::string("expected ") + std::to_string(count) + " fields of " +
                               type.name + ", found " + std::to_string(PyTuple_GET_SIZE(tuple)));
  }
  return constructFromDict(type, fields.get());
}

} // namespace rova_python
