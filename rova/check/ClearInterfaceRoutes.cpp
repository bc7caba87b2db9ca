#include "rova/check/ClearInterfaceRoutes.h"

namespace Rova {

LUMO_DEFINE_TYPE(ClearIntfRoutesAndViasHelper);

namespace {

/// Deletes the members of a route's collection whose via leads through the interface.
/// \return whether there was one.
template <class Map, class Delete>
bool clear(const Map& vias, const Kesh::IntfId& interface, Delete&& remove) {
  bool changed = false;
  for (auto at = vias.cursor(); at; at.next()) {
    if (!at.key().intfId || !(at.key().intfId == interface)) continue;
    remove(at);
    changed = true;
  }
  return changed;
}

bool clearVias(Routing::Route& route, const Kesh::IntfId& interface) {
  const bool vias = clear(route.via, interface, [&](const auto& at) { route.viaDel(at); });
  const bool names =
      clear(route.viaNextHopName, interface, [&](const auto& at) { route.viaNextHopNameDel(at); });
  return vias || names;
}

} // namespace

void ClearIntfRoutesAndViasHelper::clearIntfRoutesAndViasHelper(
    Lumo::Ptr<Routing::ConfigGen> config, Lumo::String intfName) const {
  const Kesh::IntfId interface(intfName);
  for (auto at = config->route.cursor(); at; at.next()) {
    const Lumo::Ptr<Routing::Route> route = *at.value();
    const bool changed = clearVias(*route, interface);
    if (changed && route->via.empty() && route->routeType != Routing::RouteType::drop) {
      config->routeDel(at);
    }
  }
}

std::ostream& operator<<(std::ostream& out, const ClearIntfRoutesAndViasHelper& helper) {
  return out << Lumo::valueToStrep(helper);
}

} // namespace Rova
