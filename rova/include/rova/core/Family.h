// The two address families, and every difference between them that the displays keep. Code asks a
// family for the property; it never asks which family it has.
#pragma once

#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"
#include "state/DeviceState.h"

namespace Rova {

struct ROVA_EXPORT Ip4Family {
  using Address = Kesh::IpAddr;
  using Prefix = Kesh::Prefix;
  using AddrWithMask = Kesh::IpAddrWithMask;
  using RouteType = Routing::Fib::RouteType;
  using Route = Vanta::Fib::Route;
  using RouteStatus = Vanta::Fib::RouteStatus;
  using Fec = Vanta::Fib::Fec;
  using IpStatus = Ip::Status;
  using HardwareStatus = Routing::Hardware::Status;
  using UnprogrammedRouteStatus = Vanta::Fib::UnprogrammedRouteStatus;
  using KernelError = Vanta::KernelUnprogrammedRoute::Error;

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

  static const auto& kernelErrors(const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute& status) {
    return status.error;
  }

  /// The neighbours of the family, those of all VRFs.
  static const auto& neighbors(const Arp::Table::Status& status) { return status.arpEntry; }
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
  static constexpr bool isBgpKind(RouteType type) {
    return type == RouteType::bgpInternal || type == RouteType::bgpExternal;
  }
};

struct ROVA_EXPORT Ip6Family {
  using Address = Kesh::Ip6Addr;
  using Prefix = Kesh::Ip6Prefix;
  using AddrWithMask = Kesh::Ip6AddrWithMask;
  using RouteType = Routing6::Fib::RouteType;
  using Route = Vanta::Fib6::Route;
  using RouteStatus = Vanta::Fib6::RouteStatus;
  using Fec = Vanta::Fib6::Fec;
  using IpStatus = Ip6::Status;
  using HardwareStatus = Routing6::Hardware::Status;
  using UnprogrammedRouteStatus = Vanta::Fib6::UnprogrammedRouteStatus;
  using KernelError = Vanta::KernelUnprogrammedRoute::Error6;

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

  static const auto& kernelErrors(const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute& status) {
    return status.error6;
  }

  static const auto& neighbors(const Arp::Table::Status& status) { return status.neighborEntry; }
  static constexpr bool hostGoesToCpu(RouteType type) {
    return type == RouteType::receive || type == RouteType::receiveAll;
  }
  static constexpr bool hostIsOnLink(RouteType type) { return type == RouteType::attached; }

  static constexpr bool isOspfKind(RouteType) { return false; }
  static constexpr bool isBgpKind(RouteType) { return false; }
};

} // namespace Rova
