// The object behind one route listing of one VRF.
//
//   auto sorter = Rova::routeSorterFactory(...);   // loads: selection and FEC capture
//   sorter->printRoutes(fd, format);               // renders, once
//
// With `host` set, the listing is that of the host route table, and the query's other parts but the
// VRF do not matter.
//
// One template serves both families; core/Family.h names every difference.
#pragma once

#include "rova/core/Family.h"
#include "rova/fec/CachedFec.h"
#include "rova/route/RouteTypeStrings.h"

#include <cstdint>
#include <memory>
#include <tuple>

namespace Rova {

struct Forwarding;

/// Chooses among the routes of a listing: those alone show and count that it takes.
template <class Route>
class RouteFilter {
 public:
  RouteFilter() = default;
  virtual ~RouteFilter() = default;
  RouteFilter(const RouteFilter&) = delete;
  RouteFilter& operator=(const RouteFilter&) = delete;

  /// Whether a route shows.
  virtual bool takes(const Route& route) = 0;
  /// Told some routes ahead, so that what is known of a route can come from memory meanwhile.
  virtual void expect(const Route&) {}
};

/// One listing of one VRF: loaded when it is made, rendered once. `RouteSorter`, `Route6Sorter`.
template <class FamilyType>
class ROVA_EXPORT Sorter : public Lumo::PtrInterface {
 public:
  using Family = FamilyType;
  using Prefix = typename Family::Prefix;
  using Route = typename Family::Route;

  LUMO_TYPE(Sorter, Family::sorterTypeName)
  LUMO_CTOR(Lumo::Ptr<const Routing::ConfigGen>, routingConfig, Lumo::orNull) // null: no routing
  LUMO_CTOR(Lumo::Ptr<const typename Family::RouteStatus>, routingStatus)
  LUMO_CTOR(Lumo::Ptr<const Vanta::Fib::ForwardingStatus>, forwardingStatus)
  LUMO_CTOR(Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>, forwarding6Status)
  LUMO_CTOR(Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>, tunnelFib)
  LUMO_CTOR(Lumo::Ptr<const Arp::Table::Status>, arpVanta)
  LUMO_CTOR(Lumo::Ptr<const Vrf::VrfIdMap::Status>, vrfIdMap)
  LUMO_ATTR_IF(Family::hasReverseMapper, Lumo::Ptr<const Vrf::VrfIdMap::ReverseMapper>,
               reverseMapper)
  LUMO_CTOR(Lumo::Ptr<const Interface::AllIntfConfigDir>, allIntfConfig)
  LUMO_CTOR(Lumo::Ptr<const typename Family::IpStatus>, ipStatus)
  LUMO_CTOR(Lumo::Ptr<const typename Family::HardwareStatus>, routingHardwareStatus)
  LUMO_CTOR(Lumo::Ptr<const NexthopGroup::EntryStatus>, nhEntryStatus)
  LUMO_CTOR(Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>,
            kernelUnprogrammedRoute)
  LUMO_CTOR(Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>, evpnVxlanTunnelTable)
  LUMO_CTOR(Lumo::Ptr<const Lumo::Dir>, tunnelTableDir)
  LUMO_CTOR(Prefix, prefix) // the null prefix asks for the whole table
  LUMO_CTOR(Lumo::Ptr<const Interface::IntfStatus>, intfStatus,
            Lumo::orNull)           // null: every interface
  LUMO_CTOR(Lumo::String, protocol) // a protocol code; empty takes every route
  LUMO_CTOR(bool, detail)
  LUMO_CTOR(bool, longerPrefixes)
  LUMO_CTOR(L3::VrfName, vrfName)
  LUMO_CTOR(Vrf::VrfIdMap::VrfId, vrfId)
  LUMO_CTOR(bool, host)
  LUMO_CTOR(int, fd)
  LUMO_CTOR(double, quantify) // when the command began, in seconds; 0.0 prints no timing lines
  LUMO_CTOR(bool, originalMask)
  LUMO_CTOR_IF(Family::hasIntfFlag, bool,
               intf) // the listing is limited to the interface of intfStatus
  LUMO_CTOR(Lumo::Ptr<const SrTePolicy::PolicyStatus>, srTePolicyStatus)
  LUMO_CTOR(Lumo::Ptr<const Vanta::Fib::ForwardingStatus>, policyForwardingStatus)
  LUMO_CTOR(bool, degradeNhgModel)
  LUMO_CTOR(Lumo::Ptr<const typename Family::UnprogrammedRouteStatus>, unprogrammedRouteStatus)
  LUMO_ATTR(int, printCount)
  LUMO_ATTR_IF(Family::remembersV6Nexthops, bool, hasV6Nexthop)
  LUMO_ATTR(bool, initialized)
  LUMO_ATTR(Lumo::Ptr<const Tunnel::TunnelTable::SrTunnelTable>, srTunnelTable)
  LUMO_ATTR(Lumo::Ptr<const Tunnel::TunnelTable::StaticTunnelTable>, staticTunnelTable)
  LUMO_ATTR(Lumo::Ptr<const Tunnel::TunnelTable::LdpTunnelTable>, ldpTunnelTable)
  LUMO_ATTR(Lumo::Ptr<const Tunnel::TunnelTable::BgpLuTunnelTable>, bgpLuTunnelTable)
  LUMO_HASHED(typename Family::AddrWithMask, Kesh::IntfId, addrToIntfId, AddrToIntfId)
  LUMO_ORDERED(Prefix, Route, sortedRoute, SortedRoute)
  LUMO_HASHED_ENTITIES(Vanta::Fib::FecId, CachedFec, fec, Fec, fecId)
  LUMO_HASHED(Routing::NexthopGroup::NexthopGroupId, Lumo::String, cachedNexthopGroupIdToName,
              CachedNexthopGroupIdToName)
  LUMO_METHOD(legend)
  LUMO_METHOD(hostLegend)
  LUMO_METHOD(buildNexthopGroupIdToName)
  LUMO_METHOD(createAttachedRoute, "ip", "intfId")
  LUMO_METHOD(handleInitialized)
  LUMO_METHOD(printRoutes, "fd", "fmt")
  LUMO_METHOD(longestPrefixMatch)
  LUMO_METHOD(protocolString, "p")
  LUMO_METHOD_IF(Family::answersViasForPrefix, viasForPrefix, "p")
  LUMO_END

