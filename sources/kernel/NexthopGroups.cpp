// An entry whose member is gone or a blackhole has neither destination nor via, one whose member is
// not in use has its destination alone. An entry without a gateway has the zero address for
// destination: with none at all it would read as one that drops.
#include "sources/kernel/NexthopGroups.h"

#include "sources/kernel/Gateways.h"

namespace sources::kernel {

namespace {

using Kesh::AddressFamily;
using Routing::Hardware::NexthopGroupAdj;
using Routing::Hardware::NexthopGroupVia;
using Routing::NexthopGroup::EntryCounterType;
using Routing::NexthopGroup::NexthopGroupConfigEntry;
using Routing::NexthopGroup::NexthopGroupType;

/// One entry of a group to be.
struct Entry {
  const Nexthop* object; ///< null for one that is gone
  std::optional<std::uint64_t> packets;

  bool hasHop() const { return object && !object->blackhole; }
};

/// IPv6 as soon as one entry is: a group's addresses are all shown in one family.
AddressFamily familyOf(const std::vector<Entry>& entries) {
  AddressFamily family = AddressFamily::unset;
  for (const Entry& entry : entries) {
    if (entry.object && family != AddressFamily::ip6) family = entry.object->family;
  }
  return family;
}

/// The gateway, or zero, in the family of the group.
Kesh::IpGenAddr destinationOf(const Hop& hop, AddressFamily family) {
  const bool ip6 = family == AddressFamily::ip6;
  if (hop.gateway.af() != AddressFamily::unset) {
    return ip6 ? Kesh::IpGenAddr(ip6Form(hop.gateway)) : hop.gateway;
  }
  return ip6 ? Kesh::IpGenAddr(Kesh::Ip6Addr()) : Kesh::IpGenAddr(Kesh::IpAddr());
}

class GroupFiller {
 public:
  GroupFiller(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
              state::DeviceBuilder& builder)
      : interfaces_(interfaces),
        vrfs_(vrfs),
        builder_(builder),
        gateways_(kernel),
        encapsulations_(kernel.encapsulations.byNumber()) {
    objects_.reserve(kernel.nexthops.size());
    for (const Nexthop& object : kernel.nexthops) objects_[object.id] = &object;
  }

  void fill(const Nexthop& object) {
    const std::vector<Entry> entries = entriesOf(object);
    const Lumo::Name name("nexthop-" + std::to_string(object.id));
    builder_.state.nhgConfig->nexthopGroup.insertOrAssign(name, configOf(name, entries));
    builder_.nexthopGroups->insert({NexthopGroup::NexthopGroupEntryKey(name), object.id});
    enterAdjacency(object.id, entries);
    enterCounters(object.id, entries);
  }

 private:
  std::vector<Entry> entriesOf(const Nexthop& object) const {
    if (object.group.empty()) return {{&object, {}}};
    std::vector<Entry> entries;
    for (const Nexthop::Member& member : object.group) {
      const auto found = objects_.find(member.id);
      entries.push_back({found == objects_.end() ? nullptr : found->second, member.packets});
    }
    return entries;
  }

  Lumo::Ptr<const NexthopGroupConfigEntry> configOf(const Lumo::Name& name,
                                                    const std::vector<Entry>& entries) const {
    const auto config = Lumo::newEntity<NexthopGroupConfigEntry>(name);
    config->type = NexthopGroupType::ip;
    config->size = static_cast<std::uint32_t>(entries.size());
    config->addressFamily = familyOf(entries);
    config->entryCounterType = EntryCounterType::perEntry;
    for (std::uint16_t index = 0; index < entries.size(); ++index) {
      if (!entries[index].hasHop()) continue;
      const Hop& hop = entries[index].object->hop;
      const LabelStack labels = labelsOf(hop);
      if (labels.stackSize() != 0) config->type = NexthopGroupType::mpls;
      config->mplsLabelStack.set(index, labels);
      config->destinationIp.set(index, destinationOf(hop, config->addressFamily));
    }
    return config;
  }

