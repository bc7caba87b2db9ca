#include "rova/core/Watchdog.h"

#include "lumo/ActivityLock.h"

#include <ctime>

namespace Rova {

namespace {

constexpr std::uint32_t stepsBetweenYields = 2000;
constexpr timespec yieldTime{0, 1000000};

} // namespace

void allowWatchdog(std::uint32_t& counter) {
  if (counter++ < stepsBetweenYields) return;
  counter = 0;
  const Lumo::UnlockAnchor anchor(Lumo::ActivityUnlockAnchor::lock());
  nanosleep(&yieldTime, nullptr);
}

} // namespace Rova
