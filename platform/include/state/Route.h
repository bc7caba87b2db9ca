// Routes as the route tables hold them.
#pragma once

#include "kesh/Prefix.h"
#include "lumo/Attribute.h"
#include "lumo/Ptr.h"
#include "state/FecId.h"
#include "state/RouteType.h"
#include "state/Vrf.h"
#include "vanta/VantaMap.h"

#include <cstdint>
#include <memory>

namespace Vanta {

/// A route of one family. A default record stands for "no such route": its FEC is null.
template <class PrefixType, class Type>
struct BasicRoute {
  using Prefix = PrefixType;
  using RouteType = Type;

  PrefixType key;
  std::uint32_t metric = 0;
  std::uint32_t preferenceAndSrcVrf = 0xffffff01; ///< preference in bits 7..0, source VRF above
  Type routeType{};
  Fib::FecId fecId;

  LUMO_TYPE(BasicRoute,
            (std::is_same_v<PrefixType, Kesh::Prefix> ? "Vanta::Fib::Route" : "Vanta::Fib6::Route"))
  LUMO_PUBLIC(key)
  LUMO_PUBLIC(metric)
  LUMO_PUBLIC(preferenceAndSrcVrf)
  LUMO_PUBLIC(routeType)
  LUMO_PUBLIC(fecId)
  LUMO_COMPUTED(std::uint8_t, preference)
  LUMO_COMPUTED(Vrf::VrfIdMap::VrfId, srcVrfId)
  LUMO_END

  /// The preference, which displays show ahead of the metric.
  std::uint8_t preference() const { return static_cast<std::uint8_t>(preferenceAndSrcVrf); }
  void preferenceIs(std::uint8_t preference) {
    preferenceAndSrcVrf = (preferenceAndSrcVrf & 0xffffff00u) | preference;
  }
  /// `VrfId::none` for a route that was not leaked from another VRF.
  Vrf::VrfIdMap::VrfId srcVrfId() const { return Vrf::VrfIdMap::VrfId(preferenceAndSrcVrf >> 8); }
  /// Marks the route as leaked from that VRF; `VrfId::none` takes the mark away.
  void srcVrfIdIs(Vrf::VrfIdMap::VrfId vrf) {
    preferenceAndSrcVrf = (preferenceAndSrcVrf & 0xff) | vrf.value() << 8;
  }

  friend bool operator==(const BasicRoute&, const BasicRoute&) = default;
};

/// The route table of one family and VRF.
template <class Route>
class BasicRouteStatus : public Lumo::PtrInterface {
 public:
  using Table = VantaBase<typename Route::Prefix, Route>;
  explicit BasicRouteStatus(std::unique_ptr<Table> table) : route(std::move(table), "route") {}
  VantaMap<typename Route::Prefix, Route> route;
};

namespace Fib {
using Route = BasicRoute<Kesh::Prefix, Routing::Fib::RouteType>;
using RouteStatus = BasicRouteStatus<Route>;
} // namespace Fib

namespace Fib6 {
using Route = BasicRoute<Kesh::Ip6Prefix, Routing6::Fib::RouteType>;
using RouteStatus = BasicRouteStatus<Route>;
} // namespace Fib6

template <>
const Lumo::TypeRecord Fib::Route::lumoType;
template <>
const Lumo::TypeRecord Fib6::Route::lumoType;

} // namespace Vanta

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Kesh::Prefix, Vanta::Fib::Route>;
extern template class Vanta::VantaMap<Kesh::Ip6Prefix, Vanta::Fib6::Route>;
