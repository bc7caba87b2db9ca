#include "sources/RouteFacts.h"

#include "sources/State.h"

namespace sources {

std::uint64_t hiddenAmong(const HiddenRoutes& hidden, const Needs& needs,
                          const state::DeviceState& device) {
  const auto* const vrf = device.vrf(needs.vrf);
  std::uint64_t count = 0;
  for (const auto& [key, routes] : hidden) {
    const bool isOfFamily = key.second == 4 ? needs.ip4 : needs.ip6;
    const bool isOfVrf = needs.vrf == "all" || (vrf && vrf->id == key.first);
    if (needs.routes && isOfFamily && isOfVrf) count += routes;
  }
  return count;
}

} // namespace sources
