// What a user chooses in the shell for the commands that follow: a source of state, a VRF. The
// shell keeps what was chosen; here is whether it is there.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

/// Raises UsageError for standard input, which the shell has, and SourceError for a source that
/// gives no state.
ExitStatus chooseState(const grammar::Parsed& parsed, const Options& options);

/// Raises SourceError when there is no such VRF.
ExitStatus chooseVrf(const grammar::Parsed& parsed, const Options& options);

ExitStatus leaveShell(const grammar::Parsed& parsed, const Options& options);

} // namespace command
