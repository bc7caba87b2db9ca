#include "scrivo/Interrupt.h"

namespace scrivo {

std::atomic<bool> interruptFlag{false};

void requestInterrupt() noexcept { interruptFlag.store(true, std::memory_order_relaxed); }
void clearInterrupt() noexcept { interruptFlag.store(false, std::memory_order_relaxed); }

} // namespace scrivo
