// How a command ends.
#pragma once

namespace command {

/// Exit statuses of the program. A command that compares has those of diff(1), where 1 says that
/// there are differences and a failure is 2.
enum ExitStatus : int {
  success = 0,
  failure = 1,
  different = 1,
  usage = 2,
  trouble = 2,
  interrupted = 130
};

} // namespace command
