// Nexthop groups: which identifier each name has.
#pragma once

#include "lumo/Ptr.h"
#include "lumo/String.h"
#include "vanta/VantaMap.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace Routing::NexthopGroup {

/// A nexthop group's number. It reads and writes as a number; it is a type of its own so that
/// access by name tells it from one.
class NexthopGroupId {
 public:
  constexpr NexthopGroupId(std::uint32_t value = 0) : value_(value) {}
  constexpr operator std::uint32_t() const { return value_; }
  constexpr std::uint32_t value() const { return value_; }
  std::size_t hash() const { return value_; }

 private:
  std::uint32_t value_;
};

} // namespace Routing::NexthopGroup

namespace NexthopGroup {

/// A group's name in the fixed room of a shared table: at most 128 bytes, the rest zero. A longer
/// name is cut.
class NexthopGroupEntryKey {
 public:
  /// The most bytes that a name may have.
  static constexpr std::size_t maxBytes = 128;

  NexthopGroupEntryKey() = default;
  explicit NexthopGroupEntryKey(const Lumo::String& name) { nhgNameIs(name); }
  /// Replaces the name; what is longer is cut off.
  void nhgNameIs(const Lumo::String& name) {
    bytes_ = {};
    std::memcpy(bytes_.data(), name.c_str(), std::min(name.bytes(), maxBytes));
  }
  /// The name without what fills it up.
  Lumo::String nhgName() const {
    return Lumo::String(std::string_view(bytes_.data(), strnlen(bytes_.data(), maxBytes)));
  }
  friend auto operator<=>(const NexthopGroupEntryKey&, const NexthopGroupEntryKey&) = default;

 private:
  std::array<char, maxBytes> bytes_{};
  std::uint8_t reserved_ = 0;
};

/// The identifier that a group was given, by its name.
struct NexthopGroupEntry {
  NexthopGroupEntryKey key;
  Routing::NexthopGroup::NexthopGroupId nhgId = 0;
};

/// The identifiers of all groups.
class EntryStatus : public Lumo::PtrInterface {
 public:
  using Table = Vanta::VantaBase<NexthopGroupEntryKey, NexthopGroupEntry>;
  explicit EntryStatus(std::unique_ptr<Table> table)
      : nexthopGroupEntry(std::move(table), "nexthopGroupEntry") {}
  Vanta::VantaMap<NexthopGroupEntryKey, NexthopGroupEntry> nexthopGroupEntry;
};

} // namespace NexthopGroup

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<NexthopGroup::NexthopGroupEntryKey,
                                      NexthopGroup::NexthopGroupEntry>;
