#include "rova/summary/Summary.h"

#include "RouteCounters.h"
#include "rova/core/Neighbors.h"
#include "rova/core/Trace.h"
#include "rova/core/Watchdog.h"
#include "rova/route/RouteTypeStrings.h"

#include <utility>

namespace Rova {

namespace {

template <class Map>
auto walk(const Map& table) {
  return typename Map::IteratorConst(table);
}

/// Divides the static routes. One without configuration is persistent, and without any
/// configuration at all there is nothing to divide by.
template <class Route, class Counters>
void countStatic(const Lumo::Ptr<const Routing::ConfigGen>& config, const Route& route,
                 Counters& counters) {
  if (!config) return;
  const auto* const configured = config->route.find({route.key, route.preference()});
  const bool dynamic = configured && *configured && (*configured)->dynamic;
  ++(dynamic ? counters.staticNonPersistent : counters.staticPersistent);
}

/// Counts a route for the sum that it is part of, if it is part of one.
template <class Family>
void countInSums(const Summary<Family>& summary, const typename Family::Route& route,
                 RouteCounters<Family>& counters) {
  using Type = typename Family::RouteType;
  const Type type = route.routeType;
  if (type == Type::isisLevel1 || type == Type::isisLevel2) {
    ++counters.isis;
  } else if (type == Type::staticRoute) {
    countStatic(summary.routingConfig(), route, counters);
  } else if (Family::isOspfKind(type)) {
    ++counters.ospf;
  } else if (Family::isBgpKind(type)) {
    ++counters.bgp;
  }
}

template <class Family>
void countRoutes(const Summary<Family>& summary, RouteCounters<Family>& counters) {
  std::uint32_t steps = 0;
  for (auto it = walk(summary.routingStatus()->route); it; it.next()) {
    const auto& route = it.value();
    if (counters.counts(route.routeType)) {
      countInSums(summary, route, counters);
      counters.incrementRoute(route.routeType, route.key.len());
    }
    allowWatchdog(steps);
  }
}

/// Adds to the count of a kind; nothing makes no entry.
template <class Family>
void updateIfNonZero(Summary<Family>& summary, const Lumo::String& key, std::uint32_t count) {
  if (count != 0) summary.routeCountByTypeIs(key, summary.routeCountByType(key) + count);
}

template <class Family>
void addToMask(Summary<Family>& summary, std::uint32_t length, std::uint32_t count) {
  if (count != 0) summary.routeCountByMaskIs(length, summary.routeCountByMask(length) + count);
}

/// Numbers that the enumeration leaves out have no key: their routes are in the total and the count
/// of their length alone.
template <class Family>
void applyTypes(Summary<Family>& summary, const RouteCounters<Family>& counters) {
  ROVA_TRACE(1, "Applying routeTypes");
  for (std::uint32_t number = 0; number < counters.types; ++number) {
    const auto type = static_cast<typename Family::RouteType>(number);
    if (state::routeTypeName(type).empty()) continue;
    ROVA_TRACE(1, "Applying routeType" << number);
    updateIfNonZero(summary, routeTypeStringsLookup(type).summaryWord, counters.byType[number]);
  }
}

template <class Family>
void applySums(Summary<Family>& summary, const RouteCounters<Family>& counters) {
  updateIfNonZero(summary, "staticNonPersistent", counters.staticNonPersistent);
  updateIfNonZero(summary, "staticPersistent", counters.staticPersistent);
  updateIfNonZero(summary, "ospfTotal", counters.ospf);
  updateIfNonZero(summary, "bgpTotal", counters.bgp);
  updateIfNonZero(summary, "isisTotal", counters.isis);
}

template <class Family>
void addToTotal(Summary<Family>& summary, std::uint32_t count) {
  summary.totalNumRoutesIs(summary.totalNumRoutes() + static_cast<int>(count));
}

} // namespace

template <class Family>
Summary<Family>::Summary(Lumo::Ptr<const Routing::ConfigGen> routingConfig,
                         Lumo::Ptr<const typename Family::RouteStatus> routingStatus,
                         Lumo::Ptr<const Arp::Table::Status> arpVanta,
                         Lumo::Ptr<const Vrf::VrfIdMap::Status> vrfIdMap, L3::VrfName vrfName)
    : routingConfig_(std::move(routingConfig)),
      routingStatus_(std::move(routingStatus)),
      arpVanta_(std::move(arpVanta)),
      vrfIdMap_(std::move(vrfIdMap)),
      vrfName_(std::move(vrfName)) {}

template <class Family>
void Summary<Family>::loadInternalStructures() {
  RouteCounters<Family> counters;
  countRoutes(*this, counters);
  ROVA_TRACE(0, "void " << Family::summaryTypeName
                        << "::loadInternalStructures() applying final count");
  applyTypes(*this, counters);
  for (std::uint32_t length = 0; length < counters.lengths; ++length) {
    addToMask(*this, length, counters.byLength[length]);
  }
  addToTotal(*this, counters.total);
  applySums(*this, counters);
}

template <class Family>
void Summary<Family>::loadAttachedRoutes() {
  const Lumo::String attached = routeTypeStringsLookup(Family::attachedType).summaryWord;
  VrfFilter vrf(*this);
  for (auto it = neighborIteratorConst(*this); it; it.next()) {
    const auto& neighbor = it.value().key;
    if (Kesh::MgmtIntfId::isMgmtIntfId(neighbor.intfId)) continue;
    if (!vrf.takes(neighbor.vrfId)) continue;
    updateIfNonZero(*this, attached, 1);
    addToMask(*this, Family::hostLength, 1);
    addToTotal(*this, 1);
  }
}

template <class Family>
constinit const Lumo::TypeRecord
    Summary<Family>::lumoType = Lumo::makeTypeRecord<Summary<Family>>();

template class Summary<Ip4Family>;
template class Summary<Ip6Family>;

} // namespace Rova
