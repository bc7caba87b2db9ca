#include "sources/kernel/HopLists.h"

#include <algorithm>
#include <string_view>

namespace sources::kernel {

namespace {

std::size_t hashOf(Kesh::AddressFamily family, std::uint32_t nexthopId, std::span<const Hop> hops) {
  const std::string_view bytes(reinterpret_cast<const char*>(hops.data()), hops.size_bytes());
  const auto origin = std::uint64_t{nexthopId} << 8 | static_cast<std::uint32_t>(family);
  return std::hash<std::string_view>{}(bytes) ^ Kesh::mixHash(origin);
}

} // namespace

std::uint32_t HopLists::enter(Kesh::AddressFamily family, std::uint32_t nexthopId,
                              std::span<const Hop> hops) {
  const std::size_t hash = hashOf(family, nexthopId, hops);
  for (auto [it, end] = byHash_.equal_range(hash); it != end; ++it) {
    const HopList& list = lists_[it->second];
    if (list.family == family && list.nexthopId == nexthopId &&
        std::ranges::equal(this->hops(list), hops)) {
      return it->second;
    }
  }
  const auto number = static_cast<std::uint32_t>(lists_.size());
  lists_.push_back({family, nexthopId, static_cast<std::uint32_t>(hops_.size()),
                    static_cast<std::uint32_t>(hops.size())});
  hops_.insert(hops_.end(), hops.begin(), hops.end());
  byHash_.emplace(hash, number);
  return number;
}

} // namespace sources::kernel
