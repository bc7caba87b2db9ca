// Counted pointers, and how factories make entities.
#include "lumo/Ptr.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

using Lumo::Ptr;

struct Counted : Lumo::PtrInterface {
  static inline int alive = 0;
  Counted() { ++alive; }
  ~Counted() override { --alive; }
};

struct Throwing : Lumo::PtrInterface {
  Throwing() { throw Lumo::RangeException("not in range"); }
};

struct Unallocatable : Lumo::PtrInterface {
  static void* operator new(std::size_t, const std::nothrow_t&) noexcept { return nullptr; }
  static void operator delete(void*) {}
  static void operator delete(void*, const std::nothrow_t&) {}
};

TEST(PtrTest, CountsEveryHolder) {
  auto first = Lumo::newEntity<Counted>();
  EXPECT_EQ(first->references(), 1u);
  EXPECT_EQ(Counted::alive, 1);
  {
    const Ptr<Counted> copy = first;
    const Ptr<const Counted> constant = copy;
    EXPECT_EQ(first->references(), 3u);
    EXPECT_TRUE(constant == first);
  }
  EXPECT_EQ(first->references(), 1u);
  const Ptr<Counted> moved = std::move(first);
  EXPECT_FALSE(first); // NOLINT: the state of a moved-from pointer is promised
  EXPECT_EQ(moved->references(), 1u);
}

TEST(PtrTest, TheLastReferenceDeletes) {
  auto entity = Lumo::newEntity<Counted>();
  Ptr<Counted>& alias = entity;
  entity = alias;
  EXPECT_EQ(entity->references(), 1u);
  entity = Lumo::newEntity<Counted>();
  EXPECT_EQ(Counted::alive, 1);
  entity = nullptr;
  EXPECT_EQ(Counted::alive, 0);
}

/// Sets the switch for the life of the object.
struct ThreadSafe {
  ThreadSafe() { Lumo::enableThreadSafePointers = true; }
  ~ThreadSafe() { Lumo::enableThreadSafePointers = false; }
};

TEST(PtrTest, TheSwitchMakesCountsSafeBetweenThreads) {
  const ThreadSafe on;
  const auto entity = Lumo::newEntity<Counted>();
  const auto copyOften = [&] {
    for (int i = 0; i < 200000; ++i) const Ptr<Counted> copy = entity;
  };
  std::thread other(copyOften);
  copyOften();
  other.join();
  EXPECT_EQ(entity->references(), 1u);
  EXPECT_EQ(Counted::alive, 1);
}

/// Notes what the allocation tracking is told.
struct Tracking {
  Tracking() {
    allocated = 0;
    failed = 0;
    Lumo::allocationTracking = {
        [](const Lumo::PtrInterface*, const std::type_info& type) {
          allocated += type == typeid(Counted);
        },
        [](const std::type_info& type) { failed += type == typeid(Throwing); }};
  }
  ~Tracking() { Lumo::allocationTracking = {}; }
  static inline int allocated, failed;
};

TEST(NewEntityTest, TracksAndActivatesAndLetsFailuresPass) {
  const Tracking tracking;
  const auto entity = Lumo::newEntity<Counted>();
  EXPECT_TRUE(entity->hasNotificationActive());
  EXPECT_EQ(Tracking::allocated, 1);
  EXPECT_EQ(Tracking::failed, 0);
  EXPECT_THROW(Lumo::newEntity<Throwing>(), Lumo::RangeException);
  EXPECT_EQ(Tracking::failed, 1);
  EXPECT_EQ(support::messageOf<Lumo::RangeException>([] { Lumo::newEntity<Unallocatable>(); }),
            "null ValidPtr");
}

} // namespace
