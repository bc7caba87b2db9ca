// Errors as one message on standard error and an exit status.
#pragma once

#include "command/grammar/ExitStatus.h"

#include <functional>

namespace command::shell {

/// Does the work; the exit status is that of the error where it raises one. A reader that went away
/// is no error. Does not throw.
ExitStatus reported(const std::function<ExitStatus()>& work) noexcept;

} // namespace command::shell
