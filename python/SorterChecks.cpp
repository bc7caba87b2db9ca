// What a sorter's methods take for granted of its routes. A listing is looked at once: its FECs,
// which are few, then its routes, of which each costs a step of a walk and one comparison.
#include "Checks.h"
#include "FecFault.h"
#include "rova/route/Sorter.h"
#include "state/RouteTypeNames.h"

#include <unordered_map>

namespace rova_python {

namespace {

using Vanta::Fib::FecId;

/// The numbers of the types that have a name, a bit each.
template <class RouteType>
constexpr std::uint64_t namedTypes() {
  std::uint64_t bits = 0;
  for (const auto& entry : Lumo::Enumeration<RouteType>::entries) {
    bits |= std::uint64_t{1} << entry.value;
  }
  return bits;
}

template <class RouteType>
bool isNamed(RouteType type) {
  static constexpr std::uint64_t named = namedTypes<RouteType>();
  const auto number = static_cast<std::uint32_t>(type);
  return number < 64 && (named >> number & 1);
}

template <class RouteType>
std::string typeFault(RouteType type) {
  return "its route type " + std::to_string(static_cast<std::uint32_t>(type)) + " does not exist";
}

/// What a sorter is about to list.
template <class Family>
class Listing {
 public:
  using Prefix = typename Family::Prefix;
  using Route = typename Family::Route;

  Listing(const Call& call, const Rova::Sorter<Family>& sorter) : call_(call), sorter_(sorter) {
    const FecTables tables{sorter.tunnelFib().ptr(), sorter.policyForwardingStatus().ptr(),
                           sorter.forwardingStatus().ptr(), sorter.forwarding6Status().ptr()};
    sorter.fecMap().forEach([&](FecId id, const Lumo::Ptr<Rova::CachedFec>& fec) {
      auto fault = faultOf(*fec, tables);
      if (!fault.empty()) faults_.emplace(id.value(), std::move(fault));
    });
  }

  void need() {
    for (const auto& [prefix, route] : sorter_.sortedRouteMap()) {
      if (!isSound(route)) needShown(prefix, route, ": del sortedRoute[...] leaves it out");
    }
    if constexpr (Family::printsGatewayOfLastResort) needGateway();
  }

 private:
  bool isSound(const Route& route) {
    return isNamed(route.routeType) && faults_.empty() &&
           (Family::toleratesMissingFec || isCaptured(route.fecId));
  }
  /// Routes come in runs on one FEC.
  bool isCaptured(FecId id) {
    if (id.isNull()) return false;
    if (id != lastCaptured_ && !sorter_.fec(id)) return false;
    lastCaptured_ = id;
    return true;
  }

  bool isListed(const Route& route) const {
    if (Rova::isReceive(route.routeType) || Rova::isNexthopGroup(route.routeType)) return true;
    if (route.fecId.isNull()) return false;
    const auto& fec = sorter_.fec(route.fecId);
    return sorter_.detail() || !fec || fec->forwards();
  }

  void needShown(const Prefix& prefix, const Route& route, const char* remedy) {
    if (!isListed(route)) return;
    const std::string fault = faultOfListed(route);
    if (!fault.empty()) refuse(prefix, fault + remedy);
  }

  [[noreturn]] void refuse(const Prefix& prefix, const std::string& why) const {
    const auto vrf = sorter_.vrfName().stringValue();
    call_.refuse(prefix.stringValue().str() + " of VRF " + vrf.str() + ": " + why);
  }

  std::string faultOfListed(const Route& route) {
    if (!isNamed(route.routeType)) return typeFault(route.routeType);
    if (!Rova::protocolMatch(route, sorter_.protocol())) return {};
    if (!Family::toleratesMissingFec && !isCaptured(route.fecId)) {
      return "it has no FEC, which an IPv6 route needs";
    }
    const auto fault = faults_.find(route.fecId.value());
    const bool hides = Rova::isNexthopGroup(route.routeType);
    return fault == faults_.end() || hides ? std::string() : fault->second;
  }

  /// The default route is read from the table, also where the selection has left it out.
  void needGateway() {
    const Prefix prefix = Kesh::pfx(typename Family::Address(), 0);
    bool found = false;
    const Route route = *sorter_.routingStatus()->route.safeLookup(prefix, found, 0);
    if (!sorter_.routingConfig() || !asksForGateway(prefix)) return;
    // The filter by protocol looks at the type of a gateway that is not listed too.
    const bool isFiltered = !sorter_.protocol().empty() && !isNamed(route.routeType);
    const char* const remedy = ", and it is the gateway of last resort: correct the state";
    if (isFiltered) refuse(prefix, typeFault(route.routeType) + remedy);
    needShown(prefix, route, remedy);
  }

  bool asksForGateway(const Prefix& gateway) const {
    const auto& routes = sorter_.sortedRouteMap();
    if (sorter_.prefix() == gateway) return true;
    if (sorter_.longerPrefixes()) return false;
    return sorter_.prefix().isNullPrefix() ||
           (routes.size() == 1 && routes.begin()->first == gateway);
  }

  const Call& call_;
  const Rova::Sorter<Family>& sorter_;
  std::unordered_map<std::uint64_t, std::string> faults_; ///< by the FEC
  FecId lastCaptured_;
};

/// The host table shows no types, and routes without FECs.
template <class Family>
void needPrintable(const Call& call) {
  const auto& sorter = call.object<Rova::Sorter<Family>>();
  if (!sorter.host()) Listing<Family>(call, sorter).need();
}

template <class Family>
void needAnswer(const Call& call) {
  const auto& sorter = call.object<Rova::Sorter<Family>>();
  const std::string remedy = ": build the sorter for one address, prefix=\"ADDRESS/" +
                             std::to_string(Family::hostLength) + "\"";
  if (sorter.prefix().isNullPrefix()) call.refuse("prefix is None" + remedy);
  if (sorter.longerPrefixes()) call.refuse("longerPrefixes is True" + remedy);
  if (sorter.sortedRoutes() > 1) {
    call.refuse("sortedRoute has " + std::to_string(sorter.sortedRoutes()) + " routes" + remedy);
  }
}

template <class Family>
void needNamedType(const Call& call) {
  const auto prefix = call.value<typename Family::Prefix>("p");
  const auto& route = call.object<Rova::Sorter<Family>>().sortedRoute(prefix);
  if (route.fecId.isNull() || isNamed(route.routeType)) return;
  call.refuse(prefix.stringValue().str() + ": " + typeFault(route.routeType));
}

} // namespace

void needAnswer4(const Call& call) { needAnswer<Rova::Ip4Family>(call); }
void needAnswer6(const Call& call) { needAnswer<Rova::Ip6Family>(call); }
void needPrintable4(const Call& call) { needPrintable<Rova::Ip4Family>(call); }
void needPrintable6(const Call& call) { needPrintable<Rova::Ip6Family>(call); }
void needNamedType4(const Call& call) { needNamedType<Rova::Ip4Family>(call); }
void needNamedType6(const Call& call) { needNamedType<Rova::Ip6Family>(call); }

} // namespace rova_python