  /// The constructor arguments in their order; the object is loaded when it returns.
  template <class... Arguments>
  explicit Sorter(Arguments&&... arguments) {
    Lumo::constructorFields(*this) = std::forward_as_tuple(std::forward<Arguments>(arguments)...);
    handleInitialized();
  }
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }

  /// The codes that a listing explains ahead of its routes, and those of the host route table:
  Lumo::String legend() const { return legendOf(typename Family::RouteType{}); }
  Lumo::String hostLegend() const { return hostLegendOf(typename Family::RouteType{}); }
  /// Fills `cachedNexthopGroupIdToName` from the nexthop group entries.
  void buildNexthopGroupIdToName();
  /// A host route for a neighbour, with a FEC of its own; a neighbour that has a route already gets
  /// one via more there, unless that route has no FEC. The route is returned, not stored.
  Route createAttachedRoute(Kesh::IpGenAddr ip, Kesh::IntfId intfId);
  /// Loads: local addresses, tunnel tables, then the selection of routes.
  void handleInitialized();
  /// Renders the listing in format 1 (text) or 2 (model) to the descriptor. False after an
  /// interrupt, which is reported on standard output. Errors of writing pass up.
  bool printRoutes(std::uint32_t fd, std::uint32_t fmt);
  /// What a query for one address resolved to, the null prefix for nothing. Any other query stops
  /// the process.
  Prefix longestPrefixMatch() const;
  /// Mark, code and mark of a selected route, at least five characters wide; blanks for any other.
  Lumo::String protocolString(Prefix p) const;
  /// A copy of the FEC of a selected route with its vias alone; null without route or FEC.
  Lumo::Ptr<CachedFec> viasForPrefix(Prefix p) const requires(FamilyType::answersViasForPrefix);

  /// What following a FEC needs of this listing; valid as long as the sorter. (rova/fec)
  Forwarding forwarding();

