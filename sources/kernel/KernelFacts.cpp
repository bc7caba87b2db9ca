#include "sources/kernel/KernelFacts.h"

#include "sources/kernel/Vrfs.h"

namespace sources::kernel {

namespace {

using Ids = std::unordered_map<std::uint32_t, Vrf::VrfIdMap::VrfId>; // of VRFs, by table

template <class Family>
void addHidden(const std::vector<RouteRow<Family>>& rows, const Ids& ids, HiddenRoutes& hidden) {
  forEachPrefix(std::span(rows), [&](std::span<const RouteRow<Family>> same) {
    const auto count = hiddenRoutes<Family>(same);
    if (count != 0) hidden[{ids.at(vrfTable(same[0].table)), Family::version}] += count;
  });
}

} // namespace

RouteFacts routeFacts(const KernelState& kernel) {
  RouteFacts facts;
  Ids ids;
  for (const VrfIdentity& vrf : vrfsOf(kernel)) {
    ids.emplace(vrf.table, vrf.id);
    if (vrf.isPlain) facts.plain.insert(vrf.id);
  }
  addHidden(kernel.routes, ids, facts.hidden);
  addHidden(kernel.routes6, ids, facts.hidden);
  return facts;
}

} // namespace sources::kernel
