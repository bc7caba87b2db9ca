// The display's own copy of a FEC.
#pragma once

#include "rova/fec/CachedVia.h"

#include <string>

namespace Rova {

/// The texts that a via shows. The two that every line has stand inside, so that a line printed
/// straight from a FEC reads one place in memory; a standard string holds an IPv4 address without
/// an allocation.
struct DirectViaText {
  std::string nexthopAddr;
  std::string interface;
  Kesh::MplsLabel label;
  Lumo::String interfaceDescription;
  Tunnel::TunnelTable::EvpnVxlanTunnelEntry evpnEntry;
  Tunnel::CliSupport::CachedStaticIntfTunnelInfo staticIntfTunInfo;
};

/// A FEC as captured, and the rows that its vias print as. One entity serves all routes on the FEC:
/// it is captured once and its rows are built at the first print. A row exists where
/// `viaTypeString` has an entry; the other row tables are sparse.
class ROVA_EXPORT CachedFec : public Lumo::PtrInterface {
  LUMO_TYPE(CachedFec, "Rova::CachedFec")
  LUMO_CTOR(Vanta::Fib::FecId, fecId)
  LUMO_ATTR(bool, connected)
  LUMO_ATTR(Vanta::Fib::ViaIndex, backupViaIndex)
  LUMO_ATTR(int, numEntries) // number of rows; 0 means that they are not built yet
  LUMO_ATTR(bool, hasBackup)
  LUMO_ATTR(std::uint32_t, weight) // sum of the vias' weights; 0 with backup vias
  LUMO_ATTR(bool, hierarchicalVia)
  LUMO_ORDERED(CachedVia, bool, via, Via)
  LUMO_HASHED(std::uint16_t, Lumo::String, viaTypeString, ViaTypeString)
  LUMO_HASHED(std::uint16_t, Lumo::String, nexthopAddr, NexthopAddr)
  LUMO_HASHED(std::uint16_t, Lumo::String, interface, Interface)
  LUMO_HASHED(std::uint16_t, Lumo::String, interfaceDescription, InterfaceDescription)
  LUMO_HASHED(std::uint16_t, Kesh::MplsLabel, label, Label)
  LUMO_HASHED(std::uint32_t, Lumo::String, viaWeight, ViaWeight)
  LUMO_HASHED(std::uint16_t, Tunnel::TunnelTable::EvpnVxlanTunnelEntry, viaEvpnEntry, ViaEvpnEntry)
  LUMO_HASHED(std::uint16_t, Kesh::MplsLabelOperation, viaLabelStack, ViaLabelStack)
  LUMO_HASHED(std::uint16_t, bool, hostToCpu, HostToCpu)
  LUMO_HASHED(std::uint16_t, Tunnel::CliSupport::CachedTunVia, tunVia, TunVia)
  LUMO_HASHED(std::uint16_t, Tunnel::CliSupport::CachedStaticIntfTunnelInfo, staticIntfTunInfo,
              StaticIntfTunInfo)
  LUMO_HASHED(std::uint16_t, CachedNhgVia, nhgVia, NhgVia)
  LUMO_END

  explicit CachedFec(Vanta::Fib::FecId fecId) : fecId_(fecId) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }

  /// The one test for unequal-cost forwarding: weights are kept and shown only when it holds.
  bool isUnequalCost() const { return vias() < weight_; }
  /// Whether the first via in order stands for a nexthop group.
  bool isNexthopGroup() const;
  /// Whether the FEC, or a via of it, leads to an SR-TE policy.
  bool isSrTePolicy() const;
  /// Whether some via has an interface, or the FEC has no via at all.
  bool forwards() const;
};

/// A FEC with that identifier and everything else at its default.
ROVA_EXPORT Lumo::Ptr<CachedFec> cachedFecFactory(Vanta::Fib::FecId fecId);

/// Whether a FEC stands for a nexthop group, and whether for an SR-TE policy:
ROVA_EXPORT bool isNexthopGroupFec(const Lumo::Ptr<const CachedFec>& fec);
ROVA_EXPORT bool isSrTePolicyFec(const Lumo::Ptr<const CachedFec>& fec);
/// Whether the via leads into a tunnel other than EVPN VXLAN and static interface tunnels.
ROVA_EXPORT bool isValidDynamicTunnel(CachedVia via);
/// 0 for an interface that is no nexthop group.
ROVA_EXPORT Routing::NexthopGroup::NexthopGroupId
nexthopGroupIdFromIntfId(const Kesh::IntfId& intfId);

} // namespace Rova
