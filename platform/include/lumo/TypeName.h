// The framework's text name of every type that can stand in an attribute.
#pragma once

#include "lumo/Ptr.h"
#include "lumo/String.h"

#include <cstdint>

namespace Lumo {

/// The name of `T` as attribute tables write it. A class with attributes names itself (`lumoName`);
/// other types are named with LUMO_TYPE_NAME.
template <class T>
struct TypeName {
  /// The name by which the type is known, with its namespace.
  static constexpr const char* value = T::lumoName;
};
template <class T>
struct TypeName<const T> : TypeName<T> {};
template <class T>
struct TypeName<T&> : TypeName<T> {};
/// A handle bears the name of its entity.
template <class T>
struct TypeName<Ptr<T>> : TypeName<T> {};

} // namespace Lumo

/// Names a type for attribute tables. Stands outside every namespace.
#define LUMO_TYPE_NAME_AS(Type, text)                                                              \
  template <>                                                                                      \
  struct Lumo::TypeName<Type> {                                                                    \
    static constexpr const char* value = text;                                                     \
  }
#define LUMO_TYPE_NAME(Type) LUMO_TYPE_NAME_AS(Type, #Type)

LUMO_TYPE_NAME(void);
LUMO_TYPE_NAME(bool);
LUMO_TYPE_NAME(int);
LUMO_TYPE_NAME(double);
LUMO_TYPE_NAME_AS(std::uint8_t, "U8");
LUMO_TYPE_NAME_AS(std::uint16_t, "U16");
LUMO_TYPE_NAME_AS(std::uint32_t, "U32");
LUMO_TYPE_NAME_AS(std::uint64_t, "U64");
LUMO_TYPE_NAME(Lumo::String);
LUMO_TYPE_NAME(Lumo::Name);
LUMO_TYPE_NAME(Lumo::PtrInterface);
