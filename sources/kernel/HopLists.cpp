#include "sources/kernel/HopLists.h"

#include <algorithm>
#include <string_view>

namespace sources::kernel {

namespace {

std::size_t hashOf(const HopListHead& head, std::span<const Hop> hops) {
  const std::string_view bytes(reinterpret_cast<const char*>(hops.data()), hops.size_bytes());
  const auto origin = std::uint64_t{head.nexthopId} << 8 | static_cast<std::uint32_t>(head.family);
  return std::hash<std::string_view>{}(bytes) ^ Kesh::mixHash(origin ^ head.source.hash());
}

template <class Map, class Key>
std::span<const std::uint32_t> numbersAt(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? std::span<const std::uint32_t>() : std::span(found->second);
}

} // namespace

bool HopLists::is(std::uint32_t number, const HopListHead& head, std::span<const Hop> hops) const {
  const HopList& list = lists_[number];
  return list == head && std::ranges::equal(this->hops(list), hops);
}

std::uint32_t HopLists::enter(const HopListHead& head, std::span<const Hop> hops) {
  if (last_ < lists_.size() && is(last_, head, hops)) return last_;
  return last_ = findOrAdd(head, hops);
}

std::uint32_t HopLists::findOrAdd(const HopListHead& head, std::span<const Hop> hops) {
  const std::size_t hash = hashOf(head, hops);
  for (auto [it, end] = byHash_.equal_range(hash); it != end; ++it) {
    if (is(it->second, head, hops)) return it->second;
  }
  const auto number = static_cast<std::uint32_t>(lists_.size());
  lists_.push_back(
      {head, static_cast<std::uint32_t>(hops_.size()), static_cast<std::uint32_t>(hops.size())});
  hops_.insert(hops_.end(), hops.begin(), hops.end());
  byHash_.emplace(hash, number);
  note(number, head, hops);
  return number;
}

void HopLists::note(std::uint32_t number, const HopListHead& head, std::span<const Hop> hops) {
  if (head.nexthopId != 0) byNexthop_[head.nexthopId].push_back(number);
  if (head.source != Kesh::IpGenAddr()) bySource_[head.source].push_back(number);
  const auto isElsewhere = [&](const Hop& hop) { return hop.interface != hops[0].interface; };
  const bool mixed = std::ranges::any_of(hops, isElsewhere);
  if (!hops.empty() && !mixed) byInterface_[hops[0].interface].push_back(number);
  for (const Hop& hop : hops) {
    Use& use = uses_[hop.interface];
    use.any = true;
    use.dead = use.dead || hop.dead;
    use.amongOthers = use.amongOthers || mixed;
  }
}

std::span<const std::uint32_t> HopLists::over(std::uint32_t interface) const {
  return numbersAt(byInterface_, interface);
}

std::span<const std::uint32_t> HopLists::overNexthop(std::uint32_t id) const {
  return numbersAt(byNexthop_, id);
}

std::span<const std::uint32_t> HopLists::from(const Kesh::IpGenAddr& source) const {
  return numbersAt(bySource_, source);
}

HopLists::Use HopLists::useOf(std::uint32_t interface) const {
  const auto found = uses_.find(interface);
  return found == uses_.end() ? Use() : found->second;
}

} // namespace sources::kernel
