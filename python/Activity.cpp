#include "Activity.h"

#include "lumo/ActivityLock.h"
#include "lumo/Ptr.h"
#include "scrivo/Interrupt.h"

#include <cerrno>
#include <exception>
#include <signal.h>
#include <vector>

namespace rova_python {

namespace {

/// How many `Activity` objects the thread has; only the outermost has the lock.
thread_local int depth = 0;
/// The thread's state while it works without Python's lock, else null.
thread_local PyThreadState* unlocked = nullptr;

/// Python's lock guards it. Never destroyed: Python ends objects until the process does.
std::vector<std::unique_ptr<Discarded>>& discarded() {
  static auto* const waiting = new std::vector<std::unique_ptr<Discarded>>;
  return *waiting;
}

Lumo::Lock& activityLock() { return Lumo::ActivityUnlockAnchor::lock(); }

void* released() { return !unlocked && PyGILState_Check() ? PyEval_SaveThread() : nullptr; }

/// Runs the handlers of signals that came meanwhile; what one raises ends the library's work.
void runSignalHandlers(bool unwinding) {
  if (!unwinding && PyErr_CheckSignals() < 0) throw PythonError();
}

void retaken(void* token, bool unwinding) {
  if (token) {
    PyEval_RestoreThread(static_cast<PyThreadState*>(token));
    runSignalHandlers(unwinding);
  } else if (unlocked && !unwinding) {
    PyEval_RestoreThread(unlocked);
    const bool ended = PyErr_CheckSignals() < 0;
    unlocked = PyEval_SaveThread();
    if (ended) throw PythonError();
  }
}

// Interrupts are the process's, like the signal: the first to come enters the handler, the last to
// go takes it out. Python's lock guards what is not read by the handler.
int interruptible = 0;
bool handlerEntered = false;
struct sigaction previous;

void onInterrupt(int number, siginfo_t* info, void* context) {
  scrivo::requestInterrupt();
  if (previous.sa_flags & SA_SIGINFO) {
    previous.sa_sigaction(number, info, context);
  } else {
    previous.sa_handler(number);
  }
}

bool isHandler(const struct sigaction& action) {
  return (action.sa_flags & SA_SIGINFO) ||
         (action.sa_handler != SIG_DFL && action.sa_handler != SIG_IGN);
}

/// Chains to the handler that is there. Where SIGINT ends the process or is ignored, it does so on.
void enterHandler() {
  handlerEntered = sigaction(SIGINT, nullptr, &previous) == 0 && isHandler(previous);
  if (!handlerEntered) return;
  struct sigaction action = {};
  action.sa_sigaction = onInterrupt;
  action.sa_flags = SA_SIGINFO | (previous.sa_flags & SA_ONSTACK); // no SA_RESTART: writes return
  action.sa_mask = previous.sa_mask;
  handlerEntered = sigaction(SIGINT, &action, nullptr) == 0;
}

/// Puts the handler back, unless somebody put another one in its place meanwhile.
void leaveHandler() {
  if (!handlerEntered) return;
  struct sigaction current = {};
  const bool isOurs = sigaction(SIGINT, nullptr, &current) == 0 &&
                      (current.sa_flags & SA_SIGINFO) && current.sa_sigaction == onInterrupt;
  if (isOurs) sigaction(SIGINT, &previous, nullptr);
  handlerEntered = false;
}

} // namespace

Activity::Activity(Wait wait) {
  if (depth == 0) {
    int error = activityLock().tryTake();
    if (error == EBUSY && wait == Wait::yes) {
      PyThreadState* const state = PyEval_SaveThread();
      error = activityLock().take();
      PyEval_RestoreThread(state);
    }
    taken_ = error == 0;
    // A host that is not of Python may have it on this thread already: then it is held.
    held_ = taken_ || error == EDEADLK;
  }
  if (held_) ++depth;
}

Activity::~Activity() {
  if (taken_) discarded().clear();
  if (held_) --depth;
  if (taken_) activityLock().giveUp();
}

void discardLater(std::unique_ptr<Discarded> later) { discarded().push_back(std::move(later)); }

PythonUnlocked::PythonUnlocked() { unlocked = PyEval_SaveThread(); }

PythonUnlocked::~PythonUnlocked() {
  PyThreadState* const state = unlocked;
  unlocked = nullptr;
  PyEval_RestoreThread(state);
}

Interrupts::Interrupts() : exceptions_(std::uncaught_exceptions()) {
  if (interruptible++ == 0) enterHandler();
  if (PyErr_CheckSignals() < 0) { // one that came before would end nothing any more
    leave();
    throw PythonError();
  }
}

void Interrupts::leave() {
  if (--interruptible > 0) return;
  leaveHandler();
  scrivo::clearInterrupt();
}

Interrupts::~Interrupts() noexcept(false) {
  leave();
  runSignalHandlers(std::uncaught_exceptions() > exceptions_);
}

void prepareLibrary() {
  Lumo::enableThreadSafePointers = true;
  activityLock().releaseHooksAre({released, retaken});
}

} // namespace rova_python
