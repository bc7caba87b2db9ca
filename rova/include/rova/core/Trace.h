// The library's trace handle.
#pragma once

#include "lumo/Trace.h"
#include "rova/core/Export.h"

namespace Rova {

/// The one trace handle, named "CliSupport"; made at first use.
ROVA_EXPORT Lumo::TraceHandle& _defaultTraceHandle();

} // namespace Rova

/// A trace point of the library; costs one test while the level is off.
#define ROVA_TRACE(level, text) LUMO_TRACE(::Rova::_defaultTraceHandle(), level, "CliSupport", text)
