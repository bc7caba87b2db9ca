// The object behind one display of nexthop groups.
//
//   auto helper = Rova::nexthopGroupHelperFactory(...);
//   helper->vrfNameIs(vrf);            // for any VRF but the default one
//   helper->render(fd, format);
//
// A display joins three sources: the configuration, the identifiers that the groups were given, and
// what the hardware made of them. A group shows when it is configured and has an identifier.
#pragma once

#include "rova/nexthopgroup/Counters.h"

namespace Rova {

/// The display of nexthop groups with their entries: one group, or all of them.
class ROVA_EXPORT NexthopGroupHelper : public Lumo::PtrInterface {
  LUMO_TYPE(NexthopGroupHelper, "Rova::NexthopGroupHelper")
  LUMO_CTOR(Lumo::Ptr<const Routing::NexthopGroup::Config>, nhgConfig)
  LUMO_CTOR(Lumo::Ptr<const NexthopGroup::EntryStatus>, nhgEntryStatus)
  LUMO_CTOR(Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus>, nhgHwStatus)
  LUMO_CTOR(Lumo::Ptr<const Routing::Hardware::Status>, routingHwStatus)
  LUMO_CTOR(Lumo::Ptr<NexthopGroupCounterHelper>, counterHelper, Lumo::orNull) // null: no counters
  LUMO_CTOR(Lumo::String, nhgName) // the group; empty for all
  LUMO_ATTR(L3::VrfName, vrfName)
  LUMO_ORDERED_ENTITIES(Lumo::Name, const Routing::NexthopGroup::NexthopGroupConfigEntry,
                        sortedNhgName, SortedNhgName, name)
  LUMO_HASHED(std::uint64_t, std::uint32_t, tunnelIdMap, TunnelIdMap)
  LUMO_METHOD(processNexthopVias)
  LUMO_METHOD(render, "fd", "fmt")
  LUMO_END

  NexthopGroupHelper(Lumo::Ptr<const Routing::NexthopGroup::Config> nhgConfig,
                     Lumo::Ptr<const NexthopGroup::EntryStatus> nhgEntryStatus,
                     Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus> nhgHwStatus,
                     Lumo::Ptr<const Routing::Hardware::Status> routingHwStatus,
                     Lumo::Ptr<NexthopGroupCounterHelper> counterHelper, Lumo::String nhgName);
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }

  /// Whether the display shows counters.
  bool hasCounters() const { return counterHelper_ && counterHelper_->counterEnabled(); }
  /// The programmed groups of the VRF; null when it has none.
  const Routing::Hardware::NexthopGroupVrfStatus* vrfStatus() const {
    return nhgHwStatus_->vrfStatus.find(vrfName_);
  }

  /// Counts in `tunnelIdMap` how many entries of the VRF's programmed groups use each tunnel. It
  /// adds to what is there: once for an object.
  void processNexthopVias();
  /// Renders the groups in format 1 (text) or 2 (model) to the descriptor, once for an object. An
  /// interrupt is reported on standard output; errors of writing and of label stacks pass up.
  void render(std::uint32_t fd, std::uint32_t fmt);
};

/// The arguments are the constructor attributes in their order.
ROVA_EXPORT Lumo::Ptr<NexthopGroupHelper>
nexthopGroupHelperFactory(const Lumo::Ptr<const Routing::NexthopGroup::Config>& nhgConfig,
                          const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhgEntryStatus,
                          const Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus>& nhgHwStatus,
                          const Lumo::Ptr<const Routing::Hardware::Status>& routingHwStatus,
                          const Lumo::Ptr<NexthopGroupCounterHelper>& counterHelper,
                          Lumo::String nhgName);

} // namespace Rova
