// A small generator of random numbers that gives the same on every machine (splitmix64).
#pragma once

#include <cstdint>

namespace bench {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t value = state_ += 0x9e3779b97f4a7c15ull;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ull;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebull;
    return value ^ (value >> 31);
  }
  /// 0 to `bound` - 1. The bias of the remainder is far below what a measurement shows.
  std::uint64_t below(std::uint64_t bound) { return next() % bound; }

 private:
  std::uint64_t state_;
};

} // namespace bench
