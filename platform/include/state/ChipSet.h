// Sets of forwarding chips.
#pragma once

#include "kesh/Address.h"

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Dunlin {

/// Up to 128 chips, one bit each, the first 64 in the first word. The default is the empty set.
class ChipSet {
 public:
  constexpr ChipSet() = default;
  constexpr explicit ChipSet(std::uint64_t first, std::uint64_t second = 0)
      : words_{first, second} {}
  constexpr const std::array<std::uint64_t, 2>& words() const { return words_; }
  /// 32 hexadecimal digits, the highest chip first.
  Lumo::String stringValue() const;
  /// From what `stringValue` gives; nothing for any other text.
  static std::optional<ChipSet> parse(std::string_view text);
  std::size_t hash() const { return Kesh::mixHash(words_[0] ^ Kesh::mixHash(words_[1])); }
  friend constexpr auto operator<=>(const ChipSet&, const ChipSet&) = default;

 private:
  std::array<std::uint64_t, 2> words_{};
};

} // namespace Dunlin
