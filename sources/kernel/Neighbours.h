// Neighbours as the kernel reports them: ARP and IPv6 neighbour discovery.
#pragma once

#include "kesh/Address.h"
#include "sources/kernel/Attributes.h"

namespace sources::kernel {

struct Neighbour {
  std::uint32_t interface = 0;
  Kesh::IpGenAddr address;
  Kesh::EthAddr ethernet;
  bool unresolved = false; ///< its link address was not asked for (NUD_NOARP)

  auto key() const { return std::pair(interface, address); }
  friend bool operator==(const Neighbour&, const Neighbour&) = default;
};

/// From the payload of an RTM_NEWNEIGH message; nothing for a damaged one, and for a neighbour
/// without a valid Ethernet address.
std::optional<Neighbour> decodeNeighbour(Bytes payload);

/// The interface and the address that a neighbour message is about, whatever it says of them; the
/// address is unset for a damaged one and for another family.
Neighbour decodeNeighbourKey(Bytes payload);

} // namespace sources::kernel
