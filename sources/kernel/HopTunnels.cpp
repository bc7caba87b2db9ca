#include "sources/kernel/HopTunnels.h"

#include <algorithm>

namespace sources::kernel {

namespace {

using Kesh::IpGenAddr;
using Tunnel::TunnelTable::EncapId;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::TunnelKind;
using Tunnel::TunnelTable::TunnelVia;

constexpr int segmentPrefixLength = 128;

/// Where the packets of a tunnel leave. Interfaces order by identifier, which is cheaper than by
/// name and as good for numbering.
struct Exit {
  IpGenAddr nexthop; ///< zero without gateway
  std::uint64_t interface = 0;

  TunnelVia via(EncapId encap = {}) const {
    return {{nexthop, Kesh::IntfId::fromValue(interface)}, encap};
  }
  friend auto operator<=>(const Exit&, const Exit&) = default;
};

struct LabelTunnel {
  Exit exit;
  LabelStack labels;
  friend auto operator<=>(const LabelTunnel&, const LabelTunnel&) = default;
};

struct SegmentTunnel {
  Exit exit;
  Segments segments;
  friend auto operator<=>(const SegmentTunnel&, const SegmentTunnel&) = default;
};

struct VxlanTunnel {
  RemoteEnd remote;
  Kesh::EthAddr routerMac; ///< zero when no neighbour entry gives it
  friend auto operator<=>(const VxlanTunnel&, const VxlanTunnel&) = default;
};

Exit exitOf(const Via& via, bool ip6) {
  const IpGenAddr zero = ip6 ? IpGenAddr(Kesh::Ip6Addr()) : IpGenAddr(Kesh::IpAddr());
  return {via.hasGateway() ? via.hop : zero, via.exit().value()};
}

/// The VXLAN devices, and who is behind them.
class VxlanDevices {
 public:
  VxlanDevices(const KernelState& kernel, const Interfaces& interfaces) {
    std::set<std::uint32_t> indexes;
    for (const Link& link : kernel.links) {
      if (!link.isVxlan) continue;
      indexes.insert(link.index);
      devices_.insert(interfaces.find(link.index).id.value());
    }
    for (const Neighbour& one : kernel.neighbours) {
      if (!indexes.contains(one.interface)) continue;
      neighbours_[{one.address, interfaces.find(one.interface).id.value()}] = one.ethernet;
    }
  }

  bool contains(const Kesh::IntfId& interface) const {
    return devices_.contains(interface.value());
  }
  Kesh::EthAddr ethernetOf(const Exit& exit) const {
    const auto found = neighbours_.find(exit);
    return found == neighbours_.end() ? Kesh::EthAddr() : found->second;
  }

 private:
  std::set<std::uint64_t> devices_;
  std::map<Exit, Kesh::EthAddr> neighbours_;
};

template <class Content>
using ViasByTunnel = std::map<Content, std::vector<Via*>>;

/// Numbers the tunnels of a kind, names them in their vias and calls `enter(id, tunnel)` for each.
template <class Content, class Enter>
void numberTunnels(TunnelKind kind, const ViasByTunnel<Content>& tunnels, Enter&& enter) {
  std::uint64_t number = 0;
  for (const auto& [tunnel, vias] : tunnels) {
    const TunnelId id(TunnelId::convertToTunnelValue(static_cast<std::uint64_t>(kind), ++number));
    for (Via* const via : vias) via->tunnel = id;
    enter(id, tunnel);
  }
}

class HopTunnels {
 public:
  HopTunnels(const KernelState& kernel, const Interfaces& interfaces)
      : encapsulations_(kernel.encapsulations.byNumber()), vxlan_(kernel, interfaces) {}

  void add(ViaList& list) {
    const auto has = [&](auto isKind) { return std::ranges::any_of(list.vias, isKind); };
    const auto pushesSegments = [&](const Via& via) { return find<Segments>(via); };
    const bool pushesStack = has([&](const Via& via) { return find<LabelStack>(via); });
    const bool mixed = has(pushesSegments) && !std::ranges::all_of(list.vias, pushesSegments);
    for (Via& via : list.vias) {
      if (pushesStack || mixed) {
        byLabels_[{exitOf(via, list.ip6), labelsOf(via)}].push_back(&via);
      } else {
        addOwnTunnel(via, list.ip6);
      }
    }
  }

