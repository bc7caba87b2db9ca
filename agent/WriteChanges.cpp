#include "agent/WriteChanges.h"

namespace agent {

namespace {

template <class Family>
void writeRoutes(const sources::kernel::RouteChanges<Family>& changes,
                 sources::database::Batch& batch) {
  using sources::database::What;
  for (const auto& [vrf, route] : changes.entered) batch.enter(vrf, route, What::entered);
  for (const auto& [vrf, route] : changes.replaced) batch.enter(vrf, route, What::replaced);
  for (const auto& [vrf, prefix] : changes.removed) batch.remove(vrf, prefix);
  for (const auto& [vrf, route] : changes.configured) batch.configure(vrf, *route);
  for (const auto& [vrf, key] : changes.unconfigured) batch.unconfigure(vrf, key);
  for (const auto& [vrf, routes] : changes.hidden) batch.hide(vrf, Family::version, routes);
}

} // namespace

void writeChanges(const sources::kernel::DeviceChanges& changes, sources::database::Batch& batch) {
  for (const auto& list : changes.enteredFecs) {
    sources::kernel::withFec(list, [&](const auto& fec) { batch.enter(fec); });
  }
  writeRoutes(changes.routes, batch);
  writeRoutes(changes.routes6, batch);
  for (const auto id : changes.removedFecs) batch.removeFec(id);
  for (const auto& neighbour : changes.enteredNeighbours) batch.enter(neighbour);
  for (const auto& key : changes.removedNeighbours) batch.remove(key);
  if (changes.nexthopGroups) batch.section(*changes.nexthopGroups, "nhgHwStatus");
}

} // namespace agent
