#include "rova/nexthopgroup/NexthopGroupSummaryHelper.h"

#include "rova/core/Interrupted.h"
#include "rova/core/Trace.h"
#include "scrivo/Printer.h"
#include "state/NexthopGroupSize.h"

namespace Rova {

using Routing::NexthopGroup::NexthopGroupType;

LUMO_DEFINE_TYPE(NexthopGroupSummaryHelper);

namespace {

/// The types by number as the table of the text calls them.
constexpr const char* typeTexts[] = {"Invalid", "IP in IP",      "GRE",           "MPLS",
                                     "IP",      "MPLS over GRE", "MPLS over UDP", "VXLAN"};

const char* typeText(NexthopGroupType type) {
  const auto number = static_cast<std::size_t>(type);
  return typeTexts[number < std::size(typeTexts) ? number : 0];
}

void printTypes(scrivo::Printer& printer, const NexthopGroupSummaryHelper& summary) {
  scrivo::StringAttrInfo type(printer, "", true);
  scrivo::UintAttrInfo count(printer, "");
  printer.startDict("numNexthopGroupsPerType");
  if (summary.nhgCount() != 0) {
    printer.addFrills("\n%20s %12s\n-------------------- ------------\n", "Nexthop Group Type",
                      "Configured");
    for (const auto& [number, groups] : summary.nhgPerTypeMap()) {
      type.setValue(Routing::NexthopGroup::stringValue(number));
      count.setValue(groups);
      printer.startSimpleDictEntry(type);
      printer.addFrills("%20s ", typeText(number));
      printer.addAttributes("%12d\n", 1, count.getArg());
      printer.endSimpleDictEntry();
    }
    printer.addFrills("\n");
  }
  printer.endDict();
}

void printSizes(scrivo::Printer& printer, const NexthopGroupSummaryHelper& summary) {
  scrivo::UintAttrInfo size(printer, "", true);
  scrivo::UintAttrInfo count(printer, "");
  printer.startDict("numNexthopGroupsPerSize");
  if (summary.nhgCount() != 0) {
    printer.addFrills("%20s %12s\n-------------------- ------------\n", "Nexthop Group Size",
                      "Configured");
    for (const auto& [entries, groups] : summary.nhgPerSizeMap()) {
      size.setValue(entries);
      count.setValue(groups);
      printer.startSimpleDictEntry(size);
      printer.addAttributes("%20d %12d\n", 2, size.getArg(), count.getArg());
      printer.endSimpleDictEntry();
    }
  }
  printer.endDict();
}

void printNexthopGroupSummary(scrivo::Printer& printer, const NexthopGroupSummaryHelper& summary) {
  ROVA_TRACE(8, "void Rova::printNexthopGroupSummary(scrivo::Printer)");
  scrivo::UintAttrInfo count(printer, "numNexthopGroups");
  scrivo::UintAttrInfo unprogrammed(printer, "numUnprogrammedNexthopGroups");
  count.setValue(summary.nhgCount());
  unprogrammed.setValue(summary.nhgUnprogrammedCount());
  printer.start();
  printer.addAttributes("Number of Nexthop Groups configured: %d\n", 1, count.getArg());
  printer.addAttributes("Number of unprogrammed Nexthop Groups: %d\n", 1, unprogrammed.getArg());
  printTypes(printer, summary);
  printSizes(printer, summary);
  printer.end();
}

} // namespace

/// A group without an identifier reads as the table's default entry, which normally names no
/// programmed group.
bool NexthopGroupSummaryHelper::isProgrammed(const Lumo::Name& name) const {
  const auto* const status = nhgHwStatus_->vrfStatus.find(vrfName_);
  bool found = false;
  const auto id = nhgEntryStatus_->nexthopGroupEntry
                      .safeLookup(NexthopGroup::NexthopGroupEntryKey(name), found, 0)
                      ->nhgId;
  return status && status->nexthopGroupAdj.find(id);
}

void NexthopGroupSummaryHelper::processNexthopGroups() {
  ROVA_TRACE(8, "void Rova::NexthopGroupSummaryHelper::processNexthopGroups()");
  nhgCount_ = static_cast<std::uint32_t>(nhgConfig_->nexthopGroup.size());
  const std::uint32_t hardwareSize = routingHwStatus_->maxNexthopGroupSize;
  nhgConfig_->nexthopGroup.forEach([&](const auto& name, const auto& group) {
    nhgPerTypeIs(group->type, nhgPerType(group->type) + 1);
    const std::uint32_t size = getNhgSize(group, hardwareSize);
    nhgPerSizeIs(size, nhgPerSize(size) + 1);
    if (!isProgrammed(name)) ++nhgUnprogrammedCount_;
  });
}

void NexthopGroupSummaryHelper::render(std::uint32_t fd, std::uint32_t fmt) {
  ROVA_TRACE(8, "void Rova::NexthopGroupSummaryHelper::render(U32, U32)");
  try {
    scrivo::Printer printer(static_cast<int>(fd), fmt);
    processNexthopGroups();
    printNexthopGroupSummary(printer, *this);
    printer.close();
  } catch (const scrivo::sigintException& interrupt) {
    reportInterrupt(interrupt);
  }
}

} // namespace Rova
