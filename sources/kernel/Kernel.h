// The live Linux kernel as a source of state.
//
//   const sources::State state = sources::kernel::load("");     // where this process runs
//   const sources::State other = sources::kernel::load("blue");  // what /run/netns/blue names
#pragma once

#include "sources/Progress.h"
#include "sources/SourceError.h"
#include "sources/State.h"

#include <string>

namespace sources::kernel {

/// What the kernel has now: VRFs, interfaces, neighbours, and the routes of all tables with the
/// next hops behind them. `netns` names a network namespace under /run/netns; empty means that of
/// the calling thread, which is back in its own namespace when this returns or raises.
///
/// It comes also while the kernel's tables change: the notes tell of which it is not certain that
/// nothing is missing or outdated. `progress`, if any, hears of each dump.
///
/// Raises `SourceError` when the namespace cannot be entered, when the kernel refuses a dump, and
/// for a route with more than 512 next hops.
State load(const std::string& netns, const Needs& needs = {}, Progress* progress = nullptr);

} // namespace sources::kernel
