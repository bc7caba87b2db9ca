// The routes of a listing: each as the line that it shows, whatever stands around it.
#pragma once

#include "FecLook.h"
#include "rova/fec/Policies.h"
#include "rova/route/Listing.h"
#include "rova/route/RouteLine.h"
#include "rova/route/Selection.h"

namespace Rova {

/// Prints routes of a loaded sorter; what they share is worked out once here.
template <class Family>
class RoutePrinter {
 public:
  using Route = typename Family::Route;

  RoutePrinter(Sorter<Family>& sorter, scrivo::Printer& printer)
      : sorter_(sorter),
        printer_(printer),
        forwarding_(sorter.forwarding()),
        missesHardware_(hasUnprogrammedRoutes(sorter)),
        missesKernel_(kernelUnprogrammedRoutes(sorter)),
        lines_(printer, {sorter.detail(), sorter.degradeNhgModel()}) {}

  /// Prints one route, or nothing where the listing leaves it out.
  void print(const Route& route);
  /// Prints the selected routes, and writes the output out as it fills.
  void printSelected();

  /// Whether any route is missing from the kernel.
  bool missesKernel() const { return missesKernel_; }

 private:
  using VrfId = Vrf::VrfIdMap::VrfId;

  Kesh::IntfId ownInterface(const Route& route) const;
  bool hasV6Nexthop() const;
  RouteLine lineOf(const Route& route);
  const char* srcVrfName(VrfId vrf);
  void printMissingFec(const Route& route);
  bool sharesVias(const Route& route, const RouteLine& line, const FecLook& look) const;
  bool resolve(const Route& route, const FecLook& look, RouteLine& line);
  bool resolveDirectly(const Route& route, const CachedFec& fec, RouteLine& line);
  void buildGroups(CachedFec& fec);

  Sorter<Family>& sorter_;
  scrivo::Printer& printer_;
  const Forwarding forwarding_;
  // Whether there is a route to ask about: most devices have none.
  const bool missesHardware_, missesKernel_;
  RouteLinePrinter lines_;
  FecLooks<FecLook> looks_;
  bool groupNamesBuilt_ = false;
  VrfId lastSrcVrf_{VrfId::none};
  Lumo::String lastSrcVrfName_;
  // What the line in print shows of its FEC.
  DirectViaText viaText_;
  PolicyInfoSet policies_;
  Lumo::String ownInterfaceText_, ownDescription_;
};

extern template class RoutePrinter<Ip4Family>;
extern template class RoutePrinter<Ip6Family>;

} // namespace Rova
