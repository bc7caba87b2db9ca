#include "command/ChangedSnapshot.h"

#include "command/grammar/UsageError.h"
#include "command/terminal/Message.h"
#include "scrivo/Exception.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Shown.h"
#include "sources/database/Database.h"
#include "sources/snapshot/Snapshot.h"

namespace command {

namespace {

/// A reader that goes away has seen enough; what was to be done is done all the same.
void printToReader(const Lines& lines, const Options& options) {
  try {
    printLines(lines, options);
  } catch (const scrivo::sigintException&) {
    if (scrivo::interruptRequested()) throw;
  }
}

} // namespace

void requireTarget(std::string_view command, const Options& options) {
  if (options.dryRun || !options.into.empty() || options.state != "-") return;
  throw UsageError("rova: " + std::string(command) +
                   " changes a snapshot: with one from standard input, --into names the file that "
                   "it goes to");
}

void refuseDatabase(const std::string& path) {
  if (!sources::database::isDatabase(path)) return;
  throw sources::SourceError(path + ": is a state database, which its agent alone changes; --into "
                                    "names the file of a snapshot");
}

std::function<void()> tellWaiting(const std::string& path) {
  return [path] {
    terminal::tell("rova: " + scrivo::shown(path) +
                   ": waiting for another process that changes it");
  };
}

ChangedSnapshot::ChangedSnapshot(const Options& options) : options_(options) {
  if (options.dryRun) return;
  const auto& path = options.into.empty() ? options.state : options.into;
  refuseDatabase(path);
  file_.emplace(path, tellWaiting(path));
}

// A new file that is whole and stands ready fails to take its place far less often than lines fail
// to be shown: a full disk or a closed output is found while the old file is still there.
void ChangedSnapshot::replace(const state::DeviceState& device, const Lines& lines) {
  if (file_) sources::snapshot::save(device, *file_);
  printToReader(lines, options_);
  if (file_) file_->commit();
}

} // namespace command
