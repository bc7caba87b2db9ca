// Where a watcher reads: a database that somebody keeps, which it opens anew when another file has
// taken its place. For a kernel an agent of the watcher's own keeps one.
#pragma once

#include "agent/PrivateAgent.h"
#include "command/Options.h"
#include "sources/database/CommitWait.h"
#include "sources/database/Database.h"

#include <chrono>
#include <optional>

namespace command {

class WatchSource {
 public:
  /// Opens the state that the options name, which is held then; tells what is to be known of it.
  /// Raises `SourceError`, for a snapshot too.
  WatchSource(const Options& options, const sources::Needs& needs);

  const sources::State& state() const { return loaded_->state; }
  sources::database::LogReader& log() { return loaded_->log; }

  /// Waits for a commit or a second. False when nobody reads the standard output any more. Raises
  /// `SourceError` when an agent of one's own has ended.
  bool wait();

  /// Whether what is open would not show what is written by now.
  bool isOutdated() const;
  /// Opens the state again, which is held then. False while there is none: an agent that starts its
  /// file anew needs a moment, and `SourceError` is raised once it took longer than that.
  bool reload();

 private:
  void load();
  void tellSilence();

  std::optional<agent::PrivateAgent> agent_;
  const std::string path_;
  const sources::Needs needs_;
  sources::database::CommitWait commits_;
  std::optional<sources::database::LoggedState> loaded_;
  std::uint64_t device_ = 0, file_ = 0; ///< of the file that is open
  std::optional<std::chrono::steady_clock::time_point> lacking_;
  unsigned silentSeconds_ = 0;
};

} // namespace command
