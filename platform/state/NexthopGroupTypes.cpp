#include "state/NexthopGroupTypes.h"

#include <span>
#include <string>

namespace {

template <class Enum>
Lumo::String nameOrNumber(std::span<const state::EnumName<Enum>> names, Enum value) {
  for (const auto& row : names) {
    if (row.value == value) return Lumo::String(row.name);
  }
  return std::to_string(static_cast<std::uint32_t>(value));
}

} // namespace

Lumo::String Routing::stringValue(GreKeyType type) {
  return nameOrNumber<GreKeyType>(greKeyTypeNames, type);
}

namespace Routing::NexthopGroup {

Lumo::String stringValue(NexthopGroupType type) {
  return nameOrNumber<NexthopGroupType>(nexthopGroupTypeNames, type);
}

Lumo::String stringValue(EntryCounterType type) {
  return nameOrNumber<EntryCounterType>(entryCounterTypeNames, type);
}

} // namespace Routing::NexthopGroup
