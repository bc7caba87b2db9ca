// Forwarding equivalence classes and their vias as the forwarding tables hold them.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Mpls.h"
#include "lumo/Ptr.h"
#include "state/FecId.h"
#include "state/TunnelId.h"
#include "vanta/VantaMap.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

namespace Vanta {

namespace Fib {

/// The place of a via in its FEC, 0 to 511.
class ViaIndex {
 public:
  /// The first index, and the last of a FEC with as many vias as it may have:
  static constexpr std::uint32_t min = 0;
  static constexpr std::uint32_t max = 511;

  constexpr ViaIndex() = default;
  constexpr explicit ViaIndex(std::uint32_t value) : value_(value) {
    if (value > max) {
      throw Lumo::RangeException("ViaIndex::value < ViaIndex::min or > ViaIndex::max not allowed");
    }
  }
  /// From a record's word, which may be anything; no check.
  static constexpr ViaIndex fromRecord(std::uint32_t word) {
    ViaIndex index;
    index.value_ = word;
    return index;
  }
  constexpr std::uint32_t value() const { return value_; }
  friend constexpr auto operator<=>(const ViaIndex&, const ViaIndex&) = default;

 private:
  std::uint32_t value_ = 0;
};

} // namespace Fib

/// One via: a next hop, an interface or what stands in its place, a label and a weight.
template <class Address>
struct BasicVia {
  Address hop;
  Kesh::IntfId intfId;
  Kesh::MplsLabelAndAction labelAndAction;
  std::uint32_t weight = 1;

  /// The tunnel that stands in the interface's place; null where an interface does.
  Tunnel::TunnelTable::TunnelId tunnelId() const {
    return Tunnel::TunnelTable::tunnelIdOfIntf(intfId);
  }
  /// Raises the label's range error for a value above it.
  Kesh::MplsLabel mplsLabel() const { return labelAndAction.label(); }
  /// The FEC that the via leads to; null for a via on an interface or tunnel.
  Fib::FecId fecId() const { return Fib::FecId::hierarchicalIntfIdToFecId(intfId); }
};

/// A FEC with room for 512 vias, primary ones first, then from `backupViaIndex` the backup ones.
/// Only the used vias are ever touched, copied or stored.
template <class Via>
class BasicFec {
 public:
  using ViaType = Via;
  /// The most vias of a FEC.
  static constexpr std::uint32_t maxVias = Fib::ViaIndex::max + 1;

  BasicFec() {} // leaves the unused vias as they are: clearing 10 KB would cost more than the rest
  explicit BasicFec(Fib::FecId id) : key(id) {}
  BasicFec(const BasicFec& other) { copyFrom(other); }
  BasicFec& operator=(const BasicFec& other) {
    if (this != &other) copyFrom(other);
    return *this;
  }

  Fib::FecId key;
  std::uint32_t reserved0 = 0;
  std::uint32_t reserved1 = 0xffffffff;
  std::uint32_t backupViaIndex = 0; ///< index of the first backup via; 0 means there are none
  std::uint32_t viaCount = 0;

  /// The via at an index below `viaCount`; and one more behind them:
  const Via& via(Fib::ViaIndex index) const { return vias_[index.value()]; }
  void viaAppend(const Via& via) {
    std::memcpy(static_cast<void*>(&vias_[Fib::ViaIndex(viaCount).value()]), &via, sizeof via);
    ++viaCount;
  }

  /// The record as bytes, of which those behind its last via are left out: how many, out and in:
  std::size_t serializeLen() const {
    return sizeof(BasicFec) - sizeof vias_ + usedVias() * sizeof(Via);
  }
  void serialize(void* out) const {
    std::memcpy(out, static_cast<const void*>(this), serializeLen());
  }
  void deserialize(const void* in) {
    std::memcpy(static_cast<void*>(this), in, sizeof(BasicFec) - sizeof vias_);
    std::memcpy(static_cast<void*>(vias_),
                static_cast<const char*>(in) + sizeof(BasicFec) - sizeof vias_,
                usedVias() * sizeof(Via));
  }

 private:
  static_assert(std::is_trivially_copyable_v<Via>);
  std::uint32_t usedVias() const { return viaCount < maxVias ? viaCount : maxVias; }
  void copyFrom(const BasicFec& other) { other.serialize(this); }

  union {
    Via vias_[maxVias];
  };
};

/// A table of FECs by identifier.
template <class Fec>
class BasicForwardingStatus : public Lumo::PtrInterface {
 public:
  using Table = VantaBase<Fib::FecId, Fec>;
  explicit BasicForwardingStatus(std::unique_ptr<Table> table) : fec(std::move(table), "fec") {}
  VantaMap<Fib::FecId, Fec> fec;
};

namespace Fib {
using Via = BasicVia<Kesh::IpAddr>;
using Fec = BasicFec<Via>;
using ForwardingStatus = BasicForwardingStatus<Fec>;
static_assert(sizeof(Fec) == 10264, "the slot size of the IPv4 forwarding table");
} // namespace Fib

namespace Fib6 {
using Via = BasicVia<Kesh::Ip6Addr>;
using Fec = BasicFec<Via>;
using ForwardingStatus = BasicForwardingStatus<Fec>;
static_assert(sizeof(Fec) == 16408, "the slot size of the IPv6 forwarding table");
} // namespace Fib6

} // namespace Vanta

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Vanta::Fib::FecId, Vanta::Fib::Fec>;
extern template class Vanta::VantaMap<Vanta::Fib::FecId, Vanta::Fib6::Fec>;
