// How far a source has come with what takes long.
#pragma once

#include <cstdint>
#include <string_view>

namespace sources {

/// Whoever waits for a source. A source tells it seldom, every some hundred objects, and is given
/// none where nobody waits.
class Progress {
 public:
  virtual ~Progress() = default;
  /// `done` of `all` is done of what `what` says ("reading the kernel's IPv4 routes"); `all` is 0
  /// where nobody knows it, and so is `done` where nobody counts. Does not throw.
  virtual void at(std::string_view what, std::uint64_t done, std::uint64_t all) = 0;
};

} // namespace sources
