// Interfaces: their configuration, their addresses, their neighbours.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "state/Vrf.h"
#include "vanta/VantaMap.h"

#include <memory>
#include <optional>
#include <vector>

namespace Interface {

/// What is configured of an interface beside its addresses.
class IntfConfig : public Lumo::PtrInterface {
 public:
  IntfConfig(const Kesh::IntfId& id, Lumo::String text)
      : intfId(id), description(std::move(text)) {}
  Kesh::IntfId intfId;
  Lumo::String description;
};

/// The configuration of all interfaces.
class AllIntfConfigDir : public Lumo::PtrInterface {
 public:
  /// Null for an interface without configuration.
  Lumo::Ptr<const IntfConfig> intfConfig(const Kesh::IntfId& intfId) const {
    const auto* const found = configs.find(intfId);
    return found ? *found : Lumo::Ptr<const IntfConfig>();
  }
  Lumo::HashMap2018<Kesh::IntfId, Lumo::Ptr<const IntfConfig>> configs;
};

/// One interface, as a query names it.
class IntfStatus : public Lumo::PtrInterface {
 public:
  explicit IntfStatus(const Kesh::IntfId& id) : intfId(id) {}
  Kesh::IntfId intfId;
};

} // namespace Interface

namespace Ip {

/// The IPv4 side of an interface.
struct IpIntfStatus {
  /// The VRF of the interface's configuration; nothing when it has no configuration record.
  std::optional<L3::VrfName> vrf;
  std::optional<Kesh::IpAddrWithMask> primary;
  std::vector<Kesh::IpAddrWithMask> activeSecondary;
};

class Status : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Kesh::IntfId, IpIntfStatus> ipIntfStatus;
};

} // namespace Ip

namespace Ip6 {

/// The IPv6 side of an interface.
struct Ip6IntfStatus {
  std::optional<L3::VrfName> vrf;
  std::vector<Kesh::Ip6AddrWithMask> addr;
};

class Status : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Kesh::IntfId, Ip6IntfStatus> ip6IntfStatus;
};

} // namespace Ip6

namespace Arp::Table {

/// Where a neighbour stands: its VRF, its interface, its address.
struct ArpKey {
  Vrf::VrfIdMap::VrfId vrfId;
  Kesh::IntfId intfId;
  Kesh::IpGenAddr address;
  friend bool operator==(const ArpKey&, const ArpKey&) = default;
  friend bool operator<(const ArpKey& a, const ArpKey& b) {
    if (a.vrfId != b.vrfId) return a.vrfId < b.vrfId;
    if (!(a.intfId == b.intfId)) return a.intfId < b.intfId;
    return a.address < b.address;
  }
};

/// A neighbour with its Ethernet address.
struct ArpEntry {
  ArpKey key;
  Kesh::EthAddr ethAddr;
};

/// The neighbours of both families.
class Status : public Lumo::PtrInterface {
 public:
  using Table = Vanta::VantaBase<ArpKey, ArpEntry>;
  Status(std::unique_ptr<Table> arp, std::unique_ptr<Table> neighbor)
      : arpEntry(std::move(arp), "arpEntry"), neighborEntry(std::move(neighbor), "neighborEntry") {}
  Vanta::VantaMap<ArpKey, ArpEntry> arpEntry;      ///< IPv4
  Vanta::VantaMap<ArpKey, ArpEntry> neighborEntry; ///< IPv6
};

} // namespace Arp::Table

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Arp::Table::ArpKey, Arp::Table::ArpEntry>;
