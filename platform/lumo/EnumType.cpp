#include "lumo/EnumType.h"

#include "lumo/Exception.h"

#include <string>

namespace Lumo {

std::optional<std::string_view> EnumType::name(std::uint32_t number) const {
  for (const EnumEntry& entry : entries) {
    if (entry.value == number) return entry.name;
  }
  return {};
}

std::uint32_t EnumType::instance(std::uint32_t number) const {
  if (!name(number)) {
    throw RangeException(std::string(type) + " has no value " + std::to_string(number));
  }
  return number;
}

std::uint32_t EnumType::instance(std::string_view wanted) const {
  std::string names;
  for (const EnumEntry& entry : entries) {
    if (entry.name == wanted) return entry.value;
    names += (names.empty() ? "" : ", ") + std::string(entry.name);
  }
  throw RangeException(std::string(type) + " has no value '" + std::string(wanted) +
                       "', but: " + names);
}

String enumText(const EnumType& type, std::uint32_t number) {
  const auto name = type.name(number);
  return name ? String(*name) : String(std::to_string(number));
}

} // namespace Lumo