  void enter(state::DeviceBuilder& builder) const {
    enterLabelTunnels(*builder.state.tunnelFib);
    enterSegmentTunnels(builder.state);
    numberTunnels(TunnelKind::evpnVxlan, vxlanTunnels_,
                  [&](TunnelId id, const VxlanTunnel& tunnel) {
                    Tunnel::TunnelTable::EvpnVxlanTunnelEntry entry(id);
                    entry.vtepAddr = tunnel.remote.address;
                    entry.vni = tunnel.remote.vni;
                    entry.routerMac = tunnel.routerMac;
                    builder.state.evpnVxlanTunnelTable->entries.insertOrAssign(id, entry);
                  });
  }

 private:
  /// What the via pushes, null when it is of another type.
  template <class Type>
  const Type* find(const Via& via) const {
    return std::get_if<Type>(encapsulations_[via.encapsulation]);
  }

  LabelStack labelsOf(const Via& via) const {
    if (const auto* const stack = find<LabelStack>(via)) return *stack;
    LabelStack stack;
    if (via.label == Kesh::MplsLabel::null) return stack;
    stack.operationIs(Kesh::LabelAction::push);
    stack.labelAppend(Kesh::MplsLabel(via.label));
    return stack;
  }

  void addOwnTunnel(Via& via, bool ip6) {
    const Exit exit = exitOf(via, ip6);
    if (const auto* const segments = find<Segments>(via)) {
      bySegments_[{exit, *segments}].push_back(&via);
    }
    const auto* const remote = find<RemoteEnd>(via);
    if (remote && vxlan_.contains(via.exit())) {
      vxlanTunnels_[{*remote, vxlan_.ethernetOf(exit)}].push_back(&via);
    }
  }

  void enterLabelTunnels(Tunnel::TunnelFib::TunnelFib& fib) const {
    std::map<LabelStack, EncapId> stacks;
    for (const auto& [tunnel, vias] : byLabels_) stacks[tunnel.labels];
    std::uint32_t number = 0;
    for (auto& [stack, id] : stacks) {
      id = EncapId(static_cast<std::uint32_t>(EncapKind::mpls) << 28 | ++number);
      fib.labelStacks.insertOrAssign(id, stack);
    }
    numberTunnels(TunnelKind::direct, byLabels_, [&](TunnelId id, const LabelTunnel& tunnel) {
      fib.entries.insertOrAssign(id, {id, {tunnel.exit.via(stacks[tunnel.labels])}, {}});
    });
  }

  void enterSegmentTunnels(state::DeviceState& device) const {
    if (bySegments_.empty()) return;
    const auto table = Lumo::newEntity<Tunnel::TunnelTable::SrTunnelTable>();
    numberTunnels(TunnelKind::sr, bySegments_, [&](TunnelId id, const SegmentTunnel& tunnel) {
      const Kesh::Ip6Prefix endpoint(tunnel.segments.back(), segmentPrefixLength);
      table->entries.insertOrAssign(id, {id, endpoint});
      device.tunnelFib->entries.insertOrAssign(id, {id, {tunnel.exit.via()}, {}});
    });
    device.tunnelTableDir->entityIs("sr", table);
  }

  const std::vector<const Encapsulation*> encapsulations_;
  const VxlanDevices vxlan_;
  ViasByTunnel<LabelTunnel> byLabels_;
  ViasByTunnel<SegmentTunnel> bySegments_;
  ViasByTunnel<VxlanTunnel> vxlanTunnels_;
};

} // namespace

void enterHopTunnels(std::span<ViaList* const> lists, const KernelState& kernel,
                     const Interfaces& interfaces, state::DeviceBuilder& builder) {
  HopTunnels tunnels(kernel, interfaces);
  for (ViaList* const list : lists) tunnels.add(*list);
  tunnels.enter(builder);
}

} // namespace sources::kernel
