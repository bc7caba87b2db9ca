#include "command/ChangedSnapshot.h"

#include "command/Words.h"

namespace command {

std::string changedSnapshot(std::string_view command, const Options& options) {
  if (options.dryRun) return {};
  if (!options.into.empty()) return options.into;
  if (options.state != "-") return options.state;
  throw UsageError("rova: " + std::string(command) +
                   " changes a snapshot: with one from standard input, --into names the file that "
                   "it goes to");
}

} // namespace command
