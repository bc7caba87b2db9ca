// Interfaces as the kernel reports them.
#pragma once

#include "sources/kernel/Attributes.h"
#include "state/Tunnel.h"

namespace sources::kernel {

/// What a tunnel device does with its packets.
struct TunnelDevice {
  Tunnel::TunnelTable::EncapKind kind{};
  Tunnel::GreTunnelInfo ends; ///< the key of GRE alone
  friend bool operator==(const TunnelDevice&, const TunnelDevice&) = default;
};

struct Link {
  std::uint32_t key() const { return index; }

  std::uint32_t index = 0;
  std::string name;
  std::string alias;          ///< the administrator's description; empty for none
  std::uint32_t master = 0;   ///< index of the VRF, bridge or bond that has it; 0 for none
  std::uint32_t vrfTable = 0; ///< the routing table of a vrf device; 0 for any other
  bool isVxlan = false;
  std::optional<TunnelDevice> tunnel = {}; ///< of a GRE or VTI device with a fixed remote end
  bool up = true;                          ///< it is not switched off (IFF_UP)
  bool carrier = true;                     ///< and its link works (IFF_RUNNING, IFF_LOWER_UP)

  friend bool operator==(const Link&, const Link&) = default;
};

/// From the payload of an RTM_NEWLINK message; nothing for a damaged one, one without a name, or a
/// bridge's view of its port.
std::optional<Link> decodeLink(Bytes payload);

} // namespace sources::kernel
