// Counts of nexthop groups by type and by size.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// Counts the configured groups, whether or not they have an identifier, and renders the counts.
class ROVA_EXPORT NexthopGroupSummaryHelper {
  LUMO_TYPE(NexthopGroupSummaryHelper, "Rova::NexthopGroupSummaryHelper")
  LUMO_CTOR(Lumo::Ptr<const Routing::NexthopGroup::Config>, nhgConfig)
  LUMO_CTOR(Lumo::Ptr<const NexthopGroup::EntryStatus>, nhgEntryStatus)
  LUMO_CTOR(Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus>, nhgHwStatus)
  LUMO_CTOR(Lumo::Ptr<const Routing::Hardware::Status>, routingHwStatus)
  LUMO_ATTR(L3::VrfName, vrfName)
  LUMO_ATTR(std::uint32_t, nhgCount)
  LUMO_ATTR(std::uint32_t, nhgUnprogrammedCount) // groups that the hardware does not have
  LUMO_ORDERED(Routing::NexthopGroup::NexthopGroupType, std::uint32_t, nhgPerType, NhgPerType)
  LUMO_ORDERED(std::uint32_t, std::uint32_t, nhgPerSize, NhgPerSize)
  LUMO_METHOD(processNexthopGroups)
  LUMO_METHOD(render, "fd", "fmt")
  LUMO_END
  LUMO_VALUE(NexthopGroupSummaryHelper)

  NexthopGroupSummaryHelper() { vrfName_ = L3::VrfName(L3::defaultVrfName); }
  NexthopGroupSummaryHelper(Lumo::Ptr<const Routing::NexthopGroup::Config> config,
                            Lumo::Ptr<const NexthopGroup::EntryStatus> entryStatus,
                            Lumo::Ptr<const Routing::Hardware::NexthopGroupStatus> hwStatus,
                            Lumo::Ptr<const Routing::Hardware::Status> hardware)
      : nhgConfig_(std::move(config)),
        nhgEntryStatus_(std::move(entryStatus)),
        nhgHwStatus_(std::move(hwStatus)),
        routingHwStatus_(std::move(hardware)) {
    vrfName_ = L3::VrfName(L3::defaultVrfName);
  }

  /// Fills the counts. Calling it again adds to all but `nhgCount`.
  void processNexthopGroups();
  /// Counts and renders in format 1 (text) or 2 (model) to the descriptor. An interrupt is reported
  /// on standard output; errors of writing pass up.
  void render(std::uint32_t fd, std::uint32_t fmt);

 private:
  bool isProgrammed(const Lumo::Name& name) const;
};

} // namespace Rova
