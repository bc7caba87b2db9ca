#include "sources/kernel/InterfaceState.h"

namespace sources::kernel {

namespace {

void fillLink(const Link& link, const Interfaces::Entry& interface, const L3::VrfName& vrf,
              state::DeviceState& device) {
  device.ipStatus->ipIntfStatus.insertOrAssign(interface.id, {vrf, {}, {}});
  device.ip6Status->ip6IntfStatus.insertOrAssign(interface.id, {vrf, {}});
  if (link.alias.empty()) return;
  device.allIntfConfig->configs.insertOrAssign(
      interface.id, Lumo::newEntity<Interface::IntfConfig>(interface.id, Lumo::String(link.alias)));
}

void addAddress(const Address& address, Ip::IpIntfStatus& status) {
  const Kesh::IpAddrWithMask own(address.address.v4Addr(), address.length);
  if (status.primary || address.isSecondary()) {
    status.activeSecondary.push_back(own);
  } else {
    status.primary = own;
  }
}

/// Enters the interface in the configuration: a kernel's addresses are what is configured.
void configureLink(const Interfaces::Entry& interface, const L3::VrfName& vrf,
                   state::DeviceState& device) {
  const auto l3 = Lumo::newEntity<L3::IntfConfig>(vrf);
  Ip::IpIntfConfig config;
  config.intfId = interface.id;
  config.l3Config = l3;
  device.ipConfig->ipIntfConfig.insertOrAssign(interface.id, config);
  device.ip6Config->intf.insertOrAssign(interface.id, {interface.id, {}, l3});
}

void configureAddress(const Address& address, const Kesh::IntfId& interface,
                      state::DeviceState& device) {
  if (address.address.af() == Kesh::AddressFamily::ip6) {
    const Kesh::Ip6AddrWithMask own(address.address.v6Addr(), address.length);
    if (auto* const config = device.ip6Config->intf.find(interface)) {
      config->addr.insertOrAssign(own, {});
    }
    return;
  }
  auto* const config = device.ipConfig->ipIntfConfig.find(interface);
  if (!config) return;
  const Kesh::IpAddrWithMask own(address.address.v4Addr(), address.length);
  if (config->addrWithMask == Kesh::IpAddrWithMask() && !address.isSecondary()) {
    config->addrWithMask = own;
  } else {
    config->secondaryWithMask.insertOrAssign(own, true);
  }
}

/// Addresses of an interface that is not there are passed over.
void fillAddress(const Address& address, const Kesh::IntfId& interface,
                 state::DeviceState& device) {
  if (address.address.af() == Kesh::AddressFamily::ip4) {
    if (auto* const status = device.ipStatus->ipIntfStatus.find(interface)) {
      addAddress(address, *status);
    }
  } else if (auto* const status = device.ip6Status->ip6IntfStatus.find(interface)) {
    if (address.isDuplicate()) return;
    status->addr.emplace_back(address.address.v6Addr(), address.length);
  }
}

void fillNeighbour(const Neighbour& neighbour, const Interfaces::Entry& interface,
                   Vrf::VrfIdMap::VrfId vrf, state::DeviceBuilder& builder) {
  const bool ip4 = neighbour.address.af() == Kesh::AddressFamily::ip4;
  auto* const table = ip4 ? builder.arp : builder.neighbors;
  table->insert({{vrf, interface.id, neighbour.address}, neighbour.ethernet});
}

} // namespace

void fillInterfaces(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                    state::DeviceBuilder& builder) {
  for (const Link& link : kernel.links) {
    const auto& interface = interfaces.find(link.index);
    const L3::VrfName& vrf = vrfs.vrf(interface.table).name;
    fillLink(link, interface, vrf, builder.state);
    configureLink(interface, vrf, builder.state);
  }
  for (const Address& address : kernel.addresses) {
    const Kesh::IntfId& interface = interfaces.find(address.interface).id;
    fillAddress(address, interface, builder.state);
    configureAddress(address, interface, builder.state);
  }
  for (const Neighbour& neighbour : kernel.neighbours) {
    if (neighbour.unresolved) continue; // most are computed, as for multicast groups
    const auto& interface = interfaces.find(neighbour.interface);
    if (!interface.id) continue;
    fillNeighbour(neighbour, interface, vrfs.vrf(interface.table).id, builder);
  }
}

} // namespace sources::kernel
