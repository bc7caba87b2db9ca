// The snapshot that a command changes.
#pragma once

#include "command/Options.h"

#include <string>
#include <string_view>

namespace command {

/// The file that the changed snapshot goes to: that of --into, or else its own; empty with
/// --dry-run, which writes none. Raises UsageError for a snapshot from standard input, which has no
/// file.
std::string changedSnapshot(std::string_view command, const Options& options);

} // namespace command
