// The shell: reads lines and runs each as a command, until they end or one says so.
#pragma once

#include "command/shell/Program.h"

namespace command::shell {

/// With a prompt on a terminal, else from standard input. `options` go ahead of those of each
/// command. The exit status is that of the first line that failed, and success on a terminal,
/// where a user has seen what failed.
ExitStatus runShell(const Program& program, std::vector<grammar::GivenOption> options);

} // namespace command::shell
