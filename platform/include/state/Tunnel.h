// Tunnels: what each table knows of them.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Mpls.h"
#include "kesh/Prefix.h"
#include "lumo/Attribute.h"
#include "lumo/Ptr.h"
#include "state/TunnelId.h"

#include <compare>
#include <cstdint>
#include <vector>

namespace Tunnel {

/// The two ends of a tunnel and what goes into its outer header.
struct L3TunnelInfo {
  Kesh::IpGenAddr source;
  Kesh::IpGenAddr destination;
  std::uint8_t ttl = 0;
  std::uint8_t tos = 0;
  std::uint8_t pathMtuDiscovery = 0;
  friend auto operator<=>(const L3TunnelInfo&, const L3TunnelInfo&) = default;
};

/// A GRE tunnel; a key of 0 is none.
struct GreTunnelInfo : L3TunnelInfo {
  std::uint32_t greKey = 0;
  friend auto operator<=>(const GreTunnelInfo&, const GreTunnelInfo&) = default;
};

/// An IPsec tunnel without GRE.
struct IpsecVtiTunnelInfo : L3TunnelInfo {
  std::uint32_t profile = 0;
  friend bool operator==(const IpsecVtiTunnelInfo&, const IpsecVtiTunnelInfo&) = default;
};

/// A GRE tunnel inside of IPsec.
struct IpsecGreTunnelInfo : GreTunnelInfo {
  std::uint32_t profile = 0;
  friend bool operator==(const IpsecGreTunnelInfo&, const IpsecGreTunnelInfo&) = default;
};

/// The value under the key; for a missing one the type's default, which outlives the table.
template <class Key, class Value>
const Value& readOrDefault(const Lumo::HashMap2018<Key, Value>& table, const Key& key) {
  static const Value absent{};
  const Value* const found = table.find(key);
  return found ? *found : absent;
}

namespace TunnelTable {

/// A next hop and the interface to it.
struct Via {
  Kesh::IpGenAddr nexthop;
  Kesh::IntfId intfId;

  LUMO_TYPE(Via, "Tunnel::TunnelTable::Via")
  LUMO_PUBLIC(nexthop)
  LUMO_PUBLIC(intfId)
  LUMO_METHOD(hash)
  LUMO_END

  std::uint32_t hash() const {
    return static_cast<std::uint32_t>(nexthop.hash() ^ Kesh::mixHash(intfId.value()));
  }
  friend bool operator==(const Via&, const Via&) = default;
};

/// A via with what a tunnel wraps its packets in.
struct TunnelVia : Via {
  EncapId encapId;

  LUMO_TYPE(TunnelVia, "Tunnel::TunnelTable::TunnelVia")
  LUMO_BASE(Via)
  LUMO_PUBLIC(nexthop)
  LUMO_PUBLIC(intfId)
  LUMO_METHOD(hash)
  LUMO_PUBLIC(encapId)
  LUMO_END

  friend bool operator==(const TunnelVia&, const TunnelVia&) = default;
};

/// A tunnel of one of the protocol tables, with the prefix that it leads to.
struct EndpointEntry {
  TunnelId key;
  Kesh::IpGenPrefix endpoint;
  friend bool operator==(const EndpointEntry&, const EndpointEntry&) = default;
  bool operator!() const { return *this == EndpointEntry(); }
};

/// A table of tunnels by identifier. Each protocol's is a type of its own, so that a directory's
/// entry can be told for what it is.
class EndpointTable : public Lumo::PtrInterface {
 public:
  /// A default entry when there is none.
  const EndpointEntry& entry(TunnelId id) const { return readOrDefault(entries, id); }
  Lumo::HashMap2018<TunnelId, EndpointEntry> entries;
};
/// The tunnels of segment routing, configuration, LDP and BGP labeled unicast:
class SrTunnelTable : public EndpointTable {};
class StaticTunnelTable : public EndpointTable {};
class LdpTunnelTable : public EndpointTable {};
class BgpLuTunnelTable : public EndpointTable {};

/// A VXLAN tunnel learned from EVPN: the remote endpoint, the network and the router behind it.
struct EvpnVxlanTunnelEntry {
  TunnelId key;
  Kesh::IpGenAddr vtepAddr;
  std::uint32_t vni = 0;
  Kesh::EthAddr routerMac;
  /// Whether a table gave the entry, whatever it says: one made for an identifier alone is not set.
  bool fromTable = false;

