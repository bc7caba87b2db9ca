// The live Linux kernel as a source of state.
//
//   const state::DeviceState device = sources::kernel::load("");     // where this process runs
//   const state::DeviceState other = sources::kernel::load("blue");  // what /run/netns/blue names
#pragma once

#include "sources/SourceError.h"
#include "state/DeviceState.h"

#include <string>

namespace sources::kernel {

/// What the kernel has now: VRFs, interfaces, neighbours, and the routes of all tables with the
/// next hops behind them. `netns` names a network namespace under /run/netns; empty means that of
/// the calling thread, which is back in its own namespace when this returns or raises.
///
/// Raises `SourceError` when the namespace cannot be entered, when the kernel refuses a dump or
/// changes during each of ten, and for a route with more than 512 next hops.
state::DeviceState load(const std::string& netns);

} // namespace sources::kernel
