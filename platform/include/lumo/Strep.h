// Strep text, writing: the one-line text form of values.
//
//   Value('Rova::RouteSortKey', ** {'prefix': Value('Kesh::IpGenPrefix', '10.0.0.0/8'), ...})
//
// | value                | text                                                            |
// |----------------------|-----------------------------------------------------------------|
// | with attributes      | Value('TYPE', ** {'NAME': TEXT, ...})                           |
// | of an integer type   | 5                                                               |
// | bool, double, String | True, 0.5, 'it\'s'                                              |
// | number, notation     | Value('Kesh::MplsLabel', 5), Value('Kesh::Prefix', '0.0.0.0/0') |
// | enumeration          | Value('Rova::AddrMatchType', 'allowNoMatch')                    |
// | entity               | Ptr('TYPE', 0x55d0c0ffee00); None for null                      |
// | collection           | None, whatever it holds                                         |
#pragma once

#include "lumo/ValueForm.h"

#include <charconv>
#include <string>

namespace Lumo {

struct TypeRecord;

/// "Ptr('NAME', 0x...)", and "None" for null: an entity is named, never written out. The entity is
/// remembered while it lives, so that the text can be read back; `writable` tells whether the
/// handle that was written lets the entity be changed.
LUMO_EXPORT String valueToStrepOfRawPtr(const PtrInterface* entity, const void* object,
                                        const char* typeName, bool writable);

/// The text of a type with an attribute table: see the source for its three shapes.
LUMO_EXPORT String strepOf(const TypeRecord& type, const void* object);

/// "Value('NAME', TEXT)"
inline String strepOfScalar(const char* typeName, std::string_view text) {
  return "Value('" + std::string(typeName) + "', " + std::string(text) + ")";
}

/// A number in the fewest digits that read back as it.
template <class T>
String arithmeticText(T value) {
  char digits[32];
  return String(std::string_view(digits, std::to_chars(digits, digits + sizeof digits, value).ptr));
}

/// The strep text of a value, as lumo/StrepReader.h reads it.
template <class T>
String valueToStrep(const T& value) {
  constexpr ValueForm form = valueFormOf<T>();
  if constexpr (isHandle<T>) {
    using Entity = typename T::Element;
    return valueToStrepOfRawPtr(value.ptr(), value.ptr(), TypeName<Entity>::value,
                                !std::is_const_v<Entity>);
  } else if constexpr (form == ValueForm::record) {
    return strepOf(T::lumoType, &value);
  } else if constexpr (form == ValueForm::boolean) {
    return value ? "True" : "False";
  } else if constexpr (form == ValueForm::integer || form == ValueForm::real) {
    return arithmeticText(value);
  } else if constexpr (std::is_same_v<T, String>) {
    return quoted(value);
  } else if constexpr (form == ValueForm::number) {
    return strepOfScalar(TypeName<T>::value, arithmeticText(value.value()));
  } else if constexpr (form == ValueForm::enumeration) {
    const auto name = enumTypeOf<T>().name(static_cast<std::uint32_t>(value));
    return strepOfScalar(TypeName<T>::value,
                         name ? quoted(*name) : arithmeticText(static_cast<std::uint32_t>(value)));
  } else if constexpr (form == ValueForm::text) {
    return strepOfScalar(TypeName<T>::value, quoted(value));
  } else if constexpr (form == ValueForm::notation) {
    if constexpr (Numbered<T> || requires { T::fromValue(value.value()); }) {
      // A value whose text does not lead back to it, as an interface that this process never saw.
      if (fromPlainText<T>(plainText(value)) != value) {
        return strepOfScalar(TypeName<T>::value, arithmeticText(value.value()));
      }
    }
    return strepOfScalar(TypeName<T>::value, quoted(plainText(value)));
  } else {
    return "Value('" + std::string(TypeName<T>::value) + "')";
  }
}

} // namespace Lumo
