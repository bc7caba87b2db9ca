// Sets of forwarding chips.
#pragma once

#include "kesh/Address.h"

#include <compare>
#include <cstdint>

namespace Dunlin {

/// Up to 64 chips, one bit each. The default is the empty set.
class ChipSet {
 public:
  constexpr ChipSet() = default;
  constexpr explicit ChipSet(std::uint64_t bits) : bits_(bits) {}
  constexpr std::uint64_t value() const { return bits_; }
  std::size_t hash() const { return Kesh::mixHash(bits_); }
  friend constexpr auto operator<=>(const ChipSet&, const ChipSet&) = default;

 private:
  std::uint64_t bits_ = 0;
};

} // namespace Dunlin