  /// What the hop pushes, as a group holds it: the top label last.
  LabelStack labelsOf(const Hop& hop) const {
    LabelStack labels;
    if (hop.label != Kesh::MplsLabel::null) labels.labelAppend(Kesh::MplsLabel(hop.label));
    if (const auto* const stack = std::get_if<LabelStack>(encapsulations_[hop.encapsulation])) {
      for (std::uint8_t at = stack->stackSize(); at-- > 0;) {
        labels.labelAppend(stack->label(Kesh::MplsStackEntryIndex(at)));
      }
    }
    if (labels.stackSize() != 0) labels.operationIs(Kesh::LabelAction::push);
    return labels;
  }

  /// Enters the group in each VRF that it is programmed in.
  void enterAdjacency(std::uint32_t id, const std::vector<Entry>& entries) {
    std::set<std::uint32_t> tables{RT_TABLE_MAIN};
    for (const Entry& entry : entries) {
      if (entry.object) tables.insert(interfaces_.find(entry.object->hop.interface).table);
    }
    for (const std::uint32_t table : tables) {
      auto& vrfStatus = builder_.state.nhgHwStatus->vrfStatus;
      const L3::VrfName& vrf = vrfs_.vrf(table).name;
      auto* status = vrfStatus.find(vrf);
      if (!status) status = &vrfStatus.insertOrAssign(vrf, {});
      status->nexthopGroupAdj.insertOrAssign(id, adjacencyOf(entries));
    }
  }

  NexthopGroupAdj adjacencyOf(const std::vector<Entry>& entries) const {
    const AddressFamily family = familyOf(entries);
    NexthopGroupAdj adjacency;
    for (std::uint16_t index = 0; index < entries.size(); ++index) {
      if (!entries[index].hasHop()) continue;
      const Nexthop& object = *entries[index].object;
      const bool inUse = !object.hop.dead && !object.linkDown && object.hop.interface != 0;
      if (inUse) adjacency.via.insertOrAssign(index, viaOf(object.hop, family));
    }
    adjacency.numProgrammedTunnels = static_cast<std::uint32_t>(adjacency.via.size());
    return adjacency;
  }

  NexthopGroupVia viaOf(const Hop& hop, AddressFamily family) const {
    NexthopGroupVia via;
    via.route = gateways_.prefixOf(hop);
    via.hop = destinationOf(hop, family);
    via.l3Intf = via.l2Intf = interfaces_.find(hop.interface).id;
    via.macAddr = gateways_.ethernetOf(hop);
    return via;
  }

  void enterCounters(std::uint32_t id, const std::vector<Entry>& entries) {
    for (std::uint32_t index = 0; index < entries.size(); ++index) {
      if (!entries[index].packets) continue;
      const std::uint64_t counter = ++lastCounter_;
      builder_.counterKeys->insert({{id, index}, 0, counter});
      builder_.counters->insert({Gaugex::CounterIndex(counter), *entries[index].packets, 0});
      builder_.state.routingHardwareStatus->nexthopGroupEntryCounterSupported = true;
    }
  }

  const Interfaces& interfaces_;
  const Vrfs& vrfs_;
  state::DeviceBuilder& builder_;
  const Gateways gateways_;
  const std::vector<const Encapsulation*> encapsulations_;
  std::unordered_map<std::uint32_t, const Nexthop*> objects_;
  std::uint64_t lastCounter_ = 0;
};

} // namespace

void fillNexthopGroups(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                       state::DeviceBuilder& builder) {
  if (kernel.nexthops.empty()) return; // most devices: nothing needs to be looked up
  GroupFiller filler(kernel, interfaces, vrfs, builder);
  for (const Nexthop& object : kernel.nexthops) {
    if (!object.forwardsFrames) filler.fill(object);
  }
}

} // namespace sources::kernel
