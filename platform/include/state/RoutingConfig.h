// Static routes: as they are configured, and as agents hand them to routing.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Mpls.h"
#include "kesh/Prefix.h"
#include "lumo/Attribute.h"
#include "lumo/Ptr.h"
#include "state/RouteType.h"
#include "state/Vrf.h"

#include <compare>
#include <cstdint>
#include <ostream>
#include <string>
#include <tuple>

namespace Vxlan {

/// A VXLAN network identifier (RFC 7348), 24 bits.
class VniExtOrNone {
 public:
  constexpr explicit VniExtOrNone(std::uint32_t vni) : vni_(vni) {}
  /// The number, or with `dotted` its three bytes with dots between them.
  Lumo::String stringValue(bool dotted) const {
    if (!dotted) return std::to_string(vni_);
    return std::to_string(vni_ >> 16) + "." + std::to_string(vni_ >> 8 & 0xff) + "." +
           std::to_string(vni_ & 0xff);
  }

 private:
  std::uint32_t vni_;
};

} // namespace Vxlan

namespace Routing {

/// The administrative distance of a route, 0 to 255: the lowest wins. It reads and writes as a
/// number; it is a type of its own so that access by name tells it from one. Its default, 1, stands
/// here alone: a caller by name who leaves out an argument gives the default of the type, which has
/// to be that of the attribute.
class RoutePreference {
 public:
  constexpr RoutePreference(std::uint8_t value = 1) : value_(value) {}
  constexpr operator std::uint8_t() const { return value_; }
  constexpr std::uint8_t value() const { return value_; }
  friend std::ostream& operator<<(std::ostream& out, RoutePreference preference) {
    return out << unsigned{preference.value_};
  }

 private:
  std::uint8_t value_;
};

/// A configured route's place: its prefix, and its preference among those of one prefix.
struct RouteKey {
  Kesh::IpGenPrefix prefix;
  RoutePreference preference;

  LUMO_TYPE(RouteKey, "Routing::RouteKey")
  LUMO_PUBLIC(prefix)
  LUMO_PUBLIC(preference)
  LUMO_END
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

  LUMO_TYPE(Via, "Routing::Via")
  LUMO_PUBLIC(hop)
  LUMO_PUBLIC(intfId)
  LUMO_PUBLIC(mplsLabel)
  LUMO_PUBLIC(vni)
  LUMO_PUBLIC(vtepAddr)
  LUMO_PUBLIC(routerMac)
  LUMO_END

  std::size_t hash() const { return hop.v6Addr().hash() ^ intfId.hash(); }
  friend bool operator==(const Via&, const Via&) = default;
  /// By interface, then next hop, then all that is left.
  friend bool operator<(const Via& a, const Via& b) {
    const auto key = [](const Via& via) {
      return std::tie(via.intfId, via.hop, via.mplsLabel, via.vtepAddr, via.vni, via.routerMac);
    };
    return key(a) < key(b);
  }
};

/// A configured route with its next hops, and what goes with each of them.
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

  LUMO_TYPE(Route, "Routing::Route")
  LUMO_PUBLIC_CONST(RouteKey, key)
  LUMO_PUBLIC(routeType)
  LUMO_PUBLIC(tag)
  LUMO_PUBLIC(dynamic)
  LUMO_PUBLIC_HASHED(via)
  LUMO_PUBLIC_HASHED(viaNextHopName)
  LUMO_PUBLIC(dropNextHopName)
  LUMO_PUBLIC(nexthopGroupName)
  LUMO_PUBLIC_HASHED(bfdTracked)
  LUMO_PUBLIC(leakVrf)
  LUMO_END

  /// Deletes the member at which the cursor stands; the walk goes on with `next()`.
  void viaDel(const decltype(via)::Cursor& at) { via.erase(at.key()); }
  /// The same for the name of a next hop.
  void viaNextHopNameDel(const decltype(viaNextHopName)::Cursor& at) {
    viaNextHopName.erase(at.key());
  }
};

/// Configured routes by their places.
class RouteList : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<RouteKey, Lumo::Ptr<Route>> route;

  LUMO_TYPE(RouteList, "Routing::RouteList")
  LUMO_PUBLIC_HASHED(route)
  LUMO_END

  /// Deletes the route at which the cursor stands; the walk goes on with `next()`.
  void routeDel(const decltype(route)::Cursor& at) { route.erase(at.key()); }
};

/// The configured routes of one family and VRF, and whether routing is on there.
class ConfigGen : public RouteList {
 public:
  bool routing = true;

  LUMO_TYPE(ConfigGen, "Routing::ConfigGen")
  LUMO_BASE(RouteList)
  LUMO_PUBLIC_HASHED(route)
  LUMO_PUBLIC(routing)
  LUMO_END
};

/// The routes that one agent, such as the one of the configuration, hands to routing.
class RouteInput : public RouteList {
  LUMO_TYPE(RouteInput, "Routing::RouteInput")
  LUMO_BASE(RouteList)
  LUMO_PUBLIC_HASHED(route)
  LUMO_END
};

} // namespace Routing
