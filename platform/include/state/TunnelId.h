// Identifiers of tunnels and of their encapsulations.
#pragma once

#include "kesh/IntfId.h"
#include "lumo/Exception.h"
#include "lumo/HashMap2018.h"

#include <cstdint>

namespace Tunnel::TunnelTable {

/// Which table a tunnel comes from.
enum class TunnelKind : std::uint8_t {
  none = 0,
  direct = 1, ///< resolved straight from the tunnel FIB
  bgpLu = 2,
  ldp = 3,
  staticTunnel = 5,
  evpnVxlan = 6,
  sr = 7,
  staticInterface = 9
};

/// A tunnel: kind in bits 47..44, number below; 0 is no tunnel. A value with a bit above those 48
/// raises "TunnelId::value < TunnelId::minValue or > TunnelId::maxValue not allowed".
class TunnelId {
 public:
  /// The least and the greatest value:
  static constexpr std::uint64_t minValue = 0;
  static constexpr std::uint64_t maxValue = 0xffffffffffffull;

  constexpr TunnelId() = default;
  constexpr explicit TunnelId(std::uint64_t value) : value_(value) {
    if (value > maxValue) {
      throw Lumo::RangeException(
          "TunnelId::value < TunnelId::minValue or > TunnelId::maxValue not allowed");
    }
  }
  /// The value of a tunnel of that kind and number.
  static constexpr std::uint64_t convertToTunnelValue(std::uint64_t kind, std::uint64_t number) {
    return kind << 44 | (number & 0xfffffffffffull);
  }

  constexpr std::uint64_t value() const { return value_; }
  /// Whether it is no tunnel; its kind; and its number among those of the kind:
  constexpr bool isNull() const { return value_ == 0; }
  constexpr TunnelKind kind() const { return static_cast<TunnelKind>(value_ >> 44); }
  constexpr std::uint64_t index() const { return value_ & 0xfffffffffffull; }
  /// The kind in the words of displays, "LDP"; "tunnel" for a number without a word.
  const char* typeCliStr() const;
  /// Jenkins one-at-a-time over the 8 bytes, lowest first.
  std::uint32_t hash() const;

  friend constexpr auto operator<=>(const TunnelId&, const TunnelId&) = default;

 private:
  std::uint64_t value_ = 0;
};

/// The tunnel that an interface identifier stands for: a dynamic tunnel's own identifier, kind 9
/// with the port for a configured tunnel interface, none for any other interface.
TunnelId tunnelIdOfIntf(const Kesh::IntfId& intfId);

/// How a tunnel wraps its packets, in the top 4 bits of an encapsulation's identifier.
enum class EncapKind : std::uint8_t { gre = 0, ipsecVti = 1, ipsecGre = 2, mpls = 3 };

/// What a tunnel wraps its packets in: the kind in the top 4 bits, a number below.
class EncapId {
 public:
  constexpr EncapId() = default;
  constexpr explicit EncapId(std::uint32_t value) : value_(value) {}
  constexpr std::uint32_t value() const { return value_; }
  constexpr EncapKind kind() const { return static_cast<EncapKind>(value_ >> 28); }
  /// The kind in the words of displays, "IPsec GRE", or as a tunnel's mode is configured, "ipsec
  /// gre"; "encapsulation" for a number without a word.
  const char* typeCliStr(bool asConfigured) const;
  std::size_t hash() const { return Kesh::mixHash(value_); }
  friend constexpr auto operator<=>(const EncapId&, const EncapId&) = default;

 private:
  std::uint32_t value_ = 0;
};

} // namespace Tunnel::TunnelTable

/// Collections mix the bits directly: the identifier's own hash walks the bytes one by one.
template <>
struct Lumo::HashOf<Tunnel::TunnelTable::TunnelId> {
  std::size_t operator()(Tunnel::TunnelTable::TunnelId id) const {
    return Kesh::mixHash(id.value());
  }
};
