#include "EntryListing.h"

namespace Rova {

namespace {

using Routing::Hardware::NexthopGroupVia;
using Routing::NexthopGroup::EntryCounterType;
using Routing::NexthopGroup::NexthopGroupType;

bool isLabelled(NexthopGroupType type) {
  return type == NexthopGroupType::mpls || type == NexthopGroupType::mplsOverGre ||
         type == NexthopGroupType::mplsOverUdp;
}

/// Whether the FEC is one of a known adjacency type.
bool isValidFec(Vanta::Fib::FecId id) {
  return !id.isNull() && id.rawAdjType() < Vanta::Fib::adjTypeMax();
}

/// One entry with what is worked out from it once.
struct Entry {
  std::uint32_t number;
  const Kesh::IpGenAddr& destination;
  const Kesh::MplsLabelOperation& labels;
  const NexthopGroupVia& via;
  bool tunnelVia;

  bool hasL3() const { return static_cast<bool>(via.l3Intf); }
  const char* tunnelWord() const { return tunnelVia ? "Tunnel " : ""; }
};

class EntryListing {
 public:
  EntryListing(scrivo::Printer& printer, const NexthopGroupHelper& helper, const ShownGroup& group)
      : printer_(printer),
        helper_(helper),
        group_(group),
        actionText_(group.autoSize() ? "not programmed" : "drop"),
        stackWord_(group.config.type == NexthopGroupType::mpls ? "nexthop" : "tunnel-destination") {
    nexthopGroupType_.setValue(Routing::NexthopGroup::stringValue(group.config.type));
    unresolvedNexthopAction_.setValue(group.autoSize() ? "notProgrammed" : "drop");
  }

  void print() {
    if (group_.size == 0) return;
    printer_.addFrills("  Entries (left most label is the top of the stack)\n");
    for (std::uint32_t number = 0; number < group_.entries(); ++number) {
      flushIfFull(printer_);
      printEntry(number);
    }
  }

 private:
  void printEntry(std::uint32_t number);
  void printDestination(const Entry& entry);
  void printLabels(const Kesh::MplsLabelOperation& labels);
  void setVia(const Entry& entry);
  void addVia();
  void addL2Via();
  void printUnprogrammed();
  void printProgrammed(const Entry& entry);
  void printResolution(const Entry& entry, bool hierarchical);
  bool printSecondLevel(const Entry& entry);
  void printNeighbour(const Entry& entry);
  void printCounters(const Entry& entry);
  bool isShared(const NexthopGroupVia& via) const;
  void addAction() { printer_.addAttributes("", 1, unresolvedNexthopAction_.getArg()); }

