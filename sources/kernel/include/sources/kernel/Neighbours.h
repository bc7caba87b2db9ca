// Neighbours as the kernel reports them: ARP and IPv6 neighbour discovery.
#pragma once

#include "kesh/Address.h"
#include "sources/kernel/Attributes.h"

namespace sources::kernel {

struct Neighbour {
  std::uint32_t interface = 0;
  Kesh::IpGenAddr address;
  Kesh::EthAddr ethernet;
};

/// From the payload of an RTM_NEWNEIGH message; nothing for a damaged one, and for a neighbour
/// whose Ethernet address was not learnt or configured.
std::optional<Neighbour> decodeNeighbour(Bytes payload);

} // namespace sources::kernel
