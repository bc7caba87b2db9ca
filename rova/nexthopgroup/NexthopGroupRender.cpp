#include "EntryListing.h"
#include "rova/core/Interrupted.h"
#include "rova/core/Trace.h"
#include "state/NexthopGroupSize.h"

#include <optional>

namespace Rova {

namespace {

using Routing::GreKeyType;
using Routing::NexthopGroup::NexthopGroupConfigEntry;
using Routing::NexthopGroup::NexthopGroupId;
using Routing::NexthopGroup::NexthopGroupType;

/// Where a group's tunnels start.
struct Source {
  Kesh::IpGenAddr address;
  Kesh::IntfId interface; ///< null unless the address is that of an interface
};

/// Whether packets get an outer IP header.
bool hasOuterHeader(NexthopGroupType type) {
  return type == NexthopGroupType::ipInIp || type == NexthopGroupType::gre ||
         type == NexthopGroupType::mplsOverGre || type == NexthopGroupType::mplsOverUdp;
}

Source sourceOf(const ShownGroup& group) {
  const auto& config = group.config;
  if (!config.sourceIp.isAddrZero()) return {config.sourceIp, {}};
  Source source{group.adjacency ? group.adjacency->sourceIp : Kesh::IpGenAddr(), config.sourceIntf};
  if (source.address.isAddrZero()) {
    const bool unset = config.addressFamily == Kesh::AddressFamily::unset;
    source.address.afIs(unset ? Kesh::AddressFamily::ip4 : config.addressFamily);
  }
  return source;
}

class GroupListing {
 public:
  GroupListing(scrivo::Printer& printer, const NexthopGroupHelper& helper)
      : printer_(printer), helper_(helper), vrfStatus_(helper.vrfStatus()) {}

  void print() {
    const auto& groups = helper_.sortedNhgNameMap();
    for (auto at = groups.begin(); at != groups.end();) {
      flushIfFull(printer_);
      const auto& config = at++->second;
      const auto id = idOf(config->name);
      if (!id) continue;
      printGroup(shown(config, *id));
      if (at != groups.end()) printer_.addFrills("\n");
    }
  }

 private:
  std::optional<NexthopGroupId> idOf(const Lumo::Name& name) const;
  ShownGroup shown(const Lumo::Ptr<const NexthopGroupConfigEntry>& config, NexthopGroupId id) const;
  void printGroup(const ShownGroup& group);
  void setValues(const ShownGroup& group, const Source& source);
  void printType(const ShownGroup& group);
  void printSize(const ShownGroup& group);
  void printOuterHeader(const Source& source);
  void printCapabilities(const ShownGroup& group);
  void addDestinations(const ShownGroup& group);

