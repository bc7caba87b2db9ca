// The cooperative yield: on which steps it gives the lock up, and for whom it sleeps.
#include "support/Process.h"

#include "rova/core/Watchdog.h"

#include <atomic>
#include <ctime>
#include <gtest/gtest.h>

namespace {

/// What the process asked the system to sleep for, in nanoseconds.
std::atomic<long> slept = 0;

} // namespace

// Stands in for the system's call in this whole program: notes what was asked for, and sleeps.
extern "C" int nanosleep(const timespec* time, timespec* rest) {
  slept += time->tv_sec * 1000000000 + time->tv_nsec;
  return clock_nanosleep(CLOCK_REALTIME, 0, time, rest);
}

namespace {

using support::Unreleasable;

/// Notes whether the lock was free whenever its holder gave it up, and how often it was taken
/// again.
struct Turns {
  explicit Turns(bool sole) {
    lock.soleActivityIs(sole);
    lock.releaseHooksAre({released, retaken});
    free = ended = 0;
    slept = 0;
  }
  ~Turns() {
    lock.releaseHooksAre({});
    lock.soleActivityIs(false);
  }
  static void* released() {
    if (lock.tryTake() != 0) return nullptr;
    ++free;
    lock.giveUp();
    return nullptr;
  }
  static void retaken(void*, bool) { ++ended; }

  inline static Lumo::Lock& lock = Lumo::ActivityUnlockAnchor::lock();
  inline static int free, ended;
};

TEST(AllowWatchdogTest, YieldsOnEvery2001stCall) {
  const Lumo::ActivityLockHold hold;
  std::uint32_t counter = 1999;
  Rova::allowWatchdog(counter);
  EXPECT_EQ(counter, 2000u);
  for (const bool sole : {false, true}) {
    const Turns turns(sole);
    const Unreleasable unreleasable;
    EXPECT_THROW(Rova::allowWatchdog(counter), Lumo::InternalException);
    EXPECT_EQ(counter, 0u);
    for (int i = 0; i < 2000; ++i) Rova::allowWatchdog(counter);
    EXPECT_EQ(counter, 2000u);
  }
  Rova::allowWatchdog(counter);
  EXPECT_EQ(counter, 0u);
}

TEST(AllowWatchdogTest, GivesTheLockUpForAMillisecondOrForNoTimeWhereNobodyElseIs) {
  const Lumo::ActivityLockHold hold;
  EXPECT_FALSE(Lumo::ActivityUnlockAnchor::lock().soleActivity()) << "a host has to say so";
  for (const bool sole : {false, true}) {
    const Turns turns(sole);
    std::uint32_t counter = 2000;
    Rova::allowWatchdog(counter);
    EXPECT_EQ(turns.free, 1) << sole;
    EXPECT_EQ(turns.ended, 1) << sole;
    EXPECT_EQ(slept, sole ? 0 : 1000000) << sole;
  }
}

} // namespace
