// FECs with their vias, and the routing hardware's limits. FECs of adjacency type 1 live in the
// IPv6 forwarding table and all others in the IPv4 ones, whatever the family of their routes.
#include "Sections.h"

#include "state/Fec.h"
#include "state/Hardware.h"

namespace sources::snapshot {

namespace {

using Kesh::MplsLabelAndAction;
using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

// A word from a shared table may hold a label outside the range; it is written as it is.
template <class Via>
constexpr Field<Via> labelField() {
  return {
      "label",
      [](Node& node, Via& via) { via.labelAndAction.labelIs(Codec<Kesh::MplsLabel>::read(node)); },
      [](const Via& via) {
        return (via.labelAndAction.value() & 0xffffff) != Kesh::MplsLabel::null;
      },
      [](Output& out, const Via& via) {
        out.number(std::uint64_t{via.labelAndAction.value() & 0xffffff});
      }};
}

template <class Via>
constexpr Field<Via> actionField() {
  return {
      "labelAction",
      [](Node& node, Via& via) { via.labelAndAction.actionIs(Codec<std::uint8_t>::read(node)); },
      [](const Via& via) { return via.labelAndAction.action() != 0; },
      [](Output& out, const Via& via) { out.number(std::uint64_t{via.labelAndAction.action()}); }};
}

template <class Via>
constexpr Field<Via> fecViaFields[] = {
    field<Via, &Via::hop>("hop"), field<Via, &Via::intfId>("interface"), labelField<Via>(),
    actionField<Via>(),           field<Via, &Via::weight>("weight"),
};

template <class Fec>
void readVias(Node& node, Fec& fec) {
  using Via = typename Fec::ViaType;
  node.elements([&](Node& element) {
    if (fec.viaCount == Fec::maxVias) element.fail("one via more", "at most 512 vias");
    Via via;
    readFields(element, fecViaFields<Via>, via);
    fec.viaAppend(via);
  });
}

template <class Fec>
void writeVias(Output& out, const Fec& fec) {
  const auto scope = out.array(Output::Layout::row);
  const auto count = std::min(fec.viaCount, Fec::maxVias);
  for (std::uint32_t i = 0; i < count; ++i) {
    writeFields(out, fecViaFields<typename Fec::ViaType>, fec.via(Vanta::Fib::ViaIndex(i)));
  }
}

template <class Fec>
constexpr Field<Fec> fecFields[] = {
    {"vias", readVias<Fec>, [](const Fec& fec) { return fec.viaCount > 0; }, writeVias<Fec>},
    {"backupViaIndex",
     [](Node& node, Fec& fec) {
       fec.backupViaIndex = static_cast<std::uint32_t>(node.number(Vanta::Fib::ViaIndex::max));
     },
     [](const Fec& fec) { return fec.backupViaIndex != 0; },
     [](Output& out, const Fec& fec) { out.number(std::uint64_t{fec.backupViaIndex}); }},
};

constexpr bool isIp6(const Vanta::Fib6::Fec&) { return true; }
constexpr bool isIp6(const Vanta::Fib::Fec&) { return false; }

template <class Fec>
void readFecs(Node& node, Vanta::MemoryTable<FecId, Fec>& table) {
  readMap<FecId>(node, [&](FecId id, Node& value) {
    Fec fec(id);
    if (isIp6(fec) != (id.adjType() == AdjType::fib6)) {
      value.fail("a FEC of type " + std::to_string(id.rawAdjType()),
                 isIp6(fec) ? "type 1 alone: the others stand in forwardingStatus"
                            : "any type but 1: those FECs stand in forwarding6Status");
    }
    readFields(value, fecFields<Fec>, fec);
    table.insert(fec);
  });
}

template <auto Handle, auto Table>
constexpr Section fecSection(std::string_view name) {
  return {name, [](Node& node, Target& builder) { readFecs(node, *(builder.*Table)); },
          [](const state::DeviceState& device) { return (device.*Handle)->fec.members() > 0; },
          [](Output& out, const state::DeviceState& device) {
            writeTable(out, (device.*Handle)->fec, [&](const auto& fec) {
              writeFields(out, fecFields<std::decay_t<decltype(fec)>>, fec);
            });
          }};
}

using Hardware = Routing::Hardware::Status;
using Hardware6 = Routing6::Hardware::Status;

constexpr Field<Hardware> hardwareFields[] = {
    field<Hardware, &Hardware::maxUcmpWeight>("maxUcmpWeight"),
    field<Hardware, &Hardware::maxNexthopGroupSize>("maxNexthopGroupSize"),
    field<Hardware, &Hardware::nexthopGroupEntryCounterSupported>(
        "nexthopGroupEntryCounterSupported"),
    property<Hardware, &Hardware::hierarchicalFecSupported, &Hardware::hierarchicalFecSupportedIs>(
        "hierarchicalFecSupported"),
};

constexpr Field<Hardware6> hardware6Fields[] = {
    field<Hardware6, &Hardware6::maxUcmpWeight>("maxUcmpWeight"),
};

} // namespace

Section forwardingSection() {
  return fecSection<&state::DeviceState::forwardingStatus, &state::DeviceBuilder::fecs>(
      "forwardingStatus");
}
Section forwarding6Section() {
  return fecSection<&state::DeviceState::forwarding6Status, &state::DeviceBuilder::fecs6>(
      "forwarding6Status");
}
Section policyForwardingSection() {
  return fecSection<&state::DeviceState::policyForwardingStatus, &state::DeviceBuilder::policyFecs>(
      "policyForwardingStatus");
}

Section hardwareSection() {
  return entitySection<&state::DeviceState::routingHardwareStatus, hardwareFields,
                       Output::Layout::row>("routingHardwareStatus");
}
Section hardware6Section() {
  return entitySection<&state::DeviceState::routing6HardwareStatus, hardware6Fields,
                       Output::Layout::row>("routing6HardwareStatus");
}

} // namespace sources::snapshot
