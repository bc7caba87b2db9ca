// The cooperative yield of long walks.
#pragma once

#include "rova/core/Export.h"

#include <cstdint>

namespace Rova {

/// Called once a step by a long walk over shared tables with a counter that starts at 0: on every
/// 2001st step it gives up the activity lock for a millisecond, so that the rest of the process
/// gets its turn; without the millisecond where the lock's `soleActivity` says that there is nobody
/// else. Raises the errors of `Lumo::UnlockAnchor`.
ROVA_EXPORT void allowWatchdog(std::uint32_t& counter);

} // namespace Rova
