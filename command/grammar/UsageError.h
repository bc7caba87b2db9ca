// The error of a command line that cannot be understood.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace command {

/// The exit status is 2. `what()` is the message with the line and the caret, what does not show as
/// it is in them escaped.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message);
};

/// Lines for an error: the line as it shows and a caret below its byte `place`, or behind its end.
std::string withCaret(std::string_view line, std::size_t place);

} // namespace command
