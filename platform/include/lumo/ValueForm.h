// What a value without attributes is made of: a number, a text, the name of an enumeration.
#pragma once

#include "lumo/EnumType.h"
#include "lumo/Exception.h"
#include "lumo/String.h"
#include "lumo/TypeName.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace Lumo {

enum class ValueForm : std::uint8_t {
  none,        ///< no value, or one that shows nothing of itself
  boolean,     ///< true or false
  integer,     ///< one of the integer types
  real,        ///< a double
  text,        ///< bytes, such as a name
  number,      ///< a type of its own around an integer, such as a label
  notation,    ///< a type of its own with a written form, such as an address
  enumeration, ///< one of a set of names
  record,      ///< attributes
  entity       ///< a handle
};

/// Whether it is a `Ptr`.
template <class T>
inline constexpr bool isHandle = false;
template <class T>
inline constexpr bool isHandle<Ptr<T>> = true;

template <class T>
concept Attributed = requires {
  T::lumoType;
};
template <class T>
concept Notated = requires(const T& value) {
  value.stringValue();
};
template <class T>
concept Numbered = requires(const T& value) {
  requires std::is_integral_v<std::remove_cvref_t<decltype(value.value())>>;
  T(value.value());
};

/// The form of a type, by what it is made of.
template <class T>
constexpr ValueForm valueFormOf() {
  if constexpr (isHandle<T> || std::is_base_of_v<PtrInterface, T>) {
    return ValueForm::entity;
  } else if constexpr (Attributed<T>) {
    return ValueForm::record;
  } else if constexpr (std::is_same_v<T, bool>) {
    return ValueForm::boolean;
  } else if constexpr (std::is_integral_v<T>) {
    return ValueForm::integer;
  } else if constexpr (std::is_floating_point_v<T>) {
    return ValueForm::real;
  } else if constexpr (std::is_base_of_v<String, T>) {
    return ValueForm::text;
  } else if constexpr (Enumerated<T>) {
    return ValueForm::enumeration;
  } else if constexpr (Notated<T>) {
    return ValueForm::notation;
  } else if constexpr (Numbered<T>) {
    return ValueForm::number;
  } else {
    return ValueForm::none;
  }
}

/// The value as its own notation or name writes it, without quotes.
template <class T>
String plainText(const T& value) {
  if constexpr (std::is_base_of_v<String, T>) {
    return value;
  } else if constexpr (Enumerated<T>) {
    return enumText(enumTypeOf<T>(), static_cast<std::uint32_t>(value));
  } else {
    return value.stringValue();
  }
}

/// Reads what `plainText` writes, and what else the type's notation allows; nothing for a text
/// that is none. Types may raise range errors of their own.
template <class T>
std::optional<T> fromPlainText(std::string_view text) {
  if constexpr (std::is_base_of_v<String, T>) {
    return T(String(text));
  } else if constexpr (Enumerated<T>) {
    return static_cast<T>(enumTypeOf<T>().instance(text));
  } else if constexpr (requires { T::parse(text); }) {
    if (text == plainText(T()).view()) return T(); // the text of what is unset
    if constexpr (requires { T::nullPrefix(); }) {
      if (text.empty() || text == plainText(T::nullPrefix()).view()) return T::nullPrefix();
    }
    return T::parse(text);
  } else {
    T value{String(text)};
    if (value == T() && text != plainText(T()).view()) return {};
    return value;
  }
}

/// An integer of any width and sign, for conversions.
struct AnyInteger {
  std::uint64_t bits = 0; ///< sign-extended
  bool isNegative = false;
};

/// The number of an integer, of an enumerator, or of a type around one.
template <class T>
AnyInteger toInteger(const T& value) {
  if constexpr (std::is_integral_v<T>) {
    return {static_cast<std::uint64_t>(value), value < T{}};
  } else if constexpr (Enumerated<T>) {
    return {static_cast<std::uint64_t>(value), false};
  } else {
    return {static_cast<std::uint64_t>(value.value()), false};
  }
}

/// Raises a range error that names `type` for a number that `Integer` does not hold.
template <class Integer>
Integer narrow(AnyInteger value, const char* type) {
  const auto result = static_cast<Integer>(value.bits);
  if (static_cast<std::uint64_t>(result) != value.bits ||
      (result < Integer{}) != value.isNegative) {
    const auto sign = static_cast<std::int64_t>(value.bits);
    throw RangeException((value.isNegative ? std::to_string(sign) : std::to_string(value.bits)) +
                         " is outside the range of " + type);
  }
  return result;
}

/// Raises a range error for a number that the type does not hold.
template <class T>
T fromInteger(AnyInteger value) {
  if constexpr (std::is_integral_v<T>) {
    return narrow<T>(value, TypeName<T>::value);
  } else if constexpr (Enumerated<T>) {
    return static_cast<T>(
        enumTypeOf<T>().instance(narrow<std::uint32_t>(value, TypeName<T>::value)));
  } else {
    using Integer = std::remove_cvref_t<decltype(std::declval<const T&>().value())>;
    return T(narrow<Integer>(value, TypeName<T>::value));
  }
}

} // namespace Lumo
