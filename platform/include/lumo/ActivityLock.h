// The process's activity lock, and giving it up for a moment.
#pragma once

#include "lumo/Export.h"

#include <cstdint>
#include <pthread.h>

namespace Lumo {

/// What a host does beside a lock while the lock is given up: the interpreter of a script, for one,
/// has a lock of its own.
struct ReleaseHooks {
  /// Called when the lock has been given up; its result goes to `retaken`.
  void* (*released)() = nullptr;
  /// Called when the lock has been taken again. It may raise, to end the work, unless `unwinding`
  /// tells that an exception is on its way already.
  void (*retaken)(void* token, bool unwinding) = nullptr;
};

/// A lock that its holder may have to give up for a while. It checks its owner: taking it twice on
/// one thread fails with EDEADLK instead of hanging.
class LUMO_EXPORT Lock {
 public:
  Lock();
  ~Lock();
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  /// Both return 0 or an error number, as the calls of pthread do:
  int take() { return pthread_mutex_lock(&mutex_); }
  int giveUp() { return pthread_mutex_unlock(&mutex_); }

  /// Whether an `UnlockAnchor` may give the lock up; true at first.
  bool releasable() const { return releasable_; }
  void releasableIs(bool releasable) { releasable_ = releasable; }

  /// Whether the process has no other activity, so that nobody waits for a turn; false at first. A
  /// host that knows so says it once, ahead of its work: whoever gives others a turn then gives the
  /// lock up and takes it again as ever, with its hooks and errors, but does not wait in between.
  bool soleActivity() const { return soleActivity_; }
  void soleActivityIs(bool sole) { soleActivity_ = sole; }

  /// Takes the lock if it is free; 0 or an error number, EBUSY when it is not.
  int tryTake() { return pthread_mutex_trylock(&mutex_); }

  /// What is called around every giving up of the lock; nothing at first.
  const ReleaseHooks& releaseHooks() const { return releaseHooks_; }
  /// Replaces the hooks.
  void releaseHooksAre(const ReleaseHooks& hooks) { releaseHooks_ = hooks; }

 private:
  pthread_mutex_t mutex_;
  bool releasable_ = true;
  bool soleActivity_ = false;
  ReleaseHooks releaseHooks_;
};

/// Gives a lock up for the life of the object and takes it again at its end, also when an exception
/// passes. Errors are those of `unlock` and `relock` failing (see the source for their texts), and
/// what the lock's hooks raise.
class LUMO_EXPORT UnlockAnchor {
 public:
  explicit UnlockAnchor(Lock& lock);
  ~UnlockAnchor() noexcept(false);
  UnlockAnchor(const UnlockAnchor&) = delete;
  UnlockAnchor& operator=(const UnlockAnchor&) = delete;

 private:
  Lock& lock_;
  int exceptions_; ///< under way when the lock was given up
  void* token_ = nullptr;
};

/// The activity lock of the process: whoever works on shared entities holds it.
struct LUMO_EXPORT ActivityUnlockAnchor {
  /// The one lock of the process.
  static Lock& lock();
};

/// Holds the activity lock for the life of the object; a program takes one around each command.
class LUMO_EXPORT ActivityLockHold {
 public:
  ActivityLockHold();
  ~ActivityLockHold();
  ActivityLockHold(const ActivityLockHold&) = delete;
  ActivityLockHold& operator=(const ActivityLockHold&) = delete;
};

} // namespace Lumo
