#include "Model.h"

#include "Activity.h"
#include "Errors.h"
#include "Json.h"
#include "MemoryFile.h"
#include "Method.h"
#include "Text.h"
#include "lumo/Reflect.h"

#include <cstdint>
#include <cstring>
#include <exception>
#include <string>

namespace rova_python {

namespace {

/// The number of the format of models.
constexpr int modelFormat = 2;

bool isOutput(std::string_view name) { return name == "fd" || name == "fmt"; }

std::size_t outputArguments(const Lumo::AttributeRecord& method) {
  std::size_t count = 0;
  for (const Lumo::ArgumentRecord& argument : argumentsOf(method.arguments.data())) {
    count += isOutput(argument.name);
  }
  return count;
}

bool hasOutputAttributes(const Lumo::TypeRecord& type) {
  for (const char* const name : {"fd", "fmt"}) {
    const auto* const attribute = type.attribute(name);
    if (!attribute || attribute->kind != Lumo::AttributeKind::plain) return false;
  }
  return true;
}

/// The model in a text that begins with a brace of ours and has room for one more character and
/// the padding. The brace of a document is its own; members get ours on both sides.
Ref modelOfBraced(char* braced, std::size_t length) {
  const std::string_view text(braced + 1, length - 1);
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first != text.npos && text[first] == '{') return objectOfJson(text.data(), text.size());
  braced[length] = '}';
  return objectOfJson(braced, length + 1);
}

/// Keyword arguments for a display: those of the call, positional ones under their names.
Ref namedArguments(const Lumo::AttributeRecord& method, PyObject* args, PyObject* kwargs) {
  Ref named = owned(kwargs ? PyDict_Copy(kwargs) : PyDict_New());
  const auto* argument = method.arguments.data();
  const Py_ssize_t given = args ? PyTuple_GET_SIZE(args) : 0;
  for (Py_ssize_t at = 0; at < given; ++at, ++argument) {
    while (argument->name && isOutput(argument->name)) ++argument;
    if (!argument->name) {
      raise(PyExc_TypeError, "model() takes " + std::to_string(at) +
                                 " positional arguments, found " + std::to_string(given));
    }
    const Ref name = owned(PyUnicode_FromString(argument->name));
    if (PyDict_Contains(named.get(), name.get()) == 1) {
      raise(PyExc_TypeError, std::string("model() got the argument twice: ") + argument->name);
    }
    check(PyDict_SetItem(named.get(), name.get(), PyTuple_GET_ITEM(args, at)));
  }
  return named;
}

void setOutput(const Ref& named, const char* name, int value) {
  if (PyDict_GetItemString(named.get(), name)) {
    raise(PyExc_TypeError, std::string("model() writes to memory and takes no ") + name);
  }
  const Ref number = owned(PyLong_FromLong(value));
  check(PyDict_SetItemString(named.get(), name, number.get()));
}

/// Sends the display of an object to where `fd` and `fmt` say, and back at the end.
class OutputAttributes {
 public:
  OutputAttributes(Lumo::GenericIf& object, int fd, int fmt)
      : object_(object), oldFd_(set("fd", fd)), oldFmt_(set("fmt", fmt)) {}
  ~OutputAttributes() {
    Lumo::write(object_, "fd", oldFd_);
    Lumo::write(object_, "fmt", oldFmt_);
  }
  OutputAttributes(const OutputAttributes&) = delete;
  OutputAttributes& operator=(const OutputAttributes&) = delete;

 private:
  Lumo::GenericPtr set(const char* name, int value) {
    auto old = Lumo::read(object_, name);
    const auto number = static_cast<std::uint64_t>(value);
    Lumo::write(object_, name, old->type().fromInteger({number, false}));
    return old;
  }

  Lumo::GenericIf& object_;
  Lumo::GenericPtr oldFd_, oldFmt_;
};

/// Has the object display itself on the descriptor.
void display(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& method, int fd,
             PyObject* args, PyObject* kwargs) {
  const Ref none = owned(PyTuple_New(0));
  if (outputArguments(method) == 0) {
    const Activity activity;
    const OutputAttributes output(*object, fd, modelFormat);
    callMethod(object, method, args ? args : none.get(), kwargs);
    return;
  }
  const Ref named = namedArguments(method, args, kwargs);
  setOutput(named, "fd", fd);
  setOutput(named, "fmt", modelFormat);
  callMethod(object, method, none.get(), named.get());
}

PyObject* modelOfBytes(PyObject*, PyObject* bytes) {
  return guarded([&] {
    char* text = nullptr;
    Py_ssize_t length = 0;
    check(PyBytes_AsStringAndSize(bytes, &text, &length));
    return modelOfText({text, static_cast<std::size_t>(length)});
  });
}

PyMethodDef functions[] = {
    {"_model_of_text", modelOfBytes, METH_O,
     "_model_of_text(text, /)\n--\n\nThe model in what a display wrote, as bytes."},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

const Lumo::AttributeRecord* displayMethod(const Lumo::TypeRecord& type) {
  const bool hasAttributes = hasOutputAttributes(type);
  for (const auto& attribute : type.attributes) {
    if (attribute.kind != Lumo::AttributeKind::method) continue;
    if (outputArguments(attribute) == 2) return &attribute;
    if (hasAttributes && std::strcmp(attribute.name, "dump") == 0) return &attribute;
  }
  return nullptr;
}

Ref modelOfText(std::string_view json) {
  std::string braced("{");
  braced.reserve(json.size() + 2 + jsonPadding);
  braced += json;
  const std::size_t length = braced.size();
  braced.resize(length + 1 + jsonPadding);
  return modelOfBraced(braced.data(), length);
}

Ref modelOf(const Lumo::GenericPtr& object, PyObject* args, PyObject* kwargs) {
  const auto* const method = displayMethod(object->type());
  if (!method) raise(PyExc_TypeError, std::string(object->type().name) + " displays nothing");
  MemoryFile file("{");
  display(object, *method, file.descriptor(), args, kwargs);
  const auto length = file.length();
  return modelOfBraced(file.map(length + 1 + jsonPadding), length);
}

PyObject* addModels(PyObject* module) {
  return PyModule_AddFunctions(module, functions) < 0 ? nullptr : module;
}

} // namespace rova_python
