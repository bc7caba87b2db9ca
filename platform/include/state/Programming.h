// Which routes are missing from the hardware and from the kernel.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "lumo/Ptr.h"
#include "state/Vrf.h"
#include "vanta/VantaMap.h"

#include <compare>
#include <memory>

namespace Vanta {

/// The key of a route that is not programmed in hardware.
template <class PrefixType>
struct BasicUnprogrammedRouteKey {
  PrefixType prefix;
  Vrf::VrfIdMap::VrfId vrfId;
  friend bool operator==(const BasicUnprogrammedRouteKey&,
                         const BasicUnprogrammedRouteKey&) = default;
  friend bool operator<(const BasicUnprogrammedRouteKey& a, const BasicUnprogrammedRouteKey& b) {
    return a.prefix == b.prefix ? a.vrfId < b.vrfId : a.prefix < b.prefix;
  }
};

/// Presence of the key is what counts.
template <class PrefixType>
struct BasicUnprogrammedRoute {
  BasicUnprogrammedRouteKey<PrefixType> key;
};

/// How many routes of a VRF are not programmed in hardware.
struct UnprogrammedRouteCount {
  Vrf::VrfIdMap::VrfId key{Vrf::VrfIdMap::VrfId::none};
  std::uint32_t count = 0;
};

/// Which routes the hardware lacks, and how many of each VRF.
template <class PrefixType>
class BasicUnprogrammedRouteStatus : public Lumo::PtrInterface {
 public:
  using Key = BasicUnprogrammedRouteKey<PrefixType>;
  using Routes = VantaBase<Key, BasicUnprogrammedRoute<PrefixType>>;
  using Counts = VantaBase<Vrf::VrfIdMap::VrfId, UnprogrammedRouteCount>;
  BasicUnprogrammedRouteStatus(std::unique_ptr<Routes> routes, std::unique_ptr<Counts> counts)
      : unprogrammedRoute(std::move(routes), "unprogrammedRoute"),
        unprogrammedRouteCount(std::move(counts), "unprogrammedRouteCount") {}
  VantaMap<Key, BasicUnprogrammedRoute<PrefixType>> unprogrammedRoute;
  VantaMap<Vrf::VrfIdMap::VrfId, UnprogrammedRouteCount> unprogrammedRouteCount;
};

namespace Fib {
using UnprogrammedRouteKey = BasicUnprogrammedRouteKey<Kesh::Prefix>;
using UnprogrammedRoute = BasicUnprogrammedRoute<Kesh::Prefix>;
using UnprogrammedRouteStatus = BasicUnprogrammedRouteStatus<Kesh::Prefix>;
} // namespace Fib

namespace Fib6 {
using UnprogrammedRouteKey = BasicUnprogrammedRouteKey<Kesh::Ip6Prefix>;
using UnprogrammedRoute = BasicUnprogrammedRoute<Kesh::Ip6Prefix>;
using UnprogrammedRouteStatus = BasicUnprogrammedRouteStatus<Kesh::Ip6Prefix>;
} // namespace Fib6

namespace KernelUnprogrammedRoute {

/// A route that the kernel refused, with the error number of the refusal. Presence of the key is
/// what counts: the default record, which a lookup gives for a route that the kernel has, has the
/// key of no route and so differs from every record of a table.
template <class PrefixType>
struct BasicError {
  PrefixType key = PrefixType::nullPrefix();
  Kesh::IntfId intfId;
  std::int32_t error = 0; ///< 0: not known
  friend bool operator==(const BasicError&, const BasicError&) = default;
};
using Error = BasicError<Kesh::Prefix>;
using Error6 = BasicError<Kesh::Ip6Prefix>;

/// The routes of both families that are missing from the kernel.
class UnprogrammedRoute : public Lumo::PtrInterface {
 public:
  UnprogrammedRoute(std::unique_ptr<VantaBase<Kesh::Prefix, Error>> errors,
                    std::unique_ptr<VantaBase<Kesh::Ip6Prefix, Error6>> errors6)
      : error(std::move(errors), "error"), error6(std::move(errors6), "error6") {}
  VantaMap<Kesh::Prefix, Error> error;
  VantaMap<Kesh::Ip6Prefix, Error6> error6;
};

} // namespace KernelUnprogrammedRoute

} // namespace Vanta

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Vanta::Fib::UnprogrammedRouteKey,
                                      Vanta::Fib::UnprogrammedRoute>;
extern template class Vanta::VantaMap<Vanta::Fib6::UnprogrammedRouteKey,
                                      Vanta::Fib6::UnprogrammedRoute>;
extern template class Vanta::VantaMap<Vrf::VrfIdMap::VrfId, Vanta::UnprogrammedRouteCount>;
extern template class Vanta::VantaMap<Kesh::Prefix, Vanta::KernelUnprogrammedRoute::Error>;
extern template class Vanta::VantaMap<Kesh::Ip6Prefix, Vanta::KernelUnprogrammedRoute::Error6>;
