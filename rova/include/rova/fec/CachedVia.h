// One via of a cached FEC.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// A via as the displays need it. Vias order primary before backup, then by interface, next hop,
/// label, weight text ("10" before "9") and index: the interface outranks the address.
class ROVA_EXPORT CachedVia {
  LUMO_TYPE(CachedVia, "Rova::CachedVia")
  LUMO_ATTR(Kesh::IpGenAddr, hop)
  LUMO_ATTR(Kesh::IntfId, intfId) // an interface, or a tunnel, nexthop group or FEC in its dress
  LUMO_ATTR(bool, isBackup)
  LUMO_ATTR(Kesh::MplsLabel, viaLabel)
  LUMO_ATTR(Lumo::String, viaWeight) // empty where all vias of the FEC weigh the same
  LUMO_ATTR(std::uint16_t, viaIndex) // of a via on an SR-TE policy: its place in the record
  LUMO_COMPUTED(Tunnel::TunnelTable::TunnelId, tunnelId)
  LUMO_COMPUTED(Vanta::Fib::FecId, fecId)
  LUMO_END
  LUMO_VALUE(CachedVia)

  CachedVia() = default;
  /// The tunnel that the interface stands for; a static tunnel interface gives kind 9 with its
  /// port.
  Tunnel::TunnelTable::TunnelId tunnelId() const;
  /// Puts a tunnel in the interface's place. A static interface tunnel keeps its own interface.
  void tunnelIdIs(Tunnel::TunnelTable::TunnelId id);
  /// The FEC that the interface stands for, null for any other interface.
  Vanta::Fib::FecId fecId() const { return Vanta::Fib::FecId::hierarchicalIntfIdToFecId(intfId_); }
  /// Puts a FEC in the interface's place, if it has a form as an interface.
  void fecIdIs(Vanta::Fib::FecId id);

  friend ROVA_EXPORT bool operator<(const CachedVia& a, const CachedVia& b);
};

/// A nexthop group that a via stands for.
class ROVA_EXPORT CachedNhgVia {
  LUMO_TYPE(CachedNhgVia, "Rova::CachedNhgVia")
  LUMO_ATTR(Routing::NexthopGroup::NexthopGroupId, nhgId)
  LUMO_ATTR(Lumo::String, nhgName)
  LUMO_END
  LUMO_VALUE(CachedNhgVia)

  CachedNhgVia() = default;
};

} // namespace Rova