  LUMO_TYPE(EvpnVxlanTunnelEntry, "Tunnel::TunnelTable::EvpnVxlanTunnelEntry")
  LUMO_PUBLIC(key)
  LUMO_PUBLIC(vtepAddr)
  LUMO_PUBLIC(vni)
  LUMO_PUBLIC(routerMac)
  LUMO_END

  EvpnVxlanTunnelEntry() = default;
  explicit EvpnVxlanTunnelEntry(TunnelId id) : key(id) {}
  friend bool operator==(const EvpnVxlanTunnelEntry&, const EvpnVxlanTunnelEntry&) = default;
  /// Whether a table gave the entry.
  bool isSet() const { return fromTable; }
};

/// The VXLAN tunnels that EVPN knows.
class EvpnVxlanTunnelTable : public Lumo::PtrInterface {
 public:
  /// Whether an interface identifier stands for such a tunnel, be it in the table or not.
  static bool isValidEvpnIntf(const Kesh::IntfId& intfId) {
    return Kesh::DynamicTunnelIntfId::isDynamicTunnelIntfId(intfId) &&
           tunnelIdOfIntf(intfId).kind() == TunnelKind::evpnVxlan;
  }
  /// An entry that is not set when there is none.
  EvpnVxlanTunnelEntry entry(TunnelId id) const {
    const auto* const found = entries.find(id);
    EvpnVxlanTunnelEntry copy = found ? *found : EvpnVxlanTunnelEntry(id);
    copy.fromTable = found != nullptr;
    return copy;
  }
  Lumo::HashMap2018<TunnelId, EvpnVxlanTunnelEntry> entries;
};

} // namespace TunnelTable

namespace TunnelFib {

/// What the device forwards into a tunnel: its vias, and those that stand in when they fail.
struct TunnelFibEntry {
  TunnelTable::TunnelId key;
  std::vector<TunnelTable::TunnelVia> tunnelVia;
  std::vector<TunnelTable::TunnelVia> backupTunnelVia;
  std::uint8_t flags = 1;
  friend bool operator==(const TunnelFibEntry&, const TunnelFibEntry&) = default;
  bool operator!() const { return *this == TunnelFibEntry(); }
};

/// The tunnel forwarding table with the encapsulations that its vias name.
class TunnelFib : public Lumo::PtrInterface {
 public:
  // Each a default value when there is none; valid until the table changes:
  const TunnelFibEntry& entry(TunnelTable::TunnelId id) const { return readOrDefault(entries, id); }
  const GreTunnelInfo& greEncap(TunnelTable::EncapId id) const {
    return readOrDefault(greEncaps, id);
  }
  const IpsecVtiTunnelInfo& ipsecVtiEncap(TunnelTable::EncapId id) const {
    return readOrDefault(ipsecVtiEncaps, id);
  }
  const IpsecGreTunnelInfo& ipsecGreEncap(TunnelTable::EncapId id) const {
    return readOrDefault(ipsecGreEncaps, id);
  }
  const Kesh::MplsLabelOperation& labelStack(TunnelTable::EncapId id) const {
    return readOrDefault(labelStacks, id);
  }

  Lumo::HashMap2018<TunnelTable::TunnelId, TunnelFibEntry> entries;
  Lumo::HashMap2018<TunnelTable::EncapId, GreTunnelInfo> greEncaps;
  Lumo::HashMap2018<TunnelTable::EncapId, IpsecVtiTunnelInfo> ipsecVtiEncaps;
  Lumo::HashMap2018<TunnelTable::EncapId, IpsecGreTunnelInfo> ipsecGreEncaps;
  Lumo::HashMap2018<TunnelTable::EncapId, Kesh::MplsLabelOperation> labelStacks;
};

} // namespace TunnelFib

} // namespace Tunnel
