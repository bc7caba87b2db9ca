// The distinct ways to forward of all routes: most of a million routes share a few.
#pragma once

#include "sources/kernel/Hop.h"

#include <span>
#include <unordered_map>
#include <vector>

namespace sources::kernel {

/// What a route says of its forwarding. Without hops and nexthop object it drops, or delivers to
/// the device itself.
struct HopList {
  Kesh::AddressFamily family; ///< of the route
  std::uint32_t nexthopId;    ///< of a nexthop object; 0 for none
  std::uint32_t first;        ///< where its hops begin
  std::uint32_t count;
};

class HopLists {
 public:
  /// The number of that list, its place in `lists`; equal lists have one number.
  std::uint32_t enter(Kesh::AddressFamily family, std::uint32_t nexthopId,
                      std::span<const Hop> hops);

  const std::vector<HopList>& lists() const { return lists_; }
  std::span<const Hop> hops(const HopList& list) const {
    return std::span(hops_).subspan(list.first, list.count);
  }

 private:
  std::vector<HopList> lists_;
  std::vector<Hop> hops_;
  std::unordered_multimap<std::size_t, std::uint32_t> byHash_;
};

} // namespace sources::kernel
