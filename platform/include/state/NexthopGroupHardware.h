// Nexthop groups as the hardware has them: what each entry resolved to.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "lumo/RbTreeMap.h"
#include "state/FecId.h"
#include "state/NexthopGroup.h"
#include "state/Vrf.h"

#include <cstdint>

namespace Routing::Hardware {

/// The resolution of one entry. The default via stands for an entry that is not programmed.
struct NexthopGroupVia {
  Kesh::IpGenPrefix route; ///< the route that leads to the destination
  Kesh::IpGenAddr hop;
  Kesh::IntfId l3Intf;
  std::uint32_t vlanId = 0;
  Kesh::IntfId l2Intf;
  Kesh::EthAddr macAddr;
  std::uint64_t tunnelId = 0; ///< entries with the same one share a tunnel; 0 for none
  Vanta::Fib::FecId fecId;    ///< of the second level

  friend bool operator==(const NexthopGroupVia&, const NexthopGroupVia&) = default;
  bool operator!() const { return *this == NexthopGroupVia(); }
};

/// One programmed group.
struct NexthopGroupAdj {
  using EntryIndex = std::uint16_t;
  /// An index without an element counts as a default via.
  Lumo::RbTreeMap<EntryIndex, NexthopGroupVia> via;
  std::uint32_t numProgrammedTunnels = 0; ///< the size that the hardware has for the group
  Kesh::IpGenAddr sourceIp;               ///< as the hardware's agent chose it
};

/// The programmed groups of one VRF.
struct NexthopGroupVrfStatus {
  Lumo::HashMap2018<NexthopGroup::NexthopGroupId, NexthopGroupAdj> nexthopGroupAdj;
};

/// What the hardware made of the groups, by VRF and identifier.
class NexthopGroupStatus : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<L3::VrfName, NexthopGroupVrfStatus> vrfStatus;
};

} // namespace Routing::Hardware