  scrivo::Printer& printer_;
  const NexthopGroupHelper& helper_;
  const ShownGroup& group_;
  const char* const actionText_;
  const char* const stackWord_;
  scrivo::IntAttrInfo entryIndex_{printer_, "entryIndex"};
  scrivo::StringAttrInfo nexthopGroupType_{printer_, "nexthopGroupType"};
  scrivo::StringAttrInfo unresolvedNexthopAction_{printer_, "unresolvedNexthopAction"};
  scrivo::StringAttrInfo destinationAddr_{printer_, "destinationAddr"};
  scrivo::StringAttrInfo mplsLabelOperation_{printer_, "mplsLabelOperation"};
  scrivo::IntAttrInfo label_{printer_, ""};
  scrivo::StringAttrInfo nexthopAddr_{printer_, "nexthopAddr"};
  scrivo::StringAttrInfo route_{printer_, "route"};
  scrivo::StringAttrInfo l3Intf_{printer_, "l3Intf"};
  scrivo::BoolAttrInfo isTunnelVia_{printer_, "isTunnelVia"};
  scrivo::Uint64AttrInfo nextLevelFecIndex_{printer_, "nextLevelFecIndex"};
  scrivo::Uint64AttrInfo platformNextLevelFecIndex_{printer_, "platformNextLevelFecIndex"};
  scrivo::IntAttrInfo vlanId_{printer_, "vlanId"};
  scrivo::StringAttrInfo l2Intf_{printer_, "l2Intf"};
  scrivo::StringAttrInfo macAddr_{printer_, "macAddr"};
  scrivo::Uint64AttrInfo packets_{printer_, "packets"};
  scrivo::Uint64AttrInfo bytes_{printer_, "bytes"};
  scrivo::BoolAttrInfo sharedTunnel_{printer_, "sharedTunnel"};
};

void EntryListing::printEntry(std::uint32_t number) {
  static const NexthopGroupVia noVia;
  const auto index = static_cast<std::uint16_t>(number);
  const auto& destination = group_.config.destinationIp[index];
  if (destination.af() == Kesh::AddressFamily::unset) {
    printer_.addFrills("    %d  (%s)\n", static_cast<int>(number), actionText_);
    return;
  }
  const auto& labels = group_.config.mplsLabelStack[index];
  const bool plainLabelled = isLabelled(group_.config.type) && labels.stackSize() == 0;
  const auto* const via = group_.adjacency ? group_.adjacency->via.find(index) : nullptr;
  const Entry entry{number, destination, labels, via ? *via : noVia,
                    group_.config.type != NexthopGroupType::ip && !plainLabelled};
  entryIndex_.setValue(static_cast<int>(number));
  destinationAddr_.setValue(destination.stringValue());
  printer_.startDictEntry(entryIndex_);
  printer_.addAttributes("    %d", 1, entryIndex_.getArg());
  printer_.addAttributes("", 1, nexthopGroupType_.getArg());
  printDestination(entry);
  setVia(entry);
  !entry.via ? printUnprogrammed() : printProgrammed(entry);
  printer_.endDictEntry();
}

void EntryListing::printDestination(const Entry& entry) {
  if (!isLabelled(group_.config.type) || entry.labels.stackSize() == 0) {
    printer_.addAttributes("  %s\n", 1, destinationAddr_.getArg());
    return;
  }
  printLabels(entry.labels);
  printer_.addFrills("%s", stackWord_);
  printer_.addAttributes(" %s\n", 1, destinationAddr_.getArg());
}

void EntryListing::printLabels(const Kesh::MplsLabelOperation& labels) {
  mplsLabelOperation_.setValue(Kesh::stringValue(labels.operation()));
  printer_.addAttributes("  %s label-stack ", 1, mplsLabelOperation_.getArg());
  printer_.startList("mplsLabelStack");
  for (std::uint32_t position = labels.stackSize(); position-- > 0;) {
    const auto label = labels.label(Kesh::MplsStackEntryIndex(position));
    label_.setValue(static_cast<int>(label.value()));
    printer_.addAttributes("%d ", 1, label_.getArg());
  }
  printer_.endList();
}

/// A zero hop and an empty route show in the family of the destination.
void EntryListing::setVia(const Entry& entry) {
  auto hop = entry.via.hop;
  if (hop.isAddrZero()) hop.afIs(entry.destination.af());
  auto route = entry.via.route;
  if (route == Kesh::IpGenPrefix()) route.afIs(entry.destination.af());
  nexthopAddr_.setValue(hop.stringValue());
  route_.setValue(route.stringValue());
  l3Intf_.setValue(entry.via.l3Intf.stringValue());
  vlanId_.setValue(static_cast<int>(entry.via.vlanId));
  l2Intf_.setValue(entry.via.l2Intf.stringValue());
  macAddr_.setValue(entry.via.macAddr.stringValue());
  isTunnelVia_.setValue(entry.tunnelVia);
  nextLevelFecIndex_.setValue(entry.via.fecId.value());
}

void EntryListing::addVia() {
  printer_.addAttributes("", 4, l3Intf_.getArg(), route_.getArg(), nexthopAddr_.getArg(),
                         isTunnelVia_.getArg());
}

void EntryListing::addL2Via() {
  printer_.addAttributes("", 3, vlanId_.getArg(), l2Intf_.getArg(), macAddr_.getArg());
}

void EntryListing::printUnprogrammed() {
  addVia();
  printer_.startSubmodel("l2Via");
  addL2Via();
  printer_.endSubmodel();
  addAction();
  printer_.addFrills("         (%s)\n", actionText_);
}

void EntryListing::printProgrammed(const Entry& entry) {
  const bool hierarchical = group_.config.hierarchicalFecsEnabled && isValidFec(entry.via.fecId);
  const bool hasNeighbour = entry.hasL3() && !hierarchical;
  addVia();
  printResolution(entry, hierarchical);
  printer_.startSubmodel("l2Via");
  addL2Via();
  if (hasNeighbour) printNeighbour(entry);
  printer_.endSubmodel();
  if (hasNeighbour && entry.via.macAddr == Kesh::EthAddr()) addAction();
  if (helper_.hasCounters()) printCounters(entry);
}

void EntryListing::printResolution(const Entry& entry, bool hierarchical) {
  if (hierarchical && printSecondLevel(entry)) return;
  if (entry.via.hop == entry.destination) {
    printer_.addFrills("         %sdestination directly connected, %s\n", entry.tunnelWord(),
                       l3Intf_.getArg());
  } else if (!entry.hasL3()) {
    addAction();
    printer_.addFrills("         %sunreachable (%s)\n", entry.tunnelWord(), actionText_);
  } else {
    printer_.addFrills("         Via %s, %s  (%s)\n", nexthopAddr_.getArg(), l3Intf_.getArg(),
                       route_.getArg());
  }
}

/// False for a FEC that no tunnel can lead to: the entry then shows as any other.
bool EntryListing::printSecondLevel(const Entry& entry) {
  const auto platformFec = Vanta::Fib::convertFecIdForUseByTunnel(entry.via.fecId);
  if (!isValidFec(platformFec)) return false;
  platformNextLevelFecIndex_.setValue(platformFec.value());
  printer_.addFrills("         %sdestination is using ", entry.tunnelWord());
  printer_.addArgs("second level FEC %llu (platform FEC %llu), ", nextLevelFecIndex_.getArg(),
                   platformNextLevelFecIndex_.getArg());
  printer_.addFrills("resolved through %s\n", route_.getArg());
  return true;
}

void EntryListing::printNeighbour(const Entry& entry) {
  if (entry.via.macAddr == Kesh::EthAddr()) {
    printer_.addFrills("         ARP Unresolved (%s)", actionText_);
  } else {
    printer_.addFrills("         %s", macAddr_.getArg());
    if (entry.via.l2Intf) {
      printer_.addFrills(", %s", l2Intf_.getArg());
    } else {
      printer_.addFrills(", Not learned");
    }
  }
  printer_.addFrills("\n");
}

void EntryListing::printCounters(const Entry& entry) {
  const auto counts = helper_.counterHelper()->getCounters(group_.id, entry.number);
  const bool shared = isShared(entry.via);
  packets_.setValue(counts.packets());
  bytes_.setValue(counts.bytes());
  sharedTunnel_.setValue(shared);
  printer_.addArgs("         %llu packets, %llu bytes", packets_.getArg(), bytes_.getArg());
  printer_.addAttributes("", 1, sharedTunnel_.getArg());
  printer_.addFrills("%s", shared ? " (shared)\n" : "\n");
}

bool EntryListing::isShared(const NexthopGroupVia& via) const {
  return group_.config.entryCounterType != EntryCounterType::perEntry &&
         helper_.tunnelIdMap(via.tunnelId) > 1;
}

} // namespace

void printEntries(scrivo::Printer& printer, const NexthopGroupHelper& helper,
                  const ShownGroup& group) {
  EntryListing(printer, helper, group).print();
}

} // namespace Rova
