#include "sources/kernel/Gateways.h"

namespace sources::kernel {

namespace {

/// The first `length` bits of an address.
Kesh::IpGenPrefix leading(const Kesh::IpGenAddr& address, int length) {
  if (address.af() == Kesh::AddressFamily::ip4) return Ip4::prefix(address, length);
  return Ip6::prefix(address, length);
}

} // namespace

Gateways::Gateways(const KernelState& kernel) {
  for (const Neighbour& one : kernel.neighbours) {
    ethernets_[{one.interface, one.address}] = one.ethernet;
  }
  for (const Address& one : kernel.addresses) {
    if (!one.isDuplicate()) addresses_[one.interface].push_back(&one);
  }
}

Kesh::EthAddr Gateways::ethernetOf(const Hop& hop) const {
  const auto found = ethernets_.find({hop.interface, hop.gateway});
  return found == ethernets_.end() ? Kesh::EthAddr() : found->second;
}

Kesh::IpGenPrefix Gateways::prefixOf(const Hop& hop) const {
  Kesh::IpGenPrefix best;
  const auto found = addresses_.find(hop.interface);
  if (found == addresses_.end()) return best;
  for (const Address* const one : found->second) {
    if (one->address.af() != hop.gateway.af()) continue;
    const auto prefix = leading(one->address, one->length);
    const bool longer = best == Kesh::IpGenPrefix() || prefix.len() > best.len();
    if (longer && leading(hop.gateway, one->length) == prefix) best = prefix;
  }
  return best;
}

} // namespace sources::kernel
