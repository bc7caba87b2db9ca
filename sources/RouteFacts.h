// What a source knows of routes beside those that it shows.
#pragma once

#include "state/DeviceState.h"

#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace sources {

struct Needs;

/// How many routes a table by prefix has no place for, since they lose against another of their
/// prefix: by VRF and family (4 or 6), where there are any.
using HiddenRoutes = std::map<std::pair<Vrf::VrfIdMap::VrfId, int>, std::uint64_t>;

struct RouteFacts {
  HiddenRoutes hidden;
  /// VRFs that are nothing but a table with routes, so that a family without any does not have
  /// them.
  std::set<Vrf::VrfIdMap::VrfId> plain;
};

/// How many of them are routes that are wanted of the device.
std::uint64_t hiddenAmong(const HiddenRoutes& hidden, const Needs& needs,
                          const state::DeviceState& device);

} // namespace sources
