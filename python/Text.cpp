#include "Text.h"

#include "Object.h"

namespace rova_python {

namespace {
constexpr const char* foreignBytes = "surrogateescape";
}

Ref strOf(std::string_view bytes) {
  return owned(
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), foreignBytes));
}

std::string bytesOf(PyObject* str) {
  if (!PyUnicode_Check(str)) {
    raise(PyExc_TypeError, std::string("expected str, found ") + Py_TYPE(str)->tp_name);
  }
  const Ref bytes = owned(PyUnicode_AsEncodedString(str, "utf-8", foreignBytes));
  return {PyBytes_AS_STRING(bytes.get()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.get()))};
}

std::string_view nameOf(PyObject* str) {
  Py_ssize_t length = 0;
  const char* const text = PyUnicode_AsUTF8AndSize(str, &length);
  if (!text) throw PythonError();
  return {text, static_cast<std::size_t>(length)};
}

std::string pythonName(const Lumo::TypeRecord& type) {
  if (Lumo::typeNode(type.name)) return std::string(shortName(type));
  std::string name = type.name;
  for (auto at = name.find("::"); at != name.npos; at = name.find("::")) name.replace(at, 2, ".");
  return name;
}

std::span<const Lumo::ArgumentRecord> argumentsOf(const Lumo::ArgumentRecord* table) {
  std::size_t count = 0;
  while (table && table[count].name) ++count;
  return {table, count};
}

void throwWrongType(const Lumo::TypeRecord& expected, PyObject* found) {
  const char* const name =
      isObject(found) ? genericOf(found)->type().name : Py_TYPE(found)->tp_name;
  raise(PyExc_TypeError,
        std::string("expected ") + expected.name + ", found " + (found == Py_None ? "None" : name));
}

} // namespace rova_python
