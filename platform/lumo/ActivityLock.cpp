#include "lumo/ActivityLock.h"

#include "lumo/Exception.h"

#include <cerrno>

namespace Lumo {

Lock::Lock() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
  pthread_mutex_init(&mutex_, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

Lock::~Lock() { pthread_mutex_destroy(&mutex_); }

UnlockAnchor::UnlockAnchor(Lock& lock) : lock_(lock) {
  if (!lock_.releasable()) {
    throw InternalException("Lock Protocol exception -- unlocking an unreleasable lock");
  }
  if (const int error = lock_.giveUp()) throw ErrnoException(error, "Failed to release the lock");
}

UnlockAnchor::~UnlockAnchor() noexcept(false) {
  const int error = lock_.take();
  if (error == EDEADLK) {
    throw InternalException("Lock was already grabbed in UnlockAnchor destructor!");
  }
  if (error) throw ErrnoException(error, "Failed to grab lock");
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
