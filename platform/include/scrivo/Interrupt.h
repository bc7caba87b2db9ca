// The user's wish to stop the output, noted by a signal handler and seen by every printer call.
#pragma once

#include "lumo/Export.h"

#include <atomic>

namespace scrivo {

/// The flag itself, for the inline check alone. One a process, as the signal is.
extern LUMO_EXPORT std::atomic<bool> interruptFlag;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait for a lock");

/// True from `requestInterrupt` on until `clearInterrupt`.
inline bool interruptRequested() noexcept { return interruptFlag.load(std::memory_order_relaxed); }

/// Makes the next printer call of the process throw. Safe to call in a signal handler; a program
/// whose writes may block installs that handler without SA_RESTART, so that the write returns.
LUMO_EXPORT void requestInterrupt() noexcept;

/// Forgets the wish, as a program does before its next command.
LUMO_EXPORT void clearInterrupt() noexcept;

} // namespace scrivo
