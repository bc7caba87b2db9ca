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
    friend bool operator==(const Member&, const Member&) = default;
  };

  std::uint32_t id = 0;
  Hop hop;
  bool blackhole = false;
  std::vector<Member> group; ///< empty for a single next hop
};

/// From the payload of an RTM_NEWNEXTHOP message; nothing for a damaged one or one without a
/// number. Enters the encapsulation of its hop.
std::optional<Nexthop> decodeNexthop(Bytes payload, Encapsulations& encapsulations);

} // namespace sources::kernel
