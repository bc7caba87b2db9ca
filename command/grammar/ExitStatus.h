// How a command ends.
#pragma once

namespace command {

/// Exit statuses of the program.
enum ExitStatus : int { success = 0, failure = 1, usage = 2, interrupted = 130 };

} // namespace command
