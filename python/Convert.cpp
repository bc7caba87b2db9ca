#include "Convert.h"

#include "Address.h"
#include "Construct.h"
#include "Errors.h"
#include "Object.h"
#include "Text.h"
#include "Types.h"
#include "lumo/TypeRecordOf.h"

namespace rova_python {

namespace {

Ref integerToPython(Lumo::AnyInteger value) {
  return owned(value.isNegative ? PyLong_FromLongLong(static_cast<long long>(value.bits))
                                : PyLong_FromUnsignedLongLong(value.bits));
}

Ref notationToPython(const Lumo::TypeRecord& type, const void* object) {
  const Lumo::String text = type.toText(object);
  const AddressType* const address = addressType(type);
  return address ? addressToPython(*address, text) : strOf(text);
}

Ref enumerationToPython(const Lumo::TypeRecord& type, const void* object) {
  return enumMember(type, static_cast<long>(type.toInteger(object).bits));
}

/// Any object that is a number without a fraction. Raises a range error for more than 64 bits.
Lumo::AnyInteger integerFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (!PyIndex_Check(object)) throwWrongType(type, object);
  const Ref number = owned(PyNumber_Index(object));
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(number.get(), &overflow);
  if (overflow == 0) return {static_cast<std::uint64_t>(value), value < 0};
  const unsigned long long bits =
      overflow > 0 ? PyLong_AsUnsignedLongLong(number.get()) : static_cast<unsigned long long>(-1);
  if (overflow < 0 || PyErr_Occurred()) {
    PyErr_Clear();
    throw Lumo::RangeException(bytesOf(owned(PyObject_Str(number.get())).get()) +
                               " is outside the range of " + type.name);
  }
  return {bits, false};
}

Lumo::GenericPtr booleanFrom(PyObject* object, const Lumo::TypeRecord& type) {
  const Lumo::AnyInteger value = integerFrom(object, type);
  if (value.bits > 1) {
    throw Lumo::RangeException(bytesOf(owned(PyObject_Str(object)).get()) +
                               " is outside the range of bool");
  }
  return Lumo::wrapAttrValue(value.bits == 1);
}

Lumo::GenericPtr realFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (!PyFloat_Check(object) && !PyIndex_Check(object)) throwWrongType(type, object);
  const double value = PyFloat_AsDouble(object);
  if (value == -1.0 && PyErr_Occurred()) throw PythonError();
  return Lumo::wrapAttrValue(value);
}

Lumo::GenericPtr textFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (!PyUnicode_Check(object)) throwWrongType(type, object);
  return type.fromText(bytesOf(object));
}

Lumo::GenericPtr enumerationFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (PyUnicode_Check(object)) return textFrom(object, type);
  return type.fromInteger(integerFrom(object, type));
}

Lumo::GenericPtr notationFrom(PyObject* object, const Lumo::TypeRecord& type) {
  const AddressType* const address = addressType(type);
  return address ? addressFromPython(*address, object, type) : textFrom(object, type);
}

Lumo::GenericPtr instanceFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (isObject(object) && Lumo::isSameType(genericOf(object)->type(), type)) {
    return genericOf(object);
  }
  throwWrongType(type, object);
}

Lumo::GenericPtr recordFrom(PyObject* object, const Lumo::TypeRecord& type) {
  if (PyDict_Check(object)) return constructFromDict(type, object);
  if (PyTuple_Check(object)) return constructFromFields(type, object);
  return instanceFrom(object, type);
}

/// Puts the name in front of a TypeError's message that is set; leaves other exceptions.
void nameTypeError(const char* name) {
  if (!PyErr_ExceptionMatches(PyExc_TypeError)) return;
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  const Ref message = Ref::steal(value ? PyObject_Str(value) : nullptr);
  Py_XDECREF(type);
  Py_XDECREF(value);
  Py_XDECREF(traceback);
  if (message) PyErr_Format(PyExc_TypeError, "%s: %U", name, message.get());
}

} // namespace

Ref toPython(const Lumo::GenericPtr& value) {
  if (!value) return Ref::none();
  const Lumo::TypeRecord& type = value->type();
  const void* const object = value->voidPtrIs(type);
  if (!object) return Ref::none();
  switch (type.form) {
  case Lumo::ValueForm::boolean:
    return Ref::boolean(*static_cast<const bool*>(object));
  case Lumo::ValueForm::integer:
  case Lumo::ValueForm::number:
    return integerToPython(type.toInteger(object));
  case Lumo::ValueForm::real:
    return owned(PyFloat_FromDouble(*static_cast<const double*>(object)));
  case Lumo::ValueForm::text:
    return strOf(type.toText(object));
  case Lumo::ValueForm::notation:
    return notationToPython(type, object);
  case Lumo::ValueForm::enumeration:
    return enumerationToPython(type, object);
  default:
    return makeObject(value);
  }
}

Lumo::GenericPtr fromPython(PyObject* object, const Lumo::TypeRecord& type) {
  switch (type.form) {
  case Lumo::ValueForm::boolean:
    return booleanFrom(object, type);
  case Lumo::ValueForm::integer:
  case Lumo::ValueForm::number:
    return type.fromInteger(integerFrom(object, type));
  case Lumo::ValueForm::real:
    return realFrom(object, type);
  case Lumo::ValueForm::text:
    return textFrom(object, type);
  case Lumo::ValueForm::notation:
    return notationFrom(object, type);
  case Lumo::ValueForm::enumeration:
    return enumerationFrom(object, type);
  case Lumo::ValueForm::record:
    return recordFrom(object, type);
  case Lumo::ValueForm::entity:
    return object == Py_None ? Lumo::GenericPtr() : instanceFrom(object, type);
  default:
    return instanceFrom(object, type);
  }
}

Lumo::GenericPtr namedFromPython(PyObject* object, const Lumo::TypeRecord& type, const char* name) {
  try {
    return fromPython(object, type);
  } catch (const Lumo::RangeException& error) {
    throw Lumo::RangeException(std::string(name) + ": " + error.what());
  } catch (const PythonError&) {
    nameTypeError(name);
    throw;
  }
}

} // namespace rova_python
