// The vias of a tunnel in the order in which displays list them.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// A tunnel via with the table that knows its encapsulation. Vias order by next hop, interface,
/// kind of encapsulation and then by what the encapsulation does: two identifiers of one label
/// stack are one encapsulation. A kind without a table stops the process where two vias must be
/// told apart by it.
class ROVA_EXPORT SortedTunVia : public Tunnel::TunnelTable::TunnelVia {
  LUMO_TYPE(SortedTunVia, "Rova::SortedTunVia")
  LUMO_BASE(Tunnel::TunnelTable::TunnelVia)
  LUMO_INHERITED(Kesh::IpGenAddr, nexthop)
  LUMO_INHERITED(Kesh::IntfId, intfId)
  LUMO_METHOD(hash)
  LUMO_INHERITED(Tunnel::TunnelTable::EncapId, encapId)
  LUMO_CTOR(Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>, tunnelFib, Lumo::orNull)
  LUMO_END
  LUMO_VALUE_COMPARED(SortedTunVia)

  SortedTunVia() = default;
  SortedTunVia(const Kesh::IpGenAddr& hop, const Kesh::IntfId& intf,
               Tunnel::TunnelTable::EncapId encap,
               Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib> tunnelFib)
      : TunnelVia{{hop, intf}, encap}, tunnelFib_(std::move(tunnelFib)) {}

  friend ROVA_EXPORT bool operator==(const SortedTunVia& a, const SortedTunVia& b);
  friend ROVA_EXPORT bool operator<(const SortedTunVia& a, const SortedTunVia& b);
};

/// The vias of one tunnel as the tunnel FIB has them when the set is made; its backup vias are left
/// out. Null identifier, null table: no vias.
class ROVA_EXPORT SortedTunViaSet {
  LUMO_TYPE(SortedTunViaSet, "Rova::SortedTunViaSet")
  LUMO_CTOR(Tunnel::TunnelTable::TunnelId, tunnelId)
  LUMO_CTOR(Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>, tunnelFib, Lumo::orNull)
  LUMO_ORDERED(SortedTunVia, bool, via, Via)
  LUMO_METHOD(handleInitialized)
  LUMO_END
  LUMO_VALUE(SortedTunViaSet)

  SortedTunViaSet() = default;
  SortedTunViaSet(Tunnel::TunnelTable::TunnelId tunnelId,
                  Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib> tunnelFib)
      : tunnelId_(tunnelId), tunnelFib_(std::move(tunnelFib)) {
    handleInitialized();
  }
  /// Copies the tunnel's vias in.
  void handleInitialized();
};

} // namespace Rova
