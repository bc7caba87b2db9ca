// What a piece of work costs this process: time and memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

namespace bench {

/// Seconds on the clock and of the processor.
struct Cost {
  double wall = std::numeric_limits<double>::infinity();
  double cpu = std::numeric_limits<double>::infinity();

  /// Keeps the lower of each: what disturbs a measurement only ever adds to it.
  void lower(const Cost& other) {
    wall = std::min(wall, other.wall);
    cpu = std::min(cpu, other.cpu);
  }
};

/// The clocks now.
Cost clocks();

template <class Work>
Cost costOf(Work&& work) {
  const Cost start = clocks();
  work();
  const Cost end = clocks();
  return {end.wall - start.wall, end.cpu - start.cpu};
}

/// The process's memory in bytes: resident now, after free pages have gone back.
std::size_t settledMemory();
/// Forgets the highest residence so far. Raises std::runtime_error.
void resetPeakMemory();
/// The highest residence since, in bytes.
std::size_t peakMemory();

} // namespace bench
