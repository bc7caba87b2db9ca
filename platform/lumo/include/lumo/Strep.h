// Strep text: the one-line text form of values.
#pragma once

#include "lumo/Ptr.h"
#include "lumo/String.h"
#include "lumo/TypeName.h"

#include <charconv>
#include <string>
#include <type_traits>

namespace Lumo {

struct TypeRecord;

/// "Ptr('NAME', 0x...)", and "None" for null: an entity is named, never written out.
String valueToStrepOfRawPtr(const void* pointer, const char* typeName);

/// The text of a type with an attribute table: see `strepOf` in the source for its three shapes.
String strepOf(const TypeRecord& type, const void* object);

template <class T>
String valueToStrep(const T& value) {
  if constexpr (requires { T::lumoType; }) {
    return strepOf(T::lumoType, &value);
  } else if constexpr (std::is_same_v<T, bool>) {
    return value ? "True" : "False";
  } else if constexpr (std::is_same_v<T, String>) {
    return quoted(value);
  } else if constexpr (std::is_arithmetic_v<T>) {
    char digits[32];
    return String(
        std::string_view(digits, std::to_chars(digits, digits + sizeof digits, value).ptr));
  } else if constexpr (requires { value.stringValue(); }) {
    return "Value('" + std::string(TypeName<T>::value) + "', " + quoted(value.stringValue()).str() +
           ")";
  } else if constexpr (requires { valueToStrep(value.value()); }) {
    return "Value('" + std::string(TypeName<T>::value) + "', " + valueToStrep(value.value()).str() +
           ")";
  } else {
    return "Value('" + std::string(TypeName<T>::value) + "')";
  }
}

template <class T>
String valueToStrep(const Ptr<T>& entity) {
  return valueToStrepOfRawPtr(entity.ptr(), TypeName<T>::value);
}

} // namespace Lumo
