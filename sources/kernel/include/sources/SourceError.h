// Why a source of state could not be read.
#pragma once

#include <stdexcept>

namespace sources {

/// A source that cannot be read. The text is one line: what failed, where, what was found and what
/// helps.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

} // namespace sources
