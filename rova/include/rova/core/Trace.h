// The library's trace handle and its cooperative yield.
#pragma once

#include "lumo/Trace.h"
#include "rova/core/Export.h"

#include <cstdint>

namespace Rova {

/// The one trace handle, named "CliSupport"; made at first use.
ROVA_EXPORT Lumo::TraceHandle& _defaultTraceHandle();

/// Called once a step by a long walk over shared tables with a counter that starts at 0: on every
/// 2001st step it gives up the activity lock for a millisecond, so that the rest of the process
/// gets its turn. Raises the errors of `Lumo::UnlockAnchor`.
ROVA_EXPORT void allowWatchdog(std::uint32_t& counter);

} // namespace Rova

/// A trace point of the library; costs one test while the level is off.
#define ROVA_TRACE(level, text) LUMO_TRACE(::Rova::_defaultTraceHandle(), level, "CliSupport", text)
