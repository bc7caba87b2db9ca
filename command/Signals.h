// How the program ends when a signal asks it to.
#pragma once

namespace command {

/// From here on SIGINT, SIGTERM and SIGHUP end the process at once, wherever it is, with the status
/// of the signal (128 and its number), and leave no unfinished file behind. A hangup that the
/// caller has ignored (nohup) stays so. A reader that goes away and a limit of file sizes show as
/// failed writes instead of signals.
void installSignals();

/// A render, which ends in order: within it the first SIGINT is the printer's, which stops the
/// output and says so. One such object at a time.
class RenderScope {
 public:
  RenderScope();
  ~RenderScope();
  RenderScope(const RenderScope&) = delete;
  RenderScope& operator=(const RenderScope&) = delete;
};

/// Ends the process after a render that an interrupt has ended: nobody waits for a million routes
/// to be taken apart.
[[noreturn]] void leaveInterrupted();

} // namespace command
