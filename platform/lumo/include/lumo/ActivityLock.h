// The process's activity lock, and giving it up for a moment.
#pragma once

#include "lumo/Export.h"

#include <cstdint>
#include <pthread.h>

namespace Lumo {

/// A lock that its holder may have to give up for a while. It checks its owner: taking it twice on
/// one thread fails with EDEADLK instead of hanging.
class LUMO_EXPORT Lock {
 public:
  Lock();
  ~Lock();
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  /// Both return 0 or an error number, as the calls of pthread do.
  int take() { return pthread_mutex_lock(&mutex_); }
  int giveUp() { return pthread_mutex_unlock(&mutex_); }

  /// Whether an `UnlockAnchor` may give the lock up; true at first.
  bool releasable() const { return releasable_; }
  void releasableIs(bool releasable) { releasable_ = releasable; }

 private:
  pthread_mutex_t mutex_;
  bool releasable_ = true;
};

/// Gives a lock up for the life of the object and takes it again at its end, also when an exception
/// passes. Errors are those of `unlock` and `relock` failing (see the source for their texts).
class LUMO_EXPORT UnlockAnchor {
 public:
  explicit UnlockAnchor(Lock& lock);
  ~UnlockAnchor() noexcept(false);
  UnlockAnchor(const UnlockAnchor&) = delete;
  UnlockAnchor& operator=(const UnlockAnchor&) = delete;

 private:
  Lock& lock_;
};

/// The activity lock of the process: whoever works on shared entities holds it.
struct LUMO_EXPORT ActivityUnlockAnchor {
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
