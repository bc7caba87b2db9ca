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
  Lumo::Lock& lock = Lumo::ActivityUnlockAnchor::lock();
  const bool othersWait = !lock.soleActivity(); // read while the lock guards it
  const Lumo::UnlockAnchor anchor(lock);
  if (othersWait) nanosleep(&yieldTime, nullptr);
}

} // namespace Rova
