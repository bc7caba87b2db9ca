// One next hop, as a route, a multipath row or a nexthop object gives it.
#pragma once

#include "kesh/Address.h"
#include "kesh/Mpls.h"

#include <cstdint>
#include <type_traits>

namespace sources::kernel {

struct Hop {
  Kesh::IpGenAddr gateway; ///< unset when the destination is on the link itself
  std::uint32_t interface = 0;
  std::uint32_t label = Kesh::MplsLabel::null; ///< the one MPLS label that is pushed
  std::uint32_t encapsulation = 0; ///< number of any other in `Encapsulations`; 0 for none
  std::uint32_t weight = 1;
  std::uint32_t dead = 0;   ///< 1 while the kernel does not use it (RTNH_F_DEAD)
  std::uint32_t onLink = 0; ///< 1 when the gateway is the destination itself

  friend bool operator==(const Hop&, const Hop&) = default;
};
// Lists of hops are hashed as bytes, and there may be many: what a hop pushes stands elsewhere.
static_assert(std::has_unique_object_representations_v<Kesh::IpGenAddr>);
static_assert(std::has_unique_object_representations_v<Hop>);

} // namespace sources::kernel
