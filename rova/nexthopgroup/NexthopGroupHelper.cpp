#include "rova/nexthopgroup/NexthopGroupHelper.h"

#include "rova/core/Trace.h"

namespace Rova {

LUMO_DEFINE_TYPE(NexthopGroupHelper);

NexthopGroupHelper::NexthopGroupHelper(
    Lumo::Ptr<const Routing::NexthopGroup::Config> nhgConfig,
    Lumo::Ptr<const NexthopGroup::EntryStatus> nhgEntryStatus,
    Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus> nhgHwStatus,
    Lumo::Ptr<const Routing::Hardware::Status> routingHwStatus,
    Lumo::Ptr<NexthopGroupCounterHelper> counterHelper, Lumo::String nhgName)
    : nhgConfig_(std::move(nhgConfig)),
      nhgEntryStatus_(std::move(nhgEntryStatus)),
      nhgHwStatus_(std::move(nhgHwStatus)),
      routingHwStatus_(std::move(routingHwStatus)),
      counterHelper_(std::move(counterHelper)),
      nhgName_(std::move(nhgName)),
      vrfName_(L3::defaultVrfName) {}

void NexthopGroupHelper::processNexthopVias() {
  ROVA_TRACE(8, "void Rova::NexthopGroupHelper::processNexthopVias()");
  const auto* const status = vrfStatus();
  if (!status) return;
  status->nexthopGroupAdj.forEach([this](const auto&, const auto& adjacency) {
    for (const auto& [index, via] : adjacency.via) {
      if (!via || via.tunnelId == 0) continue;
      tunnelIdMapIs(via.tunnelId, tunnelIdMap(via.tunnelId) + 1);
    }
  });
}

Lumo::Ptr<NexthopGroupHelper>
nexthopGroupHelperFactory(const Lumo::Ptr<const Routing::NexthopGroup::Config>& nhgConfig,
                          const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhgEntryStatus,
                          const Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus>& nhgHwStatus,
                          const Lumo::Ptr<const Routing::Hardware::Status>& routingHwStatus,
                          const Lumo::Ptr<NexthopGroupCounterHelper>& counterHelper,
                          Lumo::String nhgName) {
  return Lumo::newEntity<NexthopGroupHelper>(nhgConfig, nhgEntryStatus, nhgHwStatus,
                                             routingHwStatus, counterHelper, std::move(nhgName));
}

} // namespace Rova
