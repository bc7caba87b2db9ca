// Routes that are sure to show alike. Of two states most do, and need not be printed to know it.
#pragma once

#include "rova/CliSupport.h"
#include "rova/core/DirectlyConnected.h"

#include <vector>

namespace command {

/// The routes on one FEC show alike behind their prefixes when they are of one type, preference and
/// metric: but for those to one address, which may be that of a next hop, and for what is told by
/// prefix, as marks of what is not programmed. So where two routes of two listings have shown
/// alike, all others on these two FECs do.
template <class Family>
class AlikeRoutes {
 public:
  using Sorter = Rova::Sorter<Family>;
  using Route = typename Family::Route;

  /// Either may be null.
  AlikeRoutes(const Sorter* from, const Sorter* to)
      : mayKnow_(from && to && !hasMarks(*from) && !hasMarks(*to)) {
    if (mayKnow_) pairs_.resize(places);
  }

  /// Whether two routes of one prefix are sure to show alike.
  bool has(const Route& from, const Route& to) const {
    return isSuited(from, to) && pairs_[placeOf(from, to)] == pairOf(from, to);
  }
  /// Tells that they have shown alike.
  void enter(const Route& from, const Route& to) {
    if (isSuited(from, to)) pairs_[placeOf(from, to)] = pairOf(from, to);
  }

 private:
  struct Pair {
    Vanta::Fib::FecId from, to;
    decltype(Route::routeType) type{};
    friend bool operator==(const Pair&, const Pair&) = default;
  };
  /// A pair may take the place of another one, which is then looked at again.
  static constexpr std::size_t places = 1 << 16;

  static bool hasMarks(const Sorter& sorter) {
    const auto isAny = [](const auto& table) {
      return static_cast<bool>(typename std::remove_cvref_t<decltype(table)>::IteratorConst(table));
    };
    const auto& hardware = sorter.unprogrammedRouteStatus();
    const auto& kernel = sorter.kernelUnprogrammedRoute();
    return (hardware && isAny(hardware->unprogrammedRoute)) ||
           (kernel && isAny((*kernel).*Family::kernelErrors));
  }

  bool isSuited(const Route& from, const Route& to) const {
    return mayKnow_ && from.routeType == to.routeType && from.metric == to.metric &&
           from.preferenceAndSrcVrf == to.preferenceAndSrcVrf && isPlain(from) &&
           !from.fecId.isNull();
  }
  /// Not leaked from another VRF, and neither to one address nor to the device itself.
  static bool isPlain(const Route& route) {
    return route.srcVrfId() == Vrf::VrfIdMap::VrfId(Vrf::VrfIdMap::VrfId::none) &&
           !Rova::isReceive(route.routeType) && !Rova::isHostRoute(Kesh::IpGenPrefix(route.key));
  }

  static Pair pairOf(const Route& from, const Route& to) {
    return {from.fecId, to.fecId, from.routeType};
  }
  static std::size_t placeOf(const Route& from, const Route& to) {
    return (Kesh::mixHash(from.fecId.value()) + 3 * Kesh::mixHash(to.fecId.value())) % places;
  }

  bool mayKnow_;
  std::vector<Pair> pairs_;
};

} // namespace command
