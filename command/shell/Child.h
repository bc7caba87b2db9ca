// Commands in processes of their own. The shell lives on whatever a command ends in: an interrupt,
// which takes effect at once wherever the command is, or an internal failure; and what a command
// has read is gone with it, so that the next one sees the state as it is by then.
//
// A filter reads the command's output from a pipe in the shell's own process. What is under way is
// a pipe and one line, however long the listing; no thread is needed, and the end of the command,
// also by an interrupt, is the end of the pipe.
#pragma once

#include "command/grammar/ExitStatus.h"

#include <functional>
#include <string_view>

namespace command::shell {

using Work = std::function<ExitStatus()>;
using TakeOutput = std::function<void(std::string_view)>;

/// Blocks or unblocks, by SIG_BLOCK or SIG_UNBLOCK, the signals that keys of a terminal send. A
/// process of the following begins with them unblocked.
void setKeySignals(int how);

/// Does the work in a process of its own; the exit status is 128 and its number after a signal,
/// which standard error names. Raises std::system_error where no process can be had.
int runApart(const Work& work);

/// The same with what it writes to standard output handed to `take`. Where that throws, the process
/// loses its reader, and the exception passes on once it has ended.
int runApart(const Work& work, const TakeOutput& take);

} // namespace command::shell
