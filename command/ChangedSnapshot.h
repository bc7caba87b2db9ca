// The snapshot that a command changes.
#pragma once

#include "command/Options.h"
#include "command/StaticLines.h"
#include "sources/snapshot/FileWriter.h"

#include <optional>
#include <string_view>

namespace command {

/// Raises UsageError for a snapshot from standard input that goes into no file.
void requireTarget(std::string_view command, const Options& options);

/// Raises SourceError for the file of a state database: a snapshot must not take its place.
void refuseDatabase(const std::string& path);

/// What tells on standard error that another process has the file.
std::function<void()> tellWaiting(const std::string& path);

/// The file that the changed snapshot goes to: that of --into, or else its own; none with
/// --dry-run. No other command changes it while the object lives, so make it before the state is
/// read. It keeps a reference to the options.
class ChangedSnapshot {
 public:
  explicit ChangedSnapshot(const Options& options);

  /// Shows the lines and lets the changed state take the place of the old one: both, or nothing
  /// changes.
  void replace(const state::DeviceState& device, const Lines& lines);

 private:
  const Options& options_;
  std::optional<sources::snapshot::FileWriter> file_;
};

} // namespace command