  /// The filter that chooses routes beside the protocol; null, as at first, for none. It is asked
  /// in the order of the listing, once for the count of an IPv6 listing and once to print.
  const std::shared_ptr<RouteFilter<Route>>& routeFilter() const { return routeFilter_; }
  void routeFilterIs(std::shared_ptr<RouteFilter<Route>> filter) {
    routeFilter_ = std::move(filter);
  }
  /// Whether the query's protocol and its filter take a route.
  bool asksFor(const Route& route) const {
    return protocolMatch(route, protocol_) && (!routeFilter_ || routeFilter_->takes(route));
  }

 private:
  void loadAddresses();
  void findTunnelTables();

  std::shared_ptr<RouteFilter<Route>> routeFilter_;
};

using RouteSorter = Sorter<Ip4Family>;
using Route6Sorter = Sorter<Ip6Family>;

extern template class Sorter<Ip4Family>;
extern template class Sorter<Ip6Family>;

/// Create a sorter and load it; the arguments are the constructor attributes in their order.
ROVA_EXPORT Lumo::Ptr<RouteSorter> routeSorterFactory(
    const Lumo::Ptr<const Routing::ConfigGen>& routingConfig,
    const Lumo::Ptr<const Vanta::Fib::RouteStatus>& routingStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& forwardingStatus,
    const Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>& forwarding6Status,
    const Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>& tunnelFib,
    const Lumo::Ptr<const Arp::Table::Status>& arpVanta,
    const Lumo::Ptr<const Vrf::VrfIdMap::Status>& vrfIdMap,
    const Lumo::Ptr<const Interface::AllIntfConfigDir>& allIntfConfig,
    const Lumo::Ptr<const Ip::Status>& ipStatus,
    const Lumo::Ptr<const Routing::Hardware::Status>& routingHardwareStatus,
    const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhEntryStatus,
    const Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>&
        kernelUnprogrammedRoute,
    const Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>& evpnVxlanTunnelTable,
    const Lumo::Ptr<const Lumo::Dir>& tunnelTableDir, const Kesh::Prefix& prefix,
    const Lumo::Ptr<const Interface::IntfStatus>& intfStatus, Lumo::String protocol, bool detail,
    bool longerPrefixes, L3::VrfName vrfName, Vrf::VrfIdMap::VrfId vrfId, bool host, int fd,
    const double& quantify, bool originalMask,
    const Lumo::Ptr<const SrTePolicy::PolicyStatus>& srTePolicyStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& policyForwardingStatus,
    bool degradeNhgModel,
    const Lumo::Ptr<const Vanta::Fib::UnprogrammedRouteStatus>& unprogrammedRouteStatus);

/// The same for IPv6.
ROVA_EXPORT Lumo::Ptr<Route6Sorter> route6SorterFactory(
    const Lumo::Ptr<const Routing::ConfigGen>& routingConfig,
    const Lumo::Ptr<const Vanta::Fib6::RouteStatus>& routingStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& forwardingStatus,
    const Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>& forwarding6Status,
    const Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>& tunnelFib,
    const Lumo::Ptr<const Arp::Table::Status>& arpVanta,
    const Lumo::Ptr<const Vrf::VrfIdMap::Status>& vrfIdMap,
    const Lumo::Ptr<const Interface::AllIntfConfigDir>& allIntfConfig,
    const Lumo::Ptr<const Ip6::Status>& ipStatus,
    const Lumo::Ptr<const Routing6::Hardware::Status>& routingHardwareStatus,
    const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhEntryStatus,
    const Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>&
        kernelUnprogrammedRoute,
    const Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>& evpnVxlanTunnelTable,
    const Lumo::Ptr<const Lumo::Dir>& tunnelTableDir, const Kesh::Ip6Prefix& prefix,
    const Lumo::Ptr<const Interface::IntfStatus>& intfStatus, Lumo::String protocol, bool detail,
    bool longerPrefixes, L3::VrfName vrfName, Vrf::VrfIdMap::VrfId vrfId, bool host, int fd,
    const double& quantify, bool originalMask, bool intf,
    const Lumo::Ptr<const SrTePolicy::PolicyStatus>& srTePolicyStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& policyForwardingStatus,
    bool degradeNhgModel,
    const Lumo::Ptr<const Vanta::Fib6::UnprogrammedRouteStatus>& unprogrammedRouteStatus);

} // namespace Rova
