#include "state/RouteType.h"

#include "state/RouteTypeNames.h"

namespace state {

namespace {

using V4 = Routing::Fib::RouteType;
using V6 = Routing6::Fib::RouteType;

template <class RouteType>
std::string_view nameOf(RouteType type) {
  const auto name = Lumo::enumTypeOf<RouteType>().name(static_cast<std::uint32_t>(type));
  return name.value_or(std::string_view());
}

} // namespace

std::string_view routeTypeName(V4 type) { return nameOf(type); }
std::string_view routeTypeName(V6 type) { return nameOf(type); }

template <class RouteType>
std::optional<RouteType> routeTypeFromName(std::string_view name) {
  for (const Lumo::EnumEntry& entry : Lumo::Enumeration<RouteType>::entries) {
    if (entry.name == name) return static_cast<RouteType>(entry.value);
  }
  return {};
}

template std::optional<V4> routeTypeFromName<V4>(std::string_view);
template std::optional<V6> routeTypeFromName<V6>(std::string_view);

} // namespace state
