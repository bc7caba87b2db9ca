// Nexthop groups as they are configured.
#pragma once

#include "kesh/Address.h"
#include "kesh/IntfId.h"
#include "kesh/Mpls.h"
#include "lumo/Attribute.h"
#include "lumo/Ptr.h"
#include "lumo/String.h"
#include "state/NexthopGroupTypes.h"
#include "state/SparseArray.h"

#include <cstdint>

namespace Routing::NexthopGroup {

/// The most entries that a group has: their indexes have 16 bits.
inline constexpr std::uint32_t maxEntries = 0x10000;

/// One group. An index of its arrays is that of the group's entry.
class NexthopGroupConfigEntry : public Lumo::PtrInterface {
 public:
  explicit NexthopGroupConfigEntry(Lumo::Name groupName = {}) : name(std::move(groupName)) {}

  const Lumo::Name name;
  NexthopGroupType type = NexthopGroupType::invalid;
  std::uint32_t size = 0; ///< number of entries, at most `maxEntries`; 0: sized by the hardware
  std::uint32_t ttl = 0;
  Kesh::IntfId sourceIntf; ///< of the tunnels; may be null
  Kesh::IpGenAddr sourceIp;
  state::SparseArray<Kesh::IpGenAddr> destinationIp;
  Kesh::AddressFamily addressFamily = Kesh::AddressFamily::unset;
  /// The top label of each stack is the last one: a group's stacks are shown from their end.
  state::SparseArray<Kesh::MplsLabelOperation> mplsLabelStack;
  EntryCounterType entryCounterType = EntryCounterType::perTunnel;
  bool hierarchicalFecsEnabled = false; ///< uses a second level of FECs
  GreKeyType greKeyType = GreKeyType::none;

  LUMO_TYPE(NexthopGroupConfigEntry, "Routing::NexthopGroup::NexthopGroupConfigEntry")
  LUMO_PUBLIC_CONST(Lumo::Name, name)
  LUMO_PUBLIC(type)
  LUMO_PUBLIC(size)
  LUMO_PUBLIC(ttl)
  LUMO_PUBLIC(sourceIntf)
  LUMO_PUBLIC(sourceIp)
  LUMO_PUBLIC(entryCounterType)
  LUMO_PUBLIC(hierarchicalFecsEnabled)
  LUMO_PUBLIC(greKeyType)
  LUMO_END
};

/// The configured groups by name.
class Config : public Lumo::PtrInterface {
 public:
  /// The groups by name; no pointer is null.
  Lumo::HashMap2018<Lumo::Name, Lumo::Ptr<const NexthopGroupConfigEntry>> nexthopGroup;
};

} // namespace Routing::NexthopGroup
