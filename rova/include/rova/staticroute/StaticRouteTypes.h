// The values that go into and come out of the saving of static routes.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// The defaults that configuration lines leave out.
class ROVA_EXPORT RovaConsts {
  LUMO_TYPE(RovaConsts, "Rova::RovaConsts")
  LUMO_CTOR(Routing::RoutePreference, defaultStaticRoutePreference)
  LUMO_CTOR(std::uint32_t, defaultStaticRouteTag)
  LUMO_CTOR(Lumo::String, defaultStaticRouteName)
  LUMO_END
  LUMO_VALUE(RovaConsts)

  RovaConsts() = default;
  RovaConsts(Routing::RoutePreference preference, std::uint32_t tag, Lumo::String name)
      : defaultStaticRoutePreference_(preference),
        defaultStaticRouteTag_(tag),
        defaultStaticRouteName_(std::move(name)) {}
};

/// The place of a route in the saved configuration: by the 16 bytes of its address whatever the
/// family, then the shorter mask, then the lower preference.
class ROVA_EXPORT RouteSortKey {
  LUMO_TYPE(RouteSortKey, "Rova::RouteSortKey")
  LUMO_CTOR(Kesh::IpGenPrefix, prefix)
  LUMO_CTOR(Routing::RoutePreference, preference)
  LUMO_END
  LUMO_VALUE(RouteSortKey)

  RouteSortKey() = default;
  RouteSortKey(const Kesh::IpGenPrefix& prefix, Routing::RoutePreference preference)
      : prefix_(prefix), preference_(preference) {}

  friend ROVA_EXPORT bool operator<(const RouteSortKey& a, const RouteSortKey& b);
};

/// What stands behind a route's prefix in its lines: one text for the route, or one for each via.
class ROVA_EXPORT NexthopInfo {
  LUMO_TYPE(NexthopInfo, "Rova::NexthopInfo")
  LUMO_ATTR(Lumo::String, nexthopCmd)
  LUMO_ORDERED(Routing::Via, Lumo::String, sortedVia, SortedVia)
  LUMO_END
  LUMO_VALUE(NexthopInfo)

  NexthopInfo() = default;
};

} // namespace Rova
