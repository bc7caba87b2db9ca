// Static routes: as they are configured, and as agents hand them to routing.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Mpls.h"
#include "kesh/Prefix.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "state/RouteType.h"
#include "state/Vrf.h"

#include <cstdint>

namespace Routing {

using RoutePreference = std::uint8_t;

struct RouteKey {
  Kesh::IpGenPrefix prefix;
  RoutePreference preference = 1;
  std::size_t hash() const { return prefix.hash() ^ Kesh::mixHash(preference); }
  friend bool operator==(const RouteKey&, const RouteKey&) = default;
  friend bool operator<(const RouteKey& a, const RouteKey& b) {
    return a.prefix == b.prefix ? a.preference < b.preference : a.prefix < b.prefix;
  }
};

/// One configured next hop.
struct Via {
  Kesh::IpGenAddr hop;
  Kesh::IntfId intfId;
  Kesh::MplsLabel mplsLabel;
  std::uint32_t vni = 0;
  Kesh::IpGenAddr vtepAddr;
  Kesh::EthAddr routerMac;
  std::size_t hash() const { return hop.v6Addr().hash() ^ intfId.hash(); }
  friend bool operator==(const Via&, const Via&) = default;
};

class Route : public Lumo::PtrInterface {
 public:
  explicit Route(const RouteKey& routeKey) : key(routeKey) {}
  const RouteKey key;
  RouteType routeType = RouteType::forward;
  std::uint32_t tag = 0;
  bool dynamic = false;
  Lumo::HashMap2018<Via, bool> via;
  Lumo::HashMap2018<Via, Lumo::String> viaNextHopName;
  Lumo::String dropNextHopName;
  Lumo::String nexthopGroupName;
  Lumo::HashMap2018<Via, bool> bfdTracked;
  L3::VrfName leakVrf;

  /// Deletes the member at which the cursor stands; the walk goes on with `next()`.
  void viaDel(const decltype(via)::Cursor& at) { via.erase(at.key()); }
  void viaNextHopNameDel(const decltype(viaNextHopName)::Cursor& at) {
    viaNextHopName.erase(at.key());
  }
};

class RouteList : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<RouteKey, Lumo::Ptr<Route>> route;

  /// Deletes the route at which the cursor stands; the walk goes on with `next()`.
  void routeDel(const decltype(route)::Cursor& at) { route.erase(at.key()); }
};

/// The configured routes of one family and VRF, and whether routing is on there.
class ConfigGen : public RouteList {
 public:
  bool routing = true;
};

/// The routes that one agent, such as the one of the configuration, hands to routing.
class RouteInput : public RouteList {};

} // namespace Routing
