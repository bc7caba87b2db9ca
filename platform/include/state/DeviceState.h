// The bundle of all handles to one device's state: what every source fills and every command reads.
#pragma once

#include "lumo/Dir.h"
#include "state/Counters.h"
#include "state/EntityManager.h"
#include "state/Fec.h"
#include "state/Hardware.h"
#include "state/Interface.h"
#include "state/IpConfig.h"
#include "state/NexthopGroup.h"
#include "state/NexthopGroupConfig.h"
#include "state/NexthopGroupHardware.h"
#include "state/Programming.h"
#include "state/Route.h"
#include "state/RouteDistinguisherInput.h"
#include "state/RoutingConfig.h"
#include "state/SrTePolicy.h"
#include "state/Tunnel.h"
#include "state/Vrf.h"

#include <string_view>
#include <vector>

namespace state {

/// The routes that agents hand to routing, by the agent's name; no pointer is null.
using RouteInputs = Lumo::HashMap2018<Lumo::String, Lumo::Ptr<Routing::RouteInput>>;

/// The state that each VRF has for itself.
struct VrfState {
  L3::VrfName name;
  Vrf::VrfIdMap::VrfId id;
  Lumo::Ptr<Routing::ConfigGen> routingConfig;  ///< IPv4; null when the source cannot tell
  Lumo::Ptr<Routing::ConfigGen> routing6Config; ///< IPv6
  Lumo::Ptr<const Vanta::Fib::RouteStatus> routingStatus;
  Lumo::Ptr<const Vanta::Fib6::RouteStatus> routing6Status;
  Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute> kernelUnprogrammedRoute;
  RouteInputs routeInput;  ///< IPv4
  RouteInputs route6Input; ///< IPv6
};

/// A device. Every handle is set, unless its comment says that it may be null.
struct DeviceState {
  std::vector<VrfState> vrfs; ///< the default VRF first, the others as they were entered
  Lumo::HashMap2018<L3::VrfName, std::size_t> vrfPlaces; ///< in `vrfs`, by name

  Lumo::Ptr<const Vanta::Fib::ForwardingStatus> forwardingStatus;
  Lumo::Ptr<const Vanta::Fib6::ForwardingStatus> forwarding6Status;
  Lumo::Ptr<const Vanta::Fib::UnprogrammedRouteStatus> unprogrammedRouteStatus;
  Lumo::Ptr<const Vanta::Fib6::UnprogrammedRouteStatus> unprogrammedRoute6Status;
  Lumo::Ptr<const Vrf::VrfIdMap::Status> vrfIdMap;

  Lumo::Ptr<Interface::AllIntfConfigDir> allIntfConfig;
  Lumo::Ptr<Ip::Config> ipConfig;
  Lumo::Ptr<Ip6::Config> ip6Config;
  Lumo::Ptr<Ip::Status> ipStatus;
  Lumo::Ptr<Ip6::Status> ip6Status;
  Lumo::Ptr<const Arp::Table::Status> arpVanta;

  Lumo::Ptr<Lumo::Dir> routeDistinguisherInputDir; ///< `Ip::RouteDistinguisherInput` by agent

  Lumo::Ptr<Routing::NexthopGroup::Config> nhgConfig;
  Lumo::Ptr<const NexthopGroup::EntryStatus> nhEntryStatus;
  Lumo::Ptr<Routing::Hardware::NexthopGroupStatus> nhgHwStatus;
  Lumo::Ptr<Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable> counterKeyTable;
  Lumo::Ptr<Gaugex::CounterTable> counterTable;   ///< the counts by now
  Lumo::Ptr<Gaugex::CounterTable> snapshotTable;  ///< the counts to subtract from them
  Lumo::Ptr<Merrow::EntityManager> entityManager; ///< the three counter tables by their paths
  Lumo::Ptr<Routing::Hardware::Status> routingHardwareStatus;
  Lumo::Ptr<Routing6::Hardware::Status> routing6HardwareStatus;

  Lumo::Ptr<Tunnel::TunnelFib::TunnelFib> tunnelFib;
  Lumo::Ptr<Tunnel::TunnelTable::EvpnVxlanTunnelTable> evpnVxlanTunnelTable;
  Lumo::Ptr<Lumo::Dir> tunnelTableDir; ///< entries "sr", "static", "ldp", "bgpLu"
  Lumo::Ptr<SrTePolicy::PolicyStatus> srTePolicyStatus;
  Lumo::Ptr<const Vanta::Fib::ForwardingStatus> policyForwardingStatus;

  /// The VRF of that name, or null.
  const VrfState* vrf(std::string_view name) const {
    if (name.size() > L3::VrfName::maxLength) return nullptr;
    const std::size_t* const place = vrfPlaces.find(Lumo::String(name));
    return place ? &vrfs[*place] : nullptr;
  }
};

} // namespace state
