// What the kernel knows of the gateways on its links.
#pragma once

#include "sources/kernel/KernelState.h"

#include <map>

namespace sources::kernel {

/// The neighbours and addresses of interfaces. It keeps pointers into the gathered state.
class Gateways {
 public:
  explicit Gateways(const KernelState& kernel);

  /// Where frames to the gateway of the hop go, in neighbour state NOARP too; zero when unknown.
  Kesh::EthAddr ethernetOf(const Hop& hop) const;
  /// The longest prefix of an address of the hop's interface that covers the gateway; empty
  /// without such a one.
  Kesh::IpGenPrefix prefixOf(const Hop& hop) const;

 private:
  std::map<std::pair<std::uint32_t, Kesh::IpGenAddr>, Kesh::EthAddr> ethernets_;
  std::map<std::uint32_t, std::vector<const Address*>> addresses_; // by interface
};

} // namespace sources::kernel
