#include "Json.h"

#include "Errors.h"
#include "StringCache.h"

#include <simdjson.h>
#include <stdexcept>
#include <string>

namespace rova_python {

namespace {

namespace json = simdjson::ondemand;

/// Keeps the garbage collector from walking a growing heap again and again: nothing of a document
/// can be garbage before it is whole.
class CollectorPause {
 public:
  CollectorPause() : wasEnabled_(PyGC_Disable() != 0) {}
  ~CollectorPause() {
    if (wasEnabled_) PyGC_Enable();
  }
  CollectorPause(const CollectorPause&) = delete;
  CollectorPause& operator=(const CollectorPause&) = delete;

 private:
  bool wasEnabled_;
};

/// One level of nesting, which Python's limit on the depth of calls bounds.
class Level {
 public:
  Level() {
    if (Py_EnterRecursiveCall(" while reading a model") != 0) throw PythonError();
  }
  ~Level() { Py_LeaveRecursiveCall(); }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
};

/// Makes the objects of one document.
class Reader {
 public:
  template <class Value>
  Ref read(Value& value) {
    switch (value.type()) {
    case json::json_type::object:
      return readObject(value.get_object());
    case json::json_type::array:
      return readArray(value.get_array());
    case json::json_type::string:
      return values_.text(std::string_view(value.get_string()));
    case json::json_type::number:
      return readNumber(value.get_number());
    case json::json_type::boolean:
      return Ref::boolean(value.get_bool());
    default:
      if (!value.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
      return Ref::none();
    }
  }

 private:
  Ref readObject(json::object object);
  Ref readArray(json::array array);
  static Ref readNumber(json::number number);

  StringCache keys_{StringCache::Use::keys};
  StringCache values_{StringCache::Use::values};
};

Ref Reader::readObject(json::object object) {
  const Level level;
  Ref dictionary = owned(PyDict_New());
  for (auto field : object) {
    const Ref key = keys_.text(std::string_view(field.unescaped_key()));
    json::value value = field.value();
    const Ref member = read(value);
    check(PyDict_SetItem(dictionary.get(), key.get(), member.get()));
  }
  return dictionary;
}

Ref Reader::readArray(json::array array) {
  const Level level;
  Ref list = owned(PyList_New(0));
  for (json::value value : array) {
    const Ref member = read(value);
    check(PyList_Append(list.get(), member.get()));
  }
  return list;
}

Ref Reader::readNumber(json::number number) {
  switch (number.get_number_type()) {
  case json::number_type::signed_integer:
    return owned(PyLong_FromLongLong(number.get_int64()));
  case json::number_type::unsigned_integer:
    return owned(PyLong_FromUnsignedLongLong(number.get_uint64()));
  default:
    return owned(PyFloat_FromDouble(number.get_double()));
  }
}

/// Where the reading stands; null at the end of the text.
const char* placeOf(json::document& document) {
  const char* at = nullptr;
  return document.current_location().get(at) ? nullptr : at;
}

[[noreturn]] void fail(const char* what, const std::string& place) {
  throw std::runtime_error("the model is no JSON" + place + ": " + what);
}

std::string described(const char* at, const char* text) {
  return at ? " at byte " + std::to_string(at - text) : " at its end";
}

} // namespace

const std::size_t jsonPadding = simdjson::SIMDJSON_PADDING;

Ref objectOfJson(const char* text, std::size_t length) {
  const CollectorPause pause;
  json::parser parser;
  json::document document;
  if (const auto error = parser.iterate(text, length, length + jsonPadding).get(document)) {
    fail(simdjson::error_message(error), "");
  }
  try {
    Ref object = Reader().read(document);
    if (const char* const at = placeOf(document)) fail("more than one value", described(at, text));
    return object;
  } catch (const simdjson::simdjson_error& error) {
    fail(error.what(), described(placeOf(document), text));
  }
}

} // namespace rova_python