  scrivo::Printer& printer_;
  const NexthopGroupHelper& helper_;
  const Routing::Hardware::NexthopGroupVrfStatus* const vrfStatus_;
  scrivo::StringAttrInfo nexthopGroupName_{printer_, "nexthopGroupName"};
  scrivo::UintAttrInfo nexthopGroupId_{printer_, "nexthopGroupId"};
  scrivo::StringAttrInfo nexthopGroupType_{printer_, "nexthopGroupType"};
  scrivo::UintAttrInfo size_{printer_, "size"};
  scrivo::BoolAttrInfo autoSize_{printer_, "autoSize"};
  scrivo::UintAttrInfo ttl_{printer_, "ttl"};
  scrivo::StringAttrInfo sourceIp_{printer_, "sourceIp"};
  scrivo::StringAttrInfo sourceIntf_{printer_, "sourceIntf"};
  scrivo::StringAttrInfo greKeyType_{printer_, "greKeyType"};
  scrivo::BoolAttrInfo programmed_{printer_, "programmed"};
  scrivo::UintAttrInfo numProgrammedTunnels_{printer_, "numProgrammedTunnels"};
  scrivo::StringAttrInfo entryCounterType_{printer_, "entryCounterType"};
  scrivo::BoolAttrInfo hierarchicalFecsEnabled_{printer_, "hierarchicalFecsEnabled"};
  scrivo::UintAttrInfo destinationIndex_{printer_, "", true};
  scrivo::StringAttrInfo destination_{printer_, ""};
};

/// Nothing for a name that has no identifier yet: the lookup then gives another key.
std::optional<NexthopGroupId> GroupListing::idOf(const Lumo::Name& name) const {
  const NexthopGroup::NexthopGroupEntryKey key(name);
  bool found = false;
  const auto& table = helper_.nhgEntryStatus()->nexthopGroupEntry;
  const auto* const entry = table.safeLookup(key, found, 0);
  if (!(entry->key == key)) return {};
  return entry->nhgId;
}

ShownGroup GroupListing::shown(const Lumo::Ptr<const NexthopGroupConfigEntry>& config,
                               NexthopGroupId id) const {
  const auto* const adjacency = vrfStatus_ ? vrfStatus_->nexthopGroupAdj.find(id) : nullptr;
  return {*config, adjacency, id,
          getNhgSize(config, helper_.routingHwStatus()->maxNexthopGroupSize)};
}

void GroupListing::printGroup(const ShownGroup& group) {
  const Source source = sourceOf(group);
  setValues(group, source);
  printer_.startDictEntry(nexthopGroupName_);
  printer_.addAttributes("%s\n", 1, nexthopGroupName_.getArg());
  printer_.addAttributes("", 1, programmed_.getArg());
  if (!group.adjacency) printer_.addWarning("  Unprogrammed nexthop group\n");
  printer_.addAttributes("  Id                %d\n", 1, nexthopGroupId_.getArg());
  printType(group);
  printSize(group);
  if (hasOuterHeader(group.config.type)) printOuterHeader(source);
  printCapabilities(group);
  addDestinations(group);
  printer_.startDict("via");
  printEntries(printer_, helper_, group);
  printer_.endDict();
  printer_.endDictEntry();
}

void GroupListing::setValues(const ShownGroup& group, const Source& source) {
  const auto& config = group.config;
  nexthopGroupName_.setValue(config.name);
  nexthopGroupId_.setValue(group.id.value());
  nexthopGroupType_.setValue(Routing::NexthopGroup::stringValue(config.type));
  ttl_.setValue(config.ttl);
  greKeyType_.setValue(Routing::stringValue(config.greKeyType));
  entryCounterType_.setValue(Routing::NexthopGroup::stringValue(config.entryCounterType));
  hierarchicalFecsEnabled_.setValue(config.hierarchicalFecsEnabled);
  size_.setValue(group.size);
  autoSize_.setValue(group.autoSize());
  programmed_.setValue(group.adjacency != nullptr);
  numProgrammedTunnels_.setValue(group.adjacency ? group.adjacency->numProgrammedTunnels : 0);
  sourceIp_.setValue(source.address.stringValue());
  sourceIntf_.setValue(source.interface.stringValue());
}

void GroupListing::printType(const ShownGroup& group) {
  printer_.addAttributes("  Type              %s", 1, nexthopGroupType_.getArg());
  if (group.config.type == NexthopGroupType::gre) {
    printer_.addAttributes("", 1, greKeyType_.getArg());
    if (group.config.greKeyType == GreKeyType::ingressInterface) {
      printer_.addFrills("  (key: ingress-interface)");
    }
  }
  printer_.addAttributes("\n", 2, autoSize_.getArg(), numProgrammedTunnels_.getArg());
}

void GroupListing::printSize(const ShownGroup& group) {
  printer_.addAttributes("  Size              %d", 1, size_.getArg());
  if (group.autoSize()) {
    printer_.addFrills("  (auto size enabled, programmed size %d)", numProgrammedTunnels_.getArg());
  }
  printer_.addAttributes("\n", 2, ttl_.getArg(), sourceIp_.getArg());
}

void GroupListing::printOuterHeader(const Source& source) {
  printer_.addFrills("  TTL               %d\n", ttl_.getArg());
  printer_.addFrills("  Source IP         %s", sourceIp_.getArg());
  if (source.interface) printer_.addFrills(" (%s)", sourceIntf_.getArg());
  printer_.addFrills("\n");
}

/// What the hardware may not be able to do shows only where it is.
void GroupListing::printCapabilities(const ShownGroup& group) {
  const auto& hardware = *helper_.routingHwStatus();
  if (hardware.nexthopGroupEntryCounterSupported) {
    printer_.addAttributes("  Counters          %s\n", 1, entryCounterType_.getArg());
  }
  if (hardware.hierarchicalFecSupported()) {
    printer_.addAttributes("", 1, hierarchicalFecsEnabled_.getArg());
    printer_.addFrills("  Hierarchical FECs %s\n",
                       group.config.hierarchicalFecsEnabled ? "enabled" : "disabled");
  }
}

/// For the model alone.
void GroupListing::addDestinations(const ShownGroup& group) {
  printer_.startDict("destinationIps");
  if (printer_.format() != scrivo::textFormat) {
    for (std::uint32_t index = 0; index < group.entries(); ++index) {
      auto destination = group.config.destinationIp[static_cast<std::uint16_t>(index)];
      destination.afIs(group.config.addressFamily);
      destination_.setValue(destination.stringValue());
      destinationIndex_.setValue(index);
      printer_.startSimpleDictEntry(destinationIndex_);
      printer_.addAttributes("", 1, destination_.getArg());
      printer_.endSimpleDictEntry();
    }
  }
  printer_.endDict();
}

/// Enters the groups to show; false when the one that was asked for is not configured.
bool chooseGroups(NexthopGroupHelper& helper) {
  const auto& groups = helper.nhgConfig()->nexthopGroup;
  if (helper.nhgName().empty()) {
    ROVA_TRACE(3, "Printing all nexthop groups");
    groups.forEach([&](const auto&, const auto& group) { helper.sortedNhgNameIs(group); });
    return true;
  }
  ROVA_TRACE(3, "Printing Nexthop Group: " << helper.nhgName());
  const auto* const group = groups.find(helper.nhgName());
  if (group) helper.sortedNhgNameIs(*group);
  return group != nullptr;
}

} // namespace

void NexthopGroupHelper::render(std::uint32_t fd, std::uint32_t fmt) {
  ROVA_TRACE(8, "void Rova::NexthopGroupHelper::render(U32, U32)");
  try {
    scrivo::Printer printer(static_cast<int>(fd), fmt);
    printer.start();
    printer.startDict("nexthopGroups");
    if (chooseGroups(*this)) {
      if (hasCounters()) processNexthopVias();
      GroupListing(printer, *this).print();
    }
    printer.endDict();
    printer.end();
    printer.close();
  } catch (const scrivo::sigintException& interrupt) {
    reportInterrupt(interrupt);
  }
}

} // namespace Rova
