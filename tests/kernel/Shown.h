// Routes and nexthop groups of a device's state as one line each, for tests to compare:
//
//   bgpExternal [200/20] | 10.0.0.2 eth0 w3 | fe80::9 eth1
//   static [1/0] | 1.2 (10.0.0.2 eth0 label 100 200) | 1.1 (10.0.0.3 eth1)
//   static [1/0] | 7.1 to fc00::2/128 (fe80::9 eth1)
//   static [1/0] | 6.1 VTEP 192.0.2.1 VNI 100 MAC 00:00:00:00:00:00
//
//   10 ip4 1 of 3 in default | 10.0.0.2 eth0 02:00:00:00:00:01 10.0.0.0/8 4p | 10.0.0.9 - | -
#pragma once

#include "state/DeviceState.h"

#include <map>
#include <string>

namespace kernel_test {

using Routes = std::map<std::string, std::string>; ///< line by "VRF PREFIX"

inline std::string showEvpn(const Tunnel::TunnelTable::EvpnVxlanTunnelEntry& entry) {
  return " VTEP " + entry.vtepAddr.stringValue().str() + " VNI " + std::to_string(entry.vni) +
         " MAC " + entry.routerMac.stringValue().str();
}

inline std::string showLabels(const Kesh::MplsLabelOperation& stack) {
  if (stack.stackSize() == 0) return "";
  std::string out = stack.operation() == Kesh::LabelAction::push ? " label" : " not pushed";
  for (std::uint8_t i = 0; i < stack.stackSize(); ++i) {
    out += " " + std::to_string(stack.label(Kesh::MplsStackEntryIndex(i)).value());
  }
  return out;
}

/// A tunnel with what its tables say of it.
inline std::string showTunnel(const state::DeviceState& device, Tunnel::TunnelTable::TunnelId id) {
  using namespace Tunnel::TunnelTable;
  std::string out = std::to_string(static_cast<int>(id.kind())) + "." + std::to_string(id.index());
  const auto evpn = device.evpnVxlanTunnelTable->entry(id);
  if (evpn.isSet()) out += showEvpn(evpn);
  const auto sr = Lumo::dynamicPtrCast<SrTunnelTable>(device.tunnelTableDir->entity("sr"));
  if (sr && !!sr->entry(id)) out += " to " + sr->entry(id).endpoint.stringValue().str();
  const auto& fib = *device.tunnelFib;
  for (const TunnelVia& via : fib.entry(id).tunnelVia) {
    out += " (" + via.nexthop.stringValue().str() + " " + via.intfId.stringValue().str() +
           showLabels(fib.labelStack(via.encapId)) + ")";
  }
  return out;
}

template <class Via>
std::string showVia(const state::DeviceState& device, const Via& via) {
  std::string out = " |";
  if (!via.hop.isZero()) out += " " + via.hop.stringValue().str();
  if (Kesh::DynamicTunnelIntfId::isDynamicTunnelIntfId(via.intfId)) {
    out += " " + showTunnel(device, via.tunnelId());
  } else {
    out += via.intfId ? " " + via.intfId.stringValue().str() : " dead";
  }
  if (!via.mplsLabel().isNull()) out += " label " + std::to_string(via.mplsLabel().value());
  return via.weight == 1 ? out : out + " w" + std::to_string(via.weight);
}

template <class Fecs>
std::string showFec(const state::DeviceState& device, const Fecs& fecs, Vanta::Fib::FecId id) {
  bool found = false;
  const auto* const fec = fecs.safeLookup(id, found, 0);
  if (!found) return " without its FEC";
  std::string out;
  for (std::uint32_t i = 0; i < fec->viaCount; ++i) {
    out += showVia(device, fec->via(Vanta::Fib::ViaIndex(i)));
  }
  return out;
}

template <class Route>
std::string showRoute(const state::DeviceState& device, const Route& route) {
  const std::string head = std::string(state::routeTypeName(route.routeType)) + " [" +
                           std::to_string(route.preference()) + "/" + std::to_string(route.metric) +
                           "]";
  if (route.fecId.isNull()) return head + " absent";
  return head + (Vanta::Fib::isV6FecId(route.fecId)
                     ? showFec(device, device.forwarding6Status->fec, route.fecId)
                     : showFec(device, device.forwardingStatus->fec, route.fecId));
}

template <class Table>
void addShown(const state::DeviceState& device, const std::string& vrf, const Table& table,
              Routes& out) {
  for (typename Table::IteratorConst it(table); it; it.next()) {
    out[vrf + " " + it.value().key.stringValue().str()] = showRoute(device, it.value());
  }
}

/// Every route of the device.
inline Routes showRoutes(const state::DeviceState& device) {
  Routes out;
  for (const state::VrfState& vrf : device.vrfs) {
    addShown(device, vrf.name.stringValue().str(), vrf.routingStatus->route, out);
    addShown(device, vrf.name.stringValue().str(), vrf.routing6Status->route, out);
  }
  return out;
}

/// The packets that the entry was counted to have sent; empty when it has no counter.
inline std::string showPackets(const state::DeviceState& device, std::uint32_t group,
                               std::uint32_t entry) {
  bool found = false;
  const auto info = *device.counterKeyTable->counterKeyInfo.safeLookup({group, entry}, found, 0);
  if (!found) return "";
  const auto* const counter =
      device.counterTable->counter.safeLookup(Gaugex::CounterIndex(info.counterIndex), found, 0);
  return " " + std::to_string(counter->packets) + "p";
}

inline std::string showNexthopVia(const Routing::Hardware::NexthopGroupVia& via) {
  std::string out = " " + via.l3Intf.stringValue().str() + " " + via.macAddr.stringValue().str();
  if (!(via.l2Intf == via.l3Intf)) out += " behind " + via.l2Intf.stringValue().str();
  return via.route == Kesh::IpGenPrefix() ? out : out + " " + via.route.stringValue().str();
}

/// The entries as configured and as they are programmed in the default VRF.
inline std::string showEntries(const state::DeviceState& device, std::uint32_t id,
                               const Routing::NexthopGroup::NexthopGroupConfigEntry& config) {
  const auto* const status = device.nhgHwStatus->vrfStatus.find(L3::VrfName(L3::defaultVrfName));
  const auto* const adjacency = status ? status->nexthopGroupAdj.find(id) : nullptr;
  std::string out;
  for (std::uint16_t index = 0; index < config.size; ++index) {
    const auto& destination = config.destinationIp[index];
    const auto* const via = adjacency ? adjacency->via.find(index) : nullptr;
    out += " |";
    if (destination != Kesh::IpGenAddr()) out += " " + destination.stringValue().str();
    out += showLabels(config.mplsLabelStack[index]);
    if (via && via->hop != destination) out += " by " + via->hop.stringValue().str();
    out += (via ? showNexthopVia(*via) : " -") + showPackets(device, id, index);
  }
  return out;
}

/// Every nexthop group by name: "NUMBER FAMILY PROGRAMMED of SIZE in VRFS | ENTRY ...", and "mpls"
/// with those that push labels.
inline std::map<std::string, std::string> showNexthopGroups(const state::DeviceState& device) {
  std::map<std::string, std::string> out;
  device.nhgConfig->nexthopGroup.forEach([&](const Lumo::Name& name, const auto& config) {
    bool found = false;
    const std::uint32_t id = device.nhEntryStatus->nexthopGroupEntry
                                 .safeLookup(NexthopGroup::NexthopGroupEntryKey(name), found, 0)
                                 ->nhgId;
    std::string vrfs, programmed = "none";
    for (const state::VrfState& vrf : device.vrfs) {
      const auto* const status = device.nhgHwStatus->vrfStatus.find(vrf.name);
      const auto* const adjacency = status ? status->nexthopGroupAdj.find(id) : nullptr;
      if (!adjacency) continue;
      vrfs += " " + vrf.name.stringValue().str();
      programmed = std::to_string(adjacency->numProgrammedTunnels);
    }
    const bool ip6 = config->addressFamily == Kesh::AddressFamily::ip6;
    const bool ip = config->type == Routing::NexthopGroup::NexthopGroupType::ip;
    out[name.str()] = std::to_string(id) + (ip ? "" : " mpls") + (ip6 ? " ip6 " : " ip4 ") +
                      programmed + " of " + std::to_string(config->size) + " in" + vrfs +
                      showEntries(device, id, *config);
  });
  return out;
}

/// The FEC identifier of a route in the default VRF, 0 when there is no such route.
inline std::uint64_t fecOf(const state::DeviceState& device, std::string_view prefix) {
  bool found = false;
  if (const auto ip4 = Kesh::Prefix::parse(prefix)) {
    return device.vrfs[0].routingStatus->route.safeLookup(*ip4, found, 0)->fecId.value();
  }
  const auto ip6 = Kesh::Ip6Prefix::parse(prefix).value();
  return device.vrfs[0].routing6Status->route.safeLookup(ip6, found, 0)->fecId.value();
}

} // namespace kernel_test
