// The static routes of one VRF as lines of the running configuration.
//
//   Rova::StaticRoutesCliSaver saver;
//   const Lumo::String lines = saver.save(config, false, "ip route ", Rova::RovaConsts());
#pragma once

#include "rova/staticroute/StaticRouteTypes.h"

namespace Rova {

/// Writes the static routes of one VRF as lines of the running configuration.
class ROVA_EXPORT StaticRoutesCliSaver {
  LUMO_TYPE(StaticRoutesCliSaver, "Rova::StaticRoutesCliSaver")
  LUMO_ORDERED(RouteSortKey, NexthopInfo, sortedRoute, SortedRoute)
  LUMO_METHOD(save, "config", "saveAll", "routeCmd", "rovaConsts")
  LUMO_END
  LUMO_VALUE(StaticRoutesCliSaver)

  StaticRoutesCliSaver() = default;

  /// The lines, each with `routeCmd` in front, in the order of `RouteSortKey` and then of the vias.
  /// Dynamic routes and forward routes without vias have none. The routes stay in `sortedRoute`, so
  /// that a second call writes them again. The activity lock is given up while the lines are put
  /// together, since that only reads the saver. A via with both a next hop and a VXLAN endpoint
  /// stops the process.
  Lumo::String save(Lumo::Ptr<const Routing::ConfigGen> config, bool saveAll, Lumo::String routeCmd,
                    RovaConsts rovaConsts);

 private:
  void load(const Routing::ConfigGen& config, bool saveAll, const RovaConsts& consts);
  Lumo::String lines(const Lumo::String& routeCmd) const;
};

} // namespace Rova
