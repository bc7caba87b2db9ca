// The locks around work in the library, and the interrupts that reach it.
//
// Who works in the library holds the activity lock of the process. Order of the locks: the activity
// lock first, then Python's. A thread that holds Python's lock never waits for the activity lock
// with it, and may then wait for Python's while it holds the activity lock.
#pragma once

#include "Errors.h"

#include <memory>
#include <utility>

namespace rova_python {

/// Holds the activity lock for its life; Python's lock is held before, after and during it. One
/// thread may nest them.
class Activity {
 public:
  enum class Wait { yes, no };

  /// Without waiting it does without the lock when another thread has it.
  explicit Activity(Wait wait = Wait::yes);
  ~Activity();
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;

  explicit operator bool() const { return held_; }

 private:
  bool held_ = true;
  bool taken_ = false; ///< by this object, not by one around it
};

/// `guarded` and `guardedInt` in the library: with the activity lock.
template <class Body>
PyObject* locked(Body body) noexcept {
  return guarded([&] {
    const Activity activity;
    return body();
  });
}
template <class Body>
int lockedInt(Body body) noexcept {
  return guardedInt([&] {
    const Activity activity;
    return body();
  });
}

/// Something of the library that waits for its end.
struct Discarded {
  virtual ~Discarded() = default;
};
/// Keeps it until the activity lock is given back.
void discardLater(std::unique_ptr<Discarded> discarded);

/// Destroys part of a Python object that ends. Python ends objects wherever it happens to be, on
/// the thread for one that reads what another one lists: so it never waits for the activity lock.
template <class T>
void discard(T& value) {
  if (const Activity activity(Activity::Wait::no); !activity) {
    struct Held : Discarded {
      explicit Held(T&& held) : value(std::move(held)) {}
      T value;
    };
    discardLater(std::make_unique<Held>(std::move(value)));
    std::destroy_at(&value); // nothing is left in it
  } else {
    std::destroy_at(&value);
  }
}

/// Gives Python's lock up for its life, so that other threads of Python run while the library waits
/// for whoever reads its output. No Python object may be touched meanwhile.
class PythonUnlocked {
 public:
  PythonUnlocked();
  ~PythonUnlocked();
  PythonUnlocked(const PythonUnlocked&) = delete;
  PythonUnlocked& operator=(const PythonUnlocked&) = delete;
};

/// For the life of the object, SIGINT also stops what the library renders; the handler that was
/// there is called too. At its begin and its end pending signals of Python run their handlers: what
/// one raises is thrown as `PythonError`, unless an exception is on its way. At its end the wish is
/// forgotten.
class Interrupts {
 public:
  Interrupts();
  ~Interrupts() noexcept(false);
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;

 private:
  void leave();
  int exceptions_; ///< under way at the begin
};

/// Once, at import: Python's lock is given up wherever the library gives up the activity lock, and
/// entities are counted as threads need it.
void prepareLibrary();

} // namespace rova_python
