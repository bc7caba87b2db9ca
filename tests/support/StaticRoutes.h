// Configured routes in a few words:
//
//   auto& route = enterRoute(*config, "10.0.0.0/8", 1, Routing::RouteType::forward);
//   addVias(route, {{.interface = "Ethernet1", .hop = "10.0.0.1"}, {.hop = "10.0.0.2"}});
#pragma once

#include "support/Families.h"

#include <initializer_list>
#include <optional>

namespace support {

inline Kesh::IpGenPrefix prefix(const std::string& text) {
  const Kesh::IpGenPrefix parsed{Lumo::String(text)};
  if (parsed.stringValue().str() != text) throw std::invalid_argument("bad prefix: " + text);
  return parsed;
}

/// The parts of a via as texts; an empty one is not set.
struct ViaParts {
  const char* interface = "";
  const char* hop = "";
  std::uint32_t label = Kesh::MplsLabel::null;
  const char* vtep = "";
  std::uint32_t vni = 0;
  const char* routerMac = "00:00:00:00:00:00";
};

inline Routing::Via viaOf(const ViaParts& parts) {
  Routing::Via via;
  via.intfId = intf(parts.interface);
  if (*parts.hop) via.hop = addr(parts.hop);
  via.mplsLabel = Kesh::MplsLabel(parts.label);
  if (*parts.vtep) via.vtepAddr = addr(parts.vtep);
  via.vni = parts.vni;
  via.routerMac = parsed<Kesh::EthAddr>(parts.routerMac);
  return via;
}

inline Routing::Route& enterRoute(Routing::RouteList& list, const Kesh::IpGenPrefix& to,
                                  std::uint8_t preference, Routing::RouteType type) {
  const Routing::RouteKey key{to, preference};
  const auto route = Lumo::newEntity<Routing::Route>(key);
  route->routeType = type;
  list.route.insertOrAssign(key, route);
  return *route;
}
inline Routing::Route& enterRoute(Routing::RouteList& list, const char* to,
                                  std::uint8_t preference = 1,
                                  Routing::RouteType type = Routing::RouteType::forward) {
  return enterRoute(list, prefix(to), preference, type);
}

inline void addVias(Routing::Route& route, std::initializer_list<ViaParts> vias) {
  for (const auto& parts : vias) route.via.insertOrAssign(viaOf(parts), true);
}

} // namespace support
