// Identifiers of forwarding equivalence classes.
#pragma once

#include "kesh/IntfId.h"
#include "lumo/Assert.h"
#include "lumo/HashMap2018.h"

#include <cstdint>

namespace Vanta::Fib {

/// The kind of adjacency behind a FEC, in the top byte of its identifier.
enum class AdjType : std::uint8_t {
  fib = 0,
  fib6 = 1,     ///< the FEC lives in the IPv6 forwarding table
  attached = 4, ///< made up for a neighbour; in no table
  srTePolicy = 15,
  tunnelFib = 16, ///< a FEC of the IPv4 table as a tunnel names it
  tunnelFib6 = 17 ///< a FEC of the IPv6 table as a tunnel names it
};

/// Where the adjacency type begins, in bits; and how many types there are:
constexpr unsigned adjTypePos() { return 56; }
constexpr unsigned adjTypeMax() { return 20; }

/// A FEC: adjacency type in bits 63..56, number below. 0 is the null identifier: no FEC.
class FecId {
 public:
  constexpr FecId() = default;
  constexpr explicit FecId(std::uint64_t value) : value_(value) {}
  constexpr FecId(AdjType type, std::uint64_t number)
      : value_(std::uint64_t{static_cast<std::uint8_t>(type)} << adjTypePos() |
               (number & 0x00ffffffffffffffull)) {}

  constexpr std::uint64_t value() const { return value_; }
  /// Whether it stands for no FEC.
  constexpr bool isNull() const { return value_ == 0; }
  /// Stops the process for a type of 20 and above: the writer of the record is broken.
  AdjType adjType() const {
    LUMO_ASSERT((value_ >> adjTypePos()) < adjTypeMax(),
                "(value_ >> Fib::adjTypePos()) < Fib::adjTypeMax()");
    return static_cast<AdjType>(value_ >> adjTypePos());
  }
  /// The type's bits as they stand, without a check.
  constexpr unsigned rawAdjType() const { return static_cast<unsigned>(value_ >> adjTypePos()); }
  /// Jenkins one-at-a-time over the 8 bytes, lowest first.
  std::uint32_t hash() const;

  /// The form that a FEC has in the place of a via's interface, and the way back.
  static Kesh::IntfId fecIdToHierarchicalIntfId(FecId id) {
    return Kesh::FecIdIntfId::intfId(id.value());
  }
  /// The FEC that stands in an interface's place; null for any other interface.
  static FecId hierarchicalIntfIdToFecId(const Kesh::IntfId& id) {
    return FecId(Kesh::FecIdIntfId::fecId(id));
  }

  friend constexpr auto operator<=>(const FecId&, const FecId&) = default;

 private:
  std::uint64_t value_ = 0;
};

/// The identifier with another adjacency type, for instance to follow a tunnel's form of it.
constexpr FecId fecIdToNewAdjType(unsigned adjType, FecId id) {
  return {static_cast<AdjType>(adjType), id.value()};
}

/// The identifier as a tunnel names the FEC; null for one that no tunnel can lead to.
constexpr FecId convertFecIdForUseByTunnel(FecId id) {
  if (id.isNull() || id.rawAdjType() > static_cast<unsigned>(AdjType::fib6)) return {};
  const bool v6 = id.rawAdjType() == static_cast<unsigned>(AdjType::fib6);
  return {v6 ? AdjType::tunnelFib6 : AdjType::tunnelFib, id.value()};
}

/// Whether the FEC is looked up in the IPv6 forwarding table, whatever the family of its route.
inline bool isV6FecId(FecId id) { return id.adjType() == AdjType::fib6; }

} // namespace Vanta::Fib

/// Collections mix the bits directly: the interface's own hash walks the bytes one by one.
template <>
struct Lumo::HashOf<Vanta::Fib::FecId> {
  std::size_t operator()(Vanta::Fib::FecId id) const { return Kesh::mixHash(id.value()); }
};
