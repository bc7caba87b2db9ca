// Trace, assertions and the activity lock.
#include "lumo/Trace.h"
#include "lumo/ActivityLock.h"
#include "lumo/Assert.h"
#include "lumo/Exception.h"
#include "support/Expect.h"
#include "support/Process.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

int evaluations = 0;
int evaluated() { return ++evaluations; }

void tracePoint(const Lumo::TraceHandle& handle, unsigned level) {
  LUMO_TRACE(handle, level, "TestSource", "value " << evaluated() << ".");
}
constexpr int tracePointLine = __LINE__ - 2;

TEST(TraceTest, EvaluatesNothingWhileTheLevelIsOff) {
  const support::Traced collector;
  Lumo::TraceHandle handle("Quiet");
  handle.enabledIs(3, true);
  evaluations = 0;
  tracePoint(handle, 8);
  tracePoint(handle, 2);
  EXPECT_EQ(evaluations, 0);
  EXPECT_TRUE(collector.texts.empty());
  handle.enabledIs(8, true);
  tracePoint(handle, 8);
  EXPECT_EQ(collector.texts, std::vector<std::string>{"value 1."});
  EXPECT_EQ(collector.place, "Quiet 8 TestSource:" + std::to_string(tracePointLine));
  EXPECT_EQ(collector.functions.back(), "tracePoint");
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
  present.enabledIs(32, true); // no such level
  for (unsigned level = 0; level < 32; ++level) EXPECT_FALSE(present.enabled(level)) << level;
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

TEST(UnlockAnchorTest, GivesUpForItsLifeAndTakesAgainEvenWhenAnExceptionPasses) {
  Lumo::Lock lock;
  ASSERT_EQ(lock.take(), 0);
  try {
    const Lumo::UnlockAnchor anchor(lock);
    EXPECT_EQ(lock.giveUp(), EPERM) << "it was not given up";
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(lock.take(), EDEADLK) << "it was not taken again";
  EXPECT_EQ(lock.giveUp(), 0);
}

TEST(UnlockAnchorTest, RefusesALockThatIsNotToBeGivenUp) {
  using support::messageOf;
  Lumo::Lock lock;
  const auto anchorOn = [&] { const Lumo::UnlockAnchor anchor(lock); };
  try {
    anchorOn();
    FAIL() << "it is not held";
  } catch (const Lumo::ErrnoException& error) {
    EXPECT_EQ(error.number(), EPERM);
    EXPECT_EQ(error.text(), "Failed to release the lock");
  }
  lock.take();
  EXPECT_EQ(messageOf<Lumo::InternalException>([&] {
              const Lumo::UnlockAnchor anchor(lock);
              lock.take();
            }),
            "Lock was already grabbed in UnlockAnchor destructor!");
  lock.releasableIs(false);
  EXPECT_EQ(messageOf<Lumo::InternalException>(anchorOn),
            "Lock Protocol exception -- unlocking an unreleasable lock");
  EXPECT_EQ(lock.giveUp(), 0) << "the lock changed";
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
