// Bob Jenkins' one-at-a-time hash, which identifiers of shared tables have.
#pragma once

#include <cstdint>

namespace Lumo {

/// Fed with numbers byte by byte, lowest first; every step in 32 bits.
class OneAtATime {
 public:
  OneAtATime& add(std::uint64_t value) {
    for (int i = 0; i < 8; ++i) {
      hash_ += static_cast<std::uint8_t>(value >> (8 * i));
      hash_ += hash_ << 10;
      hash_ ^= hash_ >> 6;
    }
    return *this;
  }
  std::uint32_t end() const {
    std::uint32_t hash = hash_ + (hash_ << 3);
    hash ^= hash >> 11;
    return hash + (hash << 15);
  }

 private:
  std::uint32_t hash_ = 0;
};

} // namespace Lumo
