// Where the lines of a shell come from: a terminal, or a file of commands.
#pragma once

#include "command/grammar/ExitStatus.h"

#include <optional>
#include <string>

namespace command::shell {

class LineSource {
 public:
  virtual ~LineSource() = default;
  /// The next line; nothing at the end. Raises std::system_error.
  virtual std::optional<std::string> next() = 0;
  /// Notes that the line that came last has failed with a status. Whether more lines are wanted.
  virtual bool goesOnAfter(const std::string& line, int status) = 0;
  /// The exit status of the shell.
  virtual int status() const = 0;
};

} // namespace command::shell
