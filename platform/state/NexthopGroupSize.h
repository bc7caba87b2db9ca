// How many entries a nexthop group has.
#pragma once

#include "state/NexthopGroupConfig.h"

#include <cstdint>

namespace Rova {

/// The configured size; for a group that the hardware sizes, as many entries as reach to its last
/// destination, at most `hardwareSize`.
std::uint32_t
getNhgSize(const Lumo::Ptr<const Routing::NexthopGroup::NexthopGroupConfigEntry>& group,
           std::uint32_t hardwareSize);

} // namespace Rova
