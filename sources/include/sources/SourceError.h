// The failure of a source of state.
#pragma once

#include <stdexcept>
#include <string>

namespace sources {

/// A source cannot give, or keep, a state. `what()` is one line that names the input, the place in
/// it, what was found there and what was expected.
class SourceError : public std::runtime_error {
 public:
  explicit SourceError(const std::string& message) : std::runtime_error(oneLine(message)) {}

 private:
  // A file's name may hold any byte, a line break too.
  static std::string oneLine(std::string message) {
    for (char& c : message) {
      if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    }
    return message;
  }
};

/// What messages call an input: its name, and "-" the standard input.
inline std::string inputName(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

} // namespace sources
