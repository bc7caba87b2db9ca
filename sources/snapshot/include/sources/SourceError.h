// The failure of a source of state.
#pragma once

#include <stdexcept>

namespace sources {

/// A source cannot give, or keep, a state. `what()` is one line that names the input, the place in
/// it, what was found there and what was expected.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

} // namespace sources
