// Devices whose routes lead over tunnels and policies, and the host table's.
#include "Generator.h"
#include "Random.h"

#include <string>

namespace bench {

namespace {

using Tunnel::TunnelFib::TunnelFibEntry;
using Tunnel::TunnelTable::EncapId;
using Tunnel::TunnelTable::EncapKind;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::TunnelKind;
using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

Kesh::IpAddr hop(std::size_t number) {
  return Kesh::IpAddr::fromHost(0x0a000001u + static_cast<std::uint32_t>(number));
}

Kesh::IntfId interfaceOf(const char* kind, std::size_t number) {
  return Kesh::IntfId(Lumo::String(kind + std::to_string(number + 1)));
}

Kesh::IntfId ethernet(std::size_t number) { return interfaceOf("Ethernet", number % 48); }

TunnelId tunnelOf(TunnelKind kind, std::size_t number) {
  return TunnelId(TunnelId::convertToTunnelValue(static_cast<std::uint64_t>(kind), number + 1));
}

Kesh::IntfId interfaceOf(TunnelId tunnel) {
  return Kesh::DynamicTunnelIntfId::tunnelIdToIntfId(tunnel.value());
}

/// Enters a stack of three labels with six digits.
EncapId addLabelStack(Tunnel::TunnelFib::TunnelFib& fib, std::size_t number) {
  const EncapId id(static_cast<std::uint32_t>(EncapKind::mpls) << 28 |
                   static_cast<std::uint32_t>(number + 1));
  Kesh::MplsLabelOperation stack;
  stack.operationIs(Kesh::LabelAction::push);
  for (const std::uint32_t base : {100000u, 400000u, 900000u}) {
    stack.labelAppend(Kesh::MplsLabel(base + static_cast<std::uint32_t>(number % 100000)));
  }
  fib.labelStacks.insertOrAssign(id, stack);
  return id;
}

/// Enters a tunnel; `viaOf` makes a via without encapsulation, which becomes a stack of its own.
template <class ViaOf>
void addTunnel(Tunnel::TunnelFib::TunnelFib& fib, TunnelId id, std::size_t firstVia,
               std::size_t vias, ViaOf viaOf) {
  TunnelFibEntry entry{id, {}, {}};
  for (std::size_t at = firstVia; at < firstVia + vias; ++at) {
    entry.tunnelVia.push_back({viaOf(at), addLabelStack(fib, at)});
  }
  fib.entries.insertOrAssign(id, std::move(entry));
}

void addFec(state::DeviceBuilder& device, std::size_t number, Kesh::IpAddr nexthop,
            Kesh::IntfId intfId) {
  Vanta::Fib::Fec fec(FecId(AdjType::fib, number + 1));
  Vanta::Fib::Via via;
  via.hop = nexthop;
  via.intfId = intfId;
  fec.viaAppend(via);
  device.fecs->insert(fec);
}

/// Enters a route for each prefix on a FEC of that type, drawn from `fecs` behind `firstFec`.
void addRoutes(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes,
               AdjType type, std::size_t firstFec, std::size_t fecs) {
  Random random(prefixes.size());
  auto& routes = *device.defaultVrf().routes;
  for (const Kesh::Prefix& prefix : prefixes) {
    Vanta::Fib::Route route;
    route.key = prefix;
    route.routeType = Routing::Fib::RouteType::bgpInternal;
    route.preferenceIs(200);
    route.fecId = FecId(type, firstFec + random.below(fecs) + 1);
    routes.insert(route);
  }
  routes.members(); // puts them in order
}

void addEndpoint(Tunnel::TunnelTable::EndpointTable& table, TunnelId id, std::size_t number) {
  const auto address = (198u << 24 | 18u << 16) + static_cast<std::uint32_t>(number);
  table.entries.insertOrAssign(id, {id, Kesh::pfx(address, 32)});
}

void addPolicy(state::DeviceBuilder& device, std::size_t number) {
  constexpr std::size_t segmentLists = 2, tunnelVias = 2;
  const FecId id(AdjType::srTePolicy, number + 1);
  device.state.srTePolicyStatus->fecIdToPolicyKey.insertOrAssign(
      id, {{hop(number)}, static_cast<std::uint32_t>(number % 1000 + 1)});
  Vanta::Fib::Fec fec(id);
  for (std::size_t list = 0; list < segmentLists; ++list) {
    const std::size_t at = number * segmentLists + list;
    const TunnelId tunnel = tunnelOf(TunnelKind::sr, at);
    addTunnel(*device.state.tunnelFib, tunnel, at * tunnelVias, tunnelVias, [](std::size_t via) {
      return Tunnel::TunnelTable::Via{hop(via), ethernet(via)};
    });
    Vanta::Fib::Via via;
    via.intfId = interfaceOf(tunnel);
    via.labelAndAction.labelIs(Kesh::MplsLabel(static_cast<std::uint32_t>(16 + at % 1000)));
    fec.viaAppend(via);
  }
  device.policyFecs->insert(fec);
}

} // namespace

void fillTunnelDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes) {
  constexpr std::size_t tunnelVias = 4;
  const std::size_t tunnels = fecCount(Shape::tunnels, prefixes.size());
  const std::size_t plainFecs = tunnels / 10;
  const auto sr = Lumo::newEntity<Tunnel::TunnelTable::SrTunnelTable>();
  const auto ldp = Lumo::newEntity<Tunnel::TunnelTable::LdpTunnelTable>();
  device.state.tunnelTableDir->entityIs("sr", sr);
  device.state.tunnelTableDir->entityIs("ldp", ldp);
  for (std::size_t at = 0; at < plainFecs; ++at) addFec(device, at, hop(at), ethernet(at));
  for (std::size_t at = 0; at < tunnels; ++at) {
    const bool isLdp = at % 2 != 0;
    const TunnelId id = tunnelOf(isLdp ? TunnelKind::ldp : TunnelKind::sr, at);
    addTunnel(*device.state.tunnelFib, id, at * tunnelVias, tunnelVias, [&](std::size_t via) {
      const FecId behind(AdjType::tunnelFib, via % plainFecs + 1);
      return Tunnel::TunnelTable::Via{{}, FecId::fecIdToHierarchicalIntfId(behind)};
    });
    isLdp ? addEndpoint(*ldp, id, at) : addEndpoint(*sr, id, at);
    addFec(device, plainFecs + at, {}, interfaceOf(id));
  }
  addRoutes(device, prefixes, AdjType::fib, plainFecs, tunnels);
}

void fillPolicyDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes) {
  const std::size_t policies = fecCount(Shape::policies, prefixes.size());
  for (std::size_t at = 0; at < policies; ++at) addPolicy(device, at);
  addRoutes(device, prefixes, AdjType::srTePolicy, 0, policies);
}

void fillHostDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes) {
  fillDevice(device, prefixes);
  Random random(prefixes.size());
  const auto neighbors = static_cast<std::uint32_t>(prefixes.size() / 5);
  for (std::uint32_t at = 0; at < neighbors; ++at) {
    const auto address = Kesh::IpAddr::fromHost((172u << 24 | 16u << 16) + at);
    device.arp->insert(
        {{Vrf::VrfIdMap::VrfId(0), interfaceOf("Vlan", random.below(1000)), address}, {}});
  }
  device.state.arpVanta->arpEntry.members(); // puts them in order
}

} // namespace bench
