#include "rova/check/ClearInterfaceRoutes.h"

namespace Rova {

LUMO_DEFINE_TYPE(ClearIntfRoutesAndViasHelper);

namespace {

/// Deletes the members of a route's collection whose via leads through the interface. A name that
/// makes no identifier fails at the first via with an interface, and nowhere without one.
/// \return whether there was one.
template <class Map, class Delete>
bool clear(const Map& vias, const Lumo::String& intfName, Delete&& remove) {
  bool changed = false;
  for (auto at = vias.cursor(); at; at.next()) {
    if (!at.key().intfId || !(at.key().intfId == Kesh::IntfId(intfName))) continue;
    remove(at);
    changed = true;
  }
  return changed;
}

bool clearVias(Routing::Route& route, const Lumo::String& intfName) {
  const bool vias = clear(route.via, intfName, [&](const auto& at) { route.viaDel(at); });
  const bool names =
      clear(route.viaNextHopName, intfName, [&](const auto& at) { route.viaNextHopNameDel(at); });
  return vias || names;
}

} // namespace

void ClearIntfRoutesAndViasHelper::clearIntfRoutesAndViasHelper(
    Lumo::Ptr<Routing::ConfigGen> config, Lumo::String intfName) const {
  for (auto at = config->route.cursor(); at; at.next()) {
    const Lumo::Ptr<Routing::Route> route = *at.value();
    const bool changed = clearVias(*route, intfName);
    if (changed && route->via.empty() && route->routeType != Routing::RouteType::drop) {
      config->routeDel(at);
    }
  }
}

} // namespace Rova
