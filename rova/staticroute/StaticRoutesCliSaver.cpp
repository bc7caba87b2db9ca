#include "rova/staticroute/StaticRoutesCliSaver.h"

#include "lumo/ActivityLock.h"
#include "rova/core/Watchdog.h"
#include "rova/staticroute/StaticRouteLine.h"

namespace Rova {

LUMO_DEFINE_TYPE(StaticRoutesCliSaver);

namespace {

NexthopInfo nexthopInfo(const Routing::Route& route, const LineDefaults& defaults) {
  NexthopInfo info;
  switch (route.routeType) {
  case Routing::RouteType::drop:
    info.nexthopCmdIs(dropText(route, defaults));
    break;
  case Routing::RouteType::nexthopGroup:
    info.nexthopCmdIs(nexthopGroupText(route, defaults));
    break;
  default:
    route.via.forEach([&](const Routing::Via& via, bool) {
      info.sortedViaIs(via, viaText(route, via, defaults));
    });
  }
  return info;
}

} // namespace

Lumo::String StaticRoutesCliSaver::save(Lumo::Ptr<const Routing::ConfigGen> config, bool saveAll,
                                        Lumo::String routeCmd, RovaConsts rovaConsts) {
  load(*config, saveAll, rovaConsts);
  const Lumo::UnlockAnchor anchor(Lumo::ActivityUnlockAnchor::lock());
  return lines(routeCmd);
}

/// The configuration may change whenever the lock is given up, so the walk keeps its route and
/// finds its place again.
void StaticRoutesCliSaver::load(const Routing::ConfigGen& config, bool saveAll,
                                const RovaConsts& consts) {
  std::uint32_t steps = 0;
  for (auto at = config.route.cursor(); at; at.next()) {
    const auto* const member = at.value();
    if (!member || (*member)->dynamic) continue;
    const Lumo::Ptr<const Routing::Route> route = *member;
    const RouteSortKey key(route->key.prefix, route->key.preference);
    sortedRouteIs(key, nexthopInfo(*route, {consts, saveAll}));
    allowWatchdog(steps);
  }
}

Lumo::String StaticRoutesCliSaver::lines(const Lumo::String& routeCmd) const {
  std::string text;
  for (const auto& [key, info] : sortedRoute_) {
    const std::string start = routeCmd.str() + key.prefix().stringValue().str();
    const auto addLine = [&](const Lumo::String& rest) {
      text.append(start).append(rest.view()).push_back('\n');
    };
    if (!info.nexthopCmd().empty()) {
      addLine(info.nexthopCmd());
    } else {
      for (const auto& [via, rest] : info.sortedViaMap()) addLine(rest);
    }
  }
  return Lumo::String(text);
}

} // namespace Rova
