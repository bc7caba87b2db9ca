// Interfaces with their descriptions and addresses, and their neighbours.
#include "Sections.h"

#include "state/Interface.h"

namespace sources::snapshot {

namespace {

using Interface::IntfConfig;

/// A description apart from its interface, which an `IntfConfig` cannot be without.
struct Description {
  Lumo::String description;
};
constexpr Field<Description> descriptionFields[] = {
    field<Description, &Description::description>("description"),
};

void readIntfConfig(Node& node, Target& builder) {
  readMap<Kesh::IntfId>(node, [&](const Kesh::IntfId& intfId, Node& value) {
    Description read;
    readFields(value, descriptionFields, read);
    builder.state.allIntfConfig->configs.insertOrAssign(
        intfId, Lumo::newEntity<IntfConfig>(intfId, read.description));
  });
}

void writeIntfConfig(Output& out, const state::DeviceState& device) {
  writeMap(out, device.allIntfConfig->configs, [&](const Lumo::Ptr<const IntfConfig>& config) {
    writeFields(out, descriptionFields, Description{config ? config->description : Lumo::String()});
  });
}

constexpr Field<Ip::IpIntfStatus> ipStatusFields[] = {
    field<Ip::IpIntfStatus, &Ip::IpIntfStatus::vrf>("vrf"),
    field<Ip::IpIntfStatus, &Ip::IpIntfStatus::primary>("primary"),
    field<Ip::IpIntfStatus, &Ip::IpIntfStatus::activeSecondary>("activeSecondary"),
};

constexpr Field<Ip6::Ip6IntfStatus> ip6StatusFields[] = {
    field<Ip6::Ip6IntfStatus, &Ip6::Ip6IntfStatus::vrf>("vrf"),
    field<Ip6::Ip6IntfStatus, &Ip6::Ip6IntfStatus::addr>("addr"),
};

using Arp::Table::ArpEntry;
using Arp::Table::ArpKey;

/// A neighbour with its key's parts side by side.
struct Neighbor {
  Vrf::VrfIdMap::VrfId vrfId;
  Kesh::IntfId intfId;
  Kesh::IpGenAddr address;
  Kesh::EthAddr ethAddr;
};
constexpr Field<Neighbor> neighborFields[] = {
    field<Neighbor, &Neighbor::vrfId>("vrfId"),
    field<Neighbor, &Neighbor::intfId>("interface").asRequired(),
    field<Neighbor, &Neighbor::address>("address").asRequired(),
    field<Neighbor, &Neighbor::ethAddr>("ethAddr"),
};

std::string neighborText(const ArpKey& key) {
  return "neighbour " + key.address.stringValue().str() + " on " + quotedKey(key.intfId);
}

void readNeighbors(Node& node, Target& builder) {
  Unique<ArpKey> unique;
  node.elements([&](Node& element) {
    Neighbor read;
    readFields(element, neighborFields, read);
    const ArpKey key{read.vrfId, read.intfId, read.address};
    unique.add(key);
    const bool isIp4 = key.address.af() == Kesh::AddressFamily::ip4;
    (isIp4 ? builder.arp : builder.neighbors)->insert({key, read.ethAddr});
  });
  unique.check(node, neighborText);
}

void writeNeighbors(Output& out, const Vanta::VantaMap<ArpKey, ArpEntry>& table) {
  forEachRecord(table, [&](const ArpEntry& entry) {
    const auto& [key, ethAddr] = entry;
    writeFields(out, neighborFields, Neighbor{key.vrfId, key.intfId, key.address, ethAddr});
  });
}

void writeAllNeighbors(Output& out, const state::DeviceState& device) {
  const auto scope = out.array(Output::Layout::lines);
  writeNeighbors(out, device.arpVanta->arpEntry);
  writeNeighbors(out, device.arpVanta->neighborEntry);
}

} // namespace

Section intfConfigSection() {
  return {"allIntfConfig", readIntfConfig,
          [](const state::DeviceState& device) { return !device.allIntfConfig->configs.empty(); },
          writeIntfConfig};
}

Section ipSection() {
  return recordSection<&state::DeviceState::ipStatus, &Ip::Status::ipIntfStatus, ipStatusFields>(
      "ipStatus");
}

Section ip6Section() {
  return recordSection<&state::DeviceState::ip6Status, &Ip6::Status::ip6IntfStatus,
                       ip6StatusFields>("ip6Status");
}

Section arpSection() {
  return {"arpVanta", readNeighbors,
          [](const state::DeviceState& device) {
            const auto& arp = *device.arpVanta;
            return arp.arpEntry.members() + arp.neighborEntry.members() > 0;
          },
          writeAllNeighbors};
}

} // namespace sources::snapshot
