#include "state/NexthopGroupSize.h"

#include <algorithm>

namespace Rova {

std::uint32_t
getNhgSize(const Lumo::Ptr<const Routing::NexthopGroup::NexthopGroupConfigEntry>& group,
           std::uint32_t hardwareSize) {
  if (group->size != 0) return group->size;
  const auto& destinations = group->destinationIp.members();
  if (destinations.empty()) return 0;
  const std::uint32_t reach = std::uint32_t{std::prev(destinations.end())->first} + 1;
  return std::min(reach, hardwareSize);
}

} // namespace Rova
