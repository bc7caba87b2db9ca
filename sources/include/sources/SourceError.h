// What a source raises when it cannot give a device's state.
#pragma once

#include <stdexcept>

namespace sources {

/// `what()` is one line: the source, the place in it, what was found, and what was expected or helps.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

} // namespace sources
