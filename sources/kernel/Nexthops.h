// Nexthop objects as the kernel reports them: next hops, and groups of them, that routes name by
// number.
#pragma once

#include "sources/kernel/Encapsulation.h"

#include <vector>

namespace sources::kernel {

struct Nexthop {
  struct Member {
    std::uint32_t id;
    std::uint32_t weight;
    std::optional<std::uint64_t> packets = {}; ///< that went this way; unset when not counted
    friend bool operator==(const Member&, const Member&) = default;
  };

  std::uint32_t key() const { return id; }

  std::uint32_t id = 0;
  Hop hop;
  bool blackhole = false;
  std::vector<Member> group;                               ///< empty for a single next hop
  Kesh::AddressFamily family = Kesh::AddressFamily::unset; ///< of a single next hop
  bool linkDown = false;       ///< its interface has no carrier (RTNH_F_LINKDOWN)
  bool forwardsFrames = false; ///< of a bridge's forwarding table: no route leads there (NHA_FDB)

  friend bool operator==(const Nexthop&, const Nexthop&) = default;
};

/// The request for statistics of groups, an attribute of the dump and its value; since Linux 6.9.
inline constexpr std::uint16_t operationAttribute = 14; ///< NHA_OP_FLAGS
inline constexpr std::uint32_t dumpStatistics = 1;      ///< NHA_OP_FLAG_DUMP_STATS

/// From the payload of an RTM_NEWNEXTHOP message; nothing for a damaged one or one without a
/// number. Enters the encapsulation of its hop.
std::optional<Nexthop> decodeNexthop(Bytes payload, Encapsulations& encapsulations);

} // namespace sources::kernel
