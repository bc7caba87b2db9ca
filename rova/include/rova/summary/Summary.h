// The counts of one VRF's routes: by kind, by mask length, and in all.
//
//   Rova::RouteSummary summary(config, routes, neighbours, vrfs, "default");
//   summary.loadInternalStructures();   // the route table
//   summary.loadAttachedRoutes();       // the neighbours, each of them an attached host route
//   summary.routeCountByType("static");
//
// The keys of the kinds are the `summaryWord`s of rova/route/RouteTypeStrings.h, and with them
// stand sums that are no routes of their own: "staticPersistent" and "staticNonPersistent" divide
// "static"; "ospfTotal", "bgpTotal" and "isisTotal" add up their kinds. A count of 0 has no entry.
//
// One template serves both families; core/Family.h names every difference.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Family.h"

#include <cstdint>
#include <ostream>

namespace Rova {

/// The counts of one VRF's routes: `RouteSummary`, `Route6Summary`.
template <class FamilyType>
class ROVA_EXPORT Summary {
 public:
  using Family = FamilyType;

  LUMO_TYPE(Summary, Family::summaryTypeName)
  LUMO_CTOR(Lumo::Ptr<const Routing::ConfigGen>, routingConfig,
            Lumo::orNull) // null: static routes undivided
  LUMO_CTOR(Lumo::Ptr<const typename Family::RouteStatus>, routingStatus)
  LUMO_CTOR(Lumo::Ptr<const Arp::Table::Status>, arpVanta)
  LUMO_CTOR(Lumo::Ptr<const Vrf::VrfIdMap::Status>, vrfIdMap)
  LUMO_CTOR(L3::VrfName, vrfName)
  LUMO_HASHED(Lumo::String, std::uint32_t, routeCountByType, RouteCountByType)
  LUMO_ORDERED(std::uint32_t, std::uint32_t, routeCountByMask, RouteCountByMask)
  LUMO_ATTR(int, totalNumRoutes)
  LUMO_METHOD(loadInternalStructures)
  LUMO_METHOD(loadAttachedRoutes)
  LUMO_END
  LUMO_VALUE(Summary)

  Summary(Lumo::Ptr<const Routing::ConfigGen> routingConfig,
          Lumo::Ptr<const typename Family::RouteStatus> routingStatus,
          Lumo::Ptr<const Arp::Table::Status> arpVanta,
          Lumo::Ptr<const Vrf::VrfIdMap::Status> vrfIdMap, L3::VrfName vrfName);

  Summary() = default;

  /// Whether a mask length has routes.
  bool routeCountByMaskHas(std::uint32_t length) const {
    return routeCountByMask_.find(length) != nullptr;
  }

  /// Adds the routes of the route table to the counts. A second call adds them once more. A table
  /// that detaches over corruption counts as far as it was read; an error leaves the counts as they
  /// were.
  void loadInternalStructures();
  /// Adds the VRF's neighbours to the counts, but for those on management interfaces. A second call
  /// adds them once more. After an error those read so far are counted.
  void loadAttachedRoutes();
};

using RouteSummary = Summary<Ip4Family>;
using Route6Summary = Summary<Ip6Family>;

extern template class Summary<Ip4Family>;
extern template class Summary<Ip6Family>;

} // namespace Rova
