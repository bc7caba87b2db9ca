// The failure of a source of state.
#pragma once

#include "scrivo/Shown.h"

#include <stdexcept>
#include <string>

namespace sources {

/// A source cannot give, or keep, a state. `what()` is one line that names the input, the place in
/// it, what was found there and what was expected. Names in it may hold any byte: what does not
/// show as it is stands there escaped.
class SourceError : public std::runtime_error {
 public:
  explicit SourceError(const std::string& message) : std::runtime_error(scrivo::shown(message)) {}
};

/// What messages call an input: its name, and "-" the standard input.
inline std::string inputName(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

} // namespace sources
