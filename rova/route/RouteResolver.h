// What the line of a route shows, worked out of its FEC, whoever wants it: to print it or to choose
// by it.
#pragma once

#include "FecLook.h"
#include "rova/fec/Policies.h"
#include "rova/route/Listing.h"
#include "rova/route/RouteLine.h"
#include "rova/route/Selection.h"

namespace Rova {

/// Looks at routes of a loaded sorter one after the other.
template <class Family>
class RouteResolver {
 public:
  using Route = typename Family::Route;

  explicit RouteResolver(Sorter<Family>& sorter)
      : sorter_(sorter),
        forwarding_(sorter.forwarding()),
        missesHardware_(hasUnprogrammedRoutes(sorter)),
        missesKernel_(kernelUnprogrammedRoutes(sorter)) {}

  FecLook lookAt(const Route& route) const {
    return Rova::lookAt<Family>(forwarding_, route.fecId);
  }
  /// What stands on the line ahead of the vias.
  RouteLine lineOf(const Route& route);
  /// Whether the line goes on as those of other routes on the FEC do.
  bool sharesVias(const Route& route, const RouteLine& line, const FecLook& look) const;
  /// Works out what the line shows of its FEC, which was captured; false if the query or the tunnel
  /// table leaves it out. What it points to is valid until the next call.
  bool resolve(const Route& route, const FecLook& look, RouteLine& line);

  /// Whether lines have the form of IPv6. Asked for each line: following a tunnel can capture the
  /// first FEC of the IPv6 table.
  bool hasV6Nexthop() const;
  /// Whether any route is missing from the kernel.
  bool missesKernel() const { return missesKernel_; }

 private:
  using VrfId = Vrf::VrfIdMap::VrfId;

  Kesh::IntfId ownInterface(const Route& route) const;
  const char* srcVrfName(VrfId vrf);
  bool resolveDirectly(const Route& route, const CachedFec& fec, RouteLine& line);
  void buildGroups(CachedFec& fec);

  Sorter<Family>& sorter_;
  const Forwarding forwarding_;
  // Whether there is a route to ask about: most devices have none.
  const bool missesHardware_, missesKernel_;
  bool groupNamesBuilt_ = false;
  VrfId lastSrcVrf_{VrfId::none};
  Lumo::String lastSrcVrfName_;
  // What the line in hand shows of its FEC.
  DirectViaText viaText_;
  PolicyInfoSet policies_;
  Lumo::String ownInterfaceText_, ownDescription_;
};

extern template class RouteResolver<Ip4Family>;
extern template class RouteResolver<Ip6Family>;

} // namespace Rova
