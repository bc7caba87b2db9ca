// How far a long piece of work has come, in one line of a terminal that goes when it is done.
#pragma once

#include "sources/Progress.h"

namespace command::terminal {

/// Draws on standard error, if that is a terminal, once the command has taken half a second, and
/// then figures at most ten times a second. Nothing else is written while it lives: it takes its
/// line away in the end.
class ProgressLine : public sources::Progress {
 public:
  /// `startTime`: when the command began, in seconds of the framework's clock.
  explicit ProgressLine(double startTime);
  ~ProgressLine() override;
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// For what tells of the progress; null where nobody sees it.
  sources::Progress* get() { return isSeen_ ? this : nullptr; }

  void at(std::string_view what, std::uint64_t done = 0, std::uint64_t all = 0) override;

 private:
  bool isSeen_;
  double firstDue_; ///< when to draw for the first time
  double due_;      ///< and when again
};

/// Takes the line away in a signal handler that ends the process.
void removeProgressLine() noexcept;

} // namespace command::terminal
