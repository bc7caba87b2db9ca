// Interface identifiers: 8 bytes that mean the same interface in every process on one state.
//
//   bits 63..56  family
//   bits 55..0   the family's own number
//
// | family       | name                      | number                                            |
// |--------------|---------------------------|---------------------------------------------------|
// | 0x00         | "" (the null identifier)  | 0xffffffff                                        |
// | 0x10         | EthernetA[/B[/C]][.S]     | A 20 bits, B, C, S 12 bits each; a part that is   |
// | 0x11         | LoopbackA ...             | absent is 0, a part of value v is v + 1           |
// | 0x12         | ManagementA ...           |                                                   |
// | 0x13         | Port-ChannelA ...         |                                                   |
// | 0x14         | TunnelA ...               |                                                   |
// | 0x15         | VlanA ...                 |                                                   |
// | 0x40         | DynamicTunnel:K.I         | tunnel identifier: K in bits 47..44, I below      |
// | 0x41         | Fec:T.N                   | adjacency type T in bits 55..48, N below          |
// | 0x42         | NexthopGroup:N            | nexthop group identifier, 32 bits                 |
// | 0x80         | any other name            | 56 bits of the FNV-1a hash of the name            |
//
// The names of what is no interface have a colon, which no Linux interface may have in its name.
//
// Inside a family of the first kind, number order is the natural order of the names (Ethernet2
// before Ethernet10, Ethernet1 before Ethernet1.5 before Ethernet1/1). Other names are ordered by
// their text with digit runs compared as numbers. Families are ordered by their code.
#pragma once

#include "kesh/Address.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh {

/// An interface, or what stands in the place of one, as a number that means the same everywhere.
class IntfId {
 public:
  /// The null identifier: no interface.
  constexpr IntfId() = default;
  /// From a name; the empty name gives the null identifier. A name of no known family is entered in
  /// the process's name table. Raises a range error in the case, next to impossible, that two names
  /// of one process share an identifier.
  explicit IntfId(const Lumo::String& name);
  /// From what `stringValue` gives, a name or the number of an identifier without one.
  static std::optional<IntfId> parse(std::string_view text);
  /// From the number that `value` gave, here or in another process.
  static constexpr IntfId fromValue(std::uint64_t value) {
    IntfId id;
    id.low_ = static_cast<std::uint32_t>(value);
    id.high_ = static_cast<std::uint32_t>(value >> 32);
    return id;
  }

  /// The whole number; its code of the table above, and what is below that; and whether it is not
  /// null:
  constexpr std::uint64_t value() const { return std::uint64_t{high_} << 32 | low_; }
  constexpr unsigned family() const { return high_ >> 24; }
  constexpr std::uint64_t number() const { return value() & 0x00ffffffffffffffull; }
  constexpr explicit operator bool() const { return low_ != 0xffffffffu || high_ != 0; }
  /// The name; for an identifier of another process's name that this one has never seen,
  /// "Intf#" and the number in hexadecimal.
  Lumo::String stringValue() const;
  std::size_t hash() const { return mixHash(value()); }

  friend constexpr bool operator==(const IntfId&, const IntfId&) = default;
  friend bool operator<(const IntfId& a, const IntfId& b) {
    if (a.family() == namedFamily && b.family() == namedFamily) return lessByName(a, b);
    return a.value() < b.value();
  }

  /// The code of all names that have no family of their own.
  static constexpr unsigned namedFamily = 0x80;

 private:
  static bool lessByName(const IntfId& a, const IntfId& b);
  // Two words, so that the identifier aligns to 4 bytes inside the packed via records.
  std::uint32_t low_ = 0xffffffffu;
  std::uint32_t high_ = 0;
};

/// Orders texts with their runs of digits compared as numbers; a total order.
bool naturalLess(std::string_view a, std::string_view b);

/// Management interfaces carry no routed traffic of a VRF.
struct MgmtIntfId {
  /// Whether it is one, by its name.
  static bool isMgmtIntfId(const IntfId& id);
};

/// A configured tunnel interface and its port number.
struct TunnelIntfId {
  /// Whether it is one, and its port number:
  static bool isTunnelIntfId(const IntfId& id);
  static std::uint32_t port(const IntfId& id);
};

/// A tunnel identifier (48 bits: kind, index) in the dress of an interface.
struct DynamicTunnelIntfId {
  /// Whether it is one; the tunnel behind it; and the other way round:
  static bool isDynamicTunnelIntfId(const IntfId& id);
  static std::uint64_t tunnelId(const IntfId& id);
  static IntfId tunnelIdToIntfId(std::uint64_t tunnelId);
};

/// A nexthop group in the dress of an interface.
struct NexthopGroupIntfId {
  /// Whether it is one.
  static bool isNexthopGroupIntfId(const IntfId& id);
  /// The group's identifier; 0 for any other interface.
  static std::uint32_t nexthopGroupId(const IntfId& id);
  /// The form that a group has in the place of an interface.
  static IntfId intfId(std::uint32_t nexthopGroupId);
};

/// A FEC identifier in the dress of an interface. Identifiers whose number needs more than 48 bits
/// have no such form: they map to the null identifier.
struct FecIdIntfId {
  /// Whether it is one; the FEC behind it; and the other way round:
  static bool isFecIdIntfId(const IntfId& id);
  static std::uint64_t fecId(const IntfId& id);
  static IntfId intfId(std::uint64_t fecId);
};

} // namespace Kesh
