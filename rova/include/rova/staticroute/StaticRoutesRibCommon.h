// The static routes that agents hand to routing, as a display.
#pragma once

#include "rova/staticroute/StaticRouteTypes.h"

namespace Rova {

/// Shows the routes of the inputs in `routeInputConf`, by prefix and preference.
class ROVA_EXPORT StaticRoutesRibCommon {
  LUMO_TYPE(StaticRoutesRibCommon, "Rova::StaticRoutesRibCommon")
  LUMO_ORDERED_ENTITIES(Routing::RouteKey, const Routing::Route, sortedRoute, SortedRoute, key)
  LUMO_CTOR(Lumo::Ptr<Interface::AllIntfConfigDir>, allIntfConfig)
  LUMO_ATTR(bool, dynamic)      // shows the routes with this value of theirs
  LUMO_ATTR(std::uint32_t, fd)  // where to
  LUMO_ATTR(std::uint32_t, fmt) // 1 text, 2 model
  LUMO_ATTR(std::uint32_t, tag) // shows the routes with this tag; 0 for all
  LUMO_HASHED(Lumo::Ptr<Routing::RouteInput>, bool, routeInputConf, RouteInputConf)
  LUMO_METHOD(legend)
  LUMO_METHOD(dump, "rovaConsts")
  LUMO_END
  LUMO_VALUE(StaticRoutesRibCommon)

  StaticRoutesRibCommon() = default;
  explicit StaticRoutesRibCommon(Lumo::Ptr<Interface::AllIntfConfigDir> config)
      : allIntfConfig_(std::move(config)) {}

  Lumo::String legend() const;
  /// Takes the routes of the inputs in, the later one of two with one key, and prints those that
  /// the filters leave: a fragment in the model, the members of an object without its braces. An
  /// interrupt is reported on standard output; errors of writing pass up. A route type that does
  /// not exist stops the process.
  void dump(RovaConsts rovaConsts);
};

} // namespace Rova
