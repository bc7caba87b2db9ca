#include "lumo/ActivityLock.h"

#include "lumo/Exception.h"

#include <cerrno>
#include <exception>

namespace Lumo {

Lock::Lock() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
  pthread_mutex_init(&mutex_, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

Lock::~Lock() { pthread_mutex_destroy(&mutex_); }

UnlockAnchor::UnlockAnchor(Lock& lock) : lock_(lock), exceptions_(std::uncaught_exceptions()) {
  if (!lock_.releasable()) {
    throw InternalException("Lock Protocol exception -- unlocking an unreleasable lock");
  }
  if (const int error = lock_.giveUp()) throw ErrnoException(error, "Failed to release the lock");
  if (const auto released = lock_.releaseHooks().released) token_ = released();
}

UnlockAnchor::~UnlockAnchor() noexcept(false) {
  const int error = lock_.take();
  if (error == EDEADLK) {
    throw InternalException("Lock was already grabbed in UnlockAnchor destructor!");
  }
  if (error) throw ErrnoException(error, "Failed to grab lock");
  if (const auto retaken = lock_.releaseHooks().retaken) {
    retaken(token_, std::uncaught_exceptions() > exceptions_);
  }
}

Lock& ActivityUnlockAnchor::lock() {
  static Lock lock;
  return lock;
}

ActivityLockHold::ActivityLockHold() {
  if (const int error = ActivityUnlockAnchor::lock().take()) {
    throw ErrnoException(error, "Failed to grab lock");
  }
}

ActivityLockHold::~ActivityLockHold() { ActivityUnlockAnchor::lock().giveUp(); }

} // namespace Lumo
