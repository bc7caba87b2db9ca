// Enumerations by name: their vocabularies, and conversions through them.
#pragma once

#include "lumo/String.h"
#include "lumo/TypeName.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace Lumo {

/// One value of an enumeration. A table of these is the enumeration's vocabulary.
template <class Enum>
struct EnumName {
  Enum value;
  std::string_view name;
};

/// The same without the enumeration's type.
struct EnumEntry {
  std::uint32_t value;
  std::string_view name;
};

/// The names of an enumeration as numbers with names, for callers without its type.
template <class Enum, std::size_t count>
constexpr std::array<EnumEntry, count> enumEntries(const EnumName<Enum> (&names)[count]) {
  std::array<EnumEntry, count> entries{};
  for (std::size_t i = 0; i < count; ++i) {
    entries[i] = {static_cast<std::uint32_t>(names[i].value), names[i].name};
  }
  return entries;
}

/// The vocabulary of `Enum`, made by LUMO_ENUM; enumerations without one are not known by name.
template <class Enum>
struct Enumeration;

template <class Enum>
concept Enumerated = requires {
  Enumeration<Enum>::entries;
};

/// Conversions through a vocabulary. `type` is the enumeration's name, for the messages.
struct LUMO_EXPORT EnumType {
  const char* type;
  std::span<const EnumEntry> entries;

  /// The name of the number; nothing for a number without one.
  std::optional<std::string_view> name(std::uint32_t number) const;
  /// Raises a range error for a number without a name.
  std::uint32_t instance(std::uint32_t number) const;
  /// Raises a range error that lists the names for a text that is none of them.
  std::uint32_t instance(std::string_view name) const;
};

/// What is known of an enumeration by its names.
template <Enumerated Enum>
constexpr EnumType enumTypeOf() {
  return {TypeName<Enum>::value, Enumeration<Enum>::entries};
}

/// The name of a value; the number in decimal for one without a name.
LUMO_EXPORT String enumText(const EnumType& type, std::uint32_t number);

} // namespace Lumo

/// Makes an enumeration known by the names of a table of `Lumo::EnumName`. Stands outside every
/// namespace.
#define LUMO_ENUM(Enum, table)                                                                     \
  template <>                                                                                      \
  struct Lumo::Enumeration<Enum> {                                                                 \
    static constexpr auto entries = ::Lumo::enumEntries(table);                                    \
  }
