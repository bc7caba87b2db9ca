#include "Checks.h"

#include "rova/check/AddressAssignmentChecker.h"
#include "rova/nexthopgroup/NexthopGroupHelper.h"
#include "rova/staticroute/StaticRoutesRibCommon.h"
#include "scrivo/AttrInfo.h"
#include "state/RouteDistinguisherInput.h"

namespace rova_python {

namespace {

using Rova::NexthopGroupCounterHelper;

/// The first table that the helper has not mounted; null when it has all.
const char* missingTable(const NexthopGroupCounterHelper& helper) {
  if (!helper.counterKeyTable()) return "counterKeyTable";
  if (!helper.counterTable()) return "counterTable";
  return helper.snapshotTable() ? nullptr : "snapshotTable";
}

void needTables(const Call& call, const NexthopGroupCounterHelper& helper) {
  const char* const table = missingTable(helper);
  if (!table) return;
  call.refuse(std::string(table) + " is None: mountCounterVantaes(entityManager) mounts it, with " +
              "the entityManager of a device that has counters of nexthop groups");
}

bool hasHop(const Routing::Via& via) {
  return via.hop.af() != Kesh::AddressFamily::unset && !via.hop.isAddrZero();
}

} // namespace

void refuseAbstract(const Call& call) {
  call.refuse("this is the interface alone: a NexthopGroupCounterHelper counts");
}

void needInterfaces(const Call& call) {
  const auto params = call.value<Lumo::Ptr<const Rova::Address6QueryParams>>("params");
  if (params->ipConfig() || params->addrWithMask().address().isLinkLocal()) return;
  call.refuse("ipConfig of params is None: write the one that device.ip6() gives");
}

void needCounterTables(const Call& call) {
  needTables(call, call.object<NexthopGroupCounterHelper>());
}

void needTablesOfCounterHelper(const Call& call) {
  const auto& helper = call.object<Rova::NexthopGroupHelper>();
  if (helper.hasCounters()) needTables(call, *helper.counterHelper());
}

void needRouteDistinguisherInputs(const Call& call) {
  constexpr const char* argument = "routeDistinguisherInputDir";
  const auto inputs = call.value<Lumo::Ptr<const Lumo::Dir>>(argument);
  if (!inputs) return;
  inputs->entities().forEach([&](const Lumo::String& name, const auto& entity) {
    if (Lumo::dynamicPtrCast<Ip::RouteDistinguisherInput>(entity)) return;
    call.refuse(std::string(argument) + " has an entry '" + name.str() +
                "' that is no Ip::RouteDistinguisherInput: pass the handle of that name");
  });
}

void needOneWayVias(const Call& call) {
  const auto config = call.value<Lumo::Ptr<const Routing::ConfigGen>>("config");
  config->route.forEach([&](const Routing::RouteKey& key, const auto& route) {
    if (!route || route->dynamic || route->routeType != Routing::RouteType::forward) return;
    route->via.forEach([&](const Routing::Via& via, bool) {
      if (!hasHop(via) || via.vtepAddr == Kesh::IpGenAddr()) return;
      call.refuse(key.prefix.stringValue().str() + ": a via has both the hop " +
                  via.hop.stringValue().str() + " and the vtepAddr " +
                  via.vtepAddr.stringValue().str() + ": leave one of them out");
    });
  });
}

void needFormatAttribute(const Call& call) {
  const auto format = call.object<Rova::StaticRoutesRibCommon>().fmt();
  if (format == scrivo::textFormat || format == scrivo::modelFormat) return;
  call.refuseValue("fmt is 1 for text or 2 for JSON, found " + std::to_string(format) +
                   ": write it before");
}

} // namespace rova_python
