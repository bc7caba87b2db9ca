// The two address families with every difference between them that the displays keep; their types
// and the places of their state are those of state/Families.h. Code asks a family for the property;
// it never asks which family it has.
#pragma once

#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"
#include "state/Families.h"

namespace Rova {

/// What the displays of IPv4 differ in from those of IPv6.
struct ROVA_EXPORT Ip4Family : state::Ip4 {
  /// The mask length of a single address; the names of the types; and the type of a neighbour's
  /// route:
  static constexpr int hostLength = Prefix::maxLength;
  static constexpr const char* sorterName = "RouteSorter";
  static constexpr const char* sorterTypeName = "Rova::RouteSorter";
  static constexpr const char* summaryTypeName = "Rova::RouteSummary";
  static constexpr RouteType attachedType = RouteType::attached;
  /// A summary counts no route of a type above.
  static constexpr RouteType lastRouteType = RouteType::reserved;

  /// A listing switches to the lines of IPv6 once a FEC of the IPv6 table was captured for it.
  static constexpr bool remembersV6Nexthops = true;
  /// A query by interface is one that has an interface; IPv6 has a flag of its own for it.
  static constexpr bool hasIntfFlag = false;
  /// A sorter can be given the VRF numbers by name.
  static constexpr bool hasReverseMapper = true;
  /// A handler can ask for the vias of a prefix.
  static constexpr bool answersViasForPrefix = true;
  /// Addresses of other VRFs' interfaces are not this VRF's.
  static constexpr bool addressesAreOfTheVrf = true;
  /// The listing tells the gateway of last resort and moves the default route up to it.
  static constexpr bool printsGatewayOfLastResort = true;
  /// The listing of IPv6 opens with the number of entries, or with what was asked for.
  static constexpr bool printsEntryCount = false;
  /// Routes that the printing stage will refuse are not foretold.
  static constexpr bool countsFilteredRoutes = false;
  /// A route whose FEC was not captured gets a line that says so; in IPv6 it is a fault.
  static constexpr bool toleratesMissingFec = true;
  /// A single EVPN via is printed straight from the FEC; in IPv6 it gets a row.
  static constexpr bool printsSingleEvpnViaDirectly = true;
  /// Rows keep the next hop of a directly connected via; IPv6 leaves it out to tell such rows.
  static constexpr bool hidesConnectedNexthops = false;

  /// The host table shows these types as going to the processor, whatever their FEC holds: IPv4
  /// receives broadcasts too, where the same number of IPv6 is the attached type.
  static constexpr bool hostGoesToCpu(RouteType type) {
    return type >= RouteType::receive && type <= RouteType::receiveBroadcast;
  }
  /// A via on an interface without next hop goes to the processor in the host table, but for these
  /// types: a neighbour is reached on the link, and a directed broadcast, which IPv6 does not
  /// have, is sent out there.
  static constexpr bool hostIsOnLink(RouteType type) {
    return type == RouteType::receiveDirectedBroadcast || type == RouteType::attached;
  }

  /// The types that a summary adds up as OSPF and as BGP. IPv6 has one type of each, which the
  /// summary counts under the key of the sum itself.
  static constexpr bool isOspfKind(RouteType type) {
    return type >= RouteType::ospfIntraArea && type <= RouteType::ospfNssaExternal2;
  }
  /// The types that a summary adds up as BGP.
  static constexpr bool isBgpKind(RouteType type) {
    return type == RouteType::bgpInternal || type == RouteType::bgpExternal;
  }
};

/// The same of IPv6; what each constant says stands at its twin.
struct ROVA_EXPORT Ip6Family : state::Ip6 {
  static constexpr int hostLength = Prefix::maxLength;
  static constexpr const char* sorterName = "Route6Sorter";
  static constexpr const char* sorterTypeName = "Rova::Route6Sorter";
  static constexpr const char* summaryTypeName = "Rova::Route6Summary";
  static constexpr RouteType attachedType = RouteType::attached;
  static constexpr RouteType lastRouteType = RouteType::reserved;

  static constexpr bool remembersV6Nexthops = false;
  static constexpr bool hasIntfFlag = true;
  static constexpr bool hasReverseMapper = false;
  static constexpr bool answersViasForPrefix = false;
  static constexpr bool addressesAreOfTheVrf = false;
  static constexpr bool printsGatewayOfLastResort = false;
  static constexpr bool printsEntryCount = true;
  static constexpr bool countsFilteredRoutes = true;
  static constexpr bool toleratesMissingFec = false;
  static constexpr bool printsSingleEvpnViaDirectly = false;
  static constexpr bool hidesConnectedNexthops = true;

  static constexpr bool hostGoesToCpu(RouteType type) {
    return type == RouteType::receive || type == RouteType::receiveAll;
  }
  static constexpr bool hostIsOnLink(RouteType type) { return type == RouteType::attached; }

  static constexpr bool isOspfKind(RouteType) { return false; }
  static constexpr bool isBgpKind(RouteType) { return false; }
};

} // namespace Rova
