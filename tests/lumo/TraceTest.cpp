// Trace, assertions and the activity lock.
#include "lumo/Trace.h"
#include "lumo/ActivityLock.h"
#include "lumo/Assert.h"
#include "lumo/Exception.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

/// Collects the trace lines of the process for the life of the object.
struct Collector {
  Collector() {
    Lumo::traceSinkIs(
        [](void* self, const Lumo::TraceLine& line) { static_cast<Collector*>(self)->add(line); },
        this);
  }
  ~Collector() { Lumo::traceSinkIs(nullptr, nullptr); }
  void add(const Lumo::TraceLine& line) {
    texts.emplace_back(line.text);
    place = std::string(line.handle) + " " + std::to_string(line.level) + " " +
            std::string(line.file) + ":" + std::to_string(line.line) + " " +
            std::string(line.function);
  }
  std::vector<std::string> texts;
  std::string place;
};

int evaluations = 0;
int evaluated() { return ++evaluations; }

void tracePoint(const Lumo::TraceHandle& handle, unsigned level) {
  LUMO_TRACE(handle, level, "TestSource", "value " << evaluated() << ".");
}
constexpr int tracePointLine = __LINE__ - 2;

TEST(TraceTest, EvaluatesNothingWhileTheLevelIsOff) {
  Collector collector;
  Lumo::TraceHandle handle("Quiet");
  handle.enabledIs(3, true);
  evaluations = 0;
  tracePoint(handle, 8);
  tracePoint(handle, 2);
  EXPECT_EQ(evaluations, 0);
  EXPECT_TRUE(collector.texts.empty());
}

TEST(TraceTest, GivesTheSinkTextAndPlace) {
  Collector collector;
  Lumo::TraceHandle handle("Loud");
  handle.enabledIs(8, true);
  evaluations = 0;
  tracePoint(handle, 8);
  EXPECT_EQ(collector.texts, std::vector<std::string>{"value 1."});
  EXPECT_EQ(collector.place, "Loud 8 TestSource:" + std::to_string(tracePointLine) + " tracePoint");
}

TEST(TraceTest, LevelsAreSetByNameForHandlesPresentAndToCome) {
  Lumo::TraceHandle present("Named"), other("Other");
  Lumo::traceLevelIs("Named", 1, true);
  const Lumo::TraceHandle later("Named");
  EXPECT_TRUE(present.enabled(1));
  EXPECT_TRUE(later.enabled(1));
  EXPECT_FALSE(other.enabled(1));
  Lumo::traceLevelIs("Named", 1, false);
  EXPECT_FALSE(present.enabled(1));
  EXPECT_FALSE(later.enabled(1));
}

TEST(TraceTest, LevelsOutsideTheRangeAreNone) {
  Lumo::TraceHandle handle("Range");
  handle.enabledIs(32, true);
  handle.enabledIs(40, true);
  for (unsigned level = 0; level < 32; ++level) EXPECT_FALSE(handle.enabled(level)) << level;
}

TEST(AssertDeathTest, EndsTheProcessWithItsText) {
  LUMO_ASSERT(1 + 1 == 2, "arithmetic");
  EXPECT_DEATH(LUMO_ASSERT(1 + 1 == 3, "0 && \"Invalid string\""),
               "^Assertion failed: 0 && \"Invalid string\"\n$");
}

TEST(ErrnoExceptionTest, KeepsNumberAndText) {
  const Lumo::ErrnoException error(EDEADLK, "Failed to grab lock");
  EXPECT_EQ(error.number(), EDEADLK);
  EXPECT_EQ(error.text(), "Failed to grab lock");
  EXPECT_EQ(std::string(error.what()), Lumo::errorString(EDEADLK));
  EXPECT_EQ(Lumo::errorString(EPERM), "Operation not permitted");
}

TEST(UnlockAnchorTest, GivesUpForItsLifeAndTakesAgain) {
  Lumo::Lock lock;
  ASSERT_EQ(lock.take(), 0);
  {
    const Lumo::UnlockAnchor anchor(lock);
    EXPECT_EQ(lock.giveUp(), EPERM) << "it was not given up";
  }
  EXPECT_EQ(lock.take(), EDEADLK) << "it was not taken again";
  EXPECT_EQ(lock.giveUp(), 0);
}

TEST(UnlockAnchorTest, TakesAgainWhenAnExceptionPasses) {
  Lumo::Lock lock;
  lock.take();
  try {
    const Lumo::UnlockAnchor anchor(lock);
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(lock.giveUp(), 0);
}

TEST(UnlockAnchorTest, RefusesAnUnreleasableLock) {
  Lumo::Lock lock;
  lock.take();
  lock.releasableIs(false);
  try {
    const Lumo::UnlockAnchor anchor(lock);
    FAIL() << "no exception";
  } catch (const Lumo::InternalException& error) {
    EXPECT_STREQ(error.what(), "Lock Protocol exception -- unlocking an unreleasable lock");
  }
  EXPECT_EQ(lock.giveUp(), 0) << "the lock changed";
}

TEST(UnlockAnchorTest, ReportsALockThatIsNotHeld) {
  Lumo::Lock lock;
  try {
    const Lumo::UnlockAnchor anchor(lock);
    FAIL() << "no exception";
  } catch (const Lumo::ErrnoException& error) {
    EXPECT_EQ(error.number(), EPERM);
    EXPECT_EQ(error.text(), "Failed to release the lock");
  }
}

TEST(UnlockAnchorTest, ReportsALockTakenMeanwhile) {
  Lumo::Lock lock;
  lock.take();
  try {
    {
      const Lumo::UnlockAnchor anchor(lock);
      lock.take();
    }
    FAIL() << "no exception";
  } catch (const Lumo::InternalException& error) {
    EXPECT_STREQ(error.what(), "Lock was already grabbed in UnlockAnchor destructor!");
  }
  lock.giveUp();
}

TEST(ActivityLockHoldTest, HoldsTheLockOfTheProcess) {
  auto& lock = Lumo::ActivityUnlockAnchor::lock();
  {
    const Lumo::ActivityLockHold hold;
    EXPECT_EQ(lock.take(), EDEADLK);
    EXPECT_THROW(Lumo::ActivityLockHold(), Lumo::ErrnoException);
  }
  EXPECT_EQ(lock.take(), 0);
  lock.giveUp();
}

} // namespace
