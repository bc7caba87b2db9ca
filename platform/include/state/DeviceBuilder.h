// Builds a device's state out of tables in memory: what sources fill, and tests.
#pragma once

#include "state/Families.h"
#include "vanta/MemoryTable.h"

#include <deque>

namespace state {

/// The writer's side of one VRF's tables.
struct VrfTables {
  Vanta::MemoryTable<Kesh::Prefix, Vanta::Fib::Route>* routes;
  Vanta::MemoryTable<Kesh::Ip6Prefix, Vanta::Fib6::Route>* routes6;
  Vanta::MemoryTable<Kesh::Prefix, Vanta::KernelUnprogrammedRoute::Error>* kernelErrors;
  Vanta::MemoryTable<Kesh::Ip6Prefix, Vanta::KernelUnprogrammedRoute::Error6>* kernelErrors6;
};

/// A device whose tables stand in this process. The pointers are the writer's sides of the tables
/// that `state` owns; they live as long as it.
class DeviceBuilder {
 public:
  /// A device with every handle set, every table empty, and the default VRF with number 0.
  DeviceBuilder();

  DeviceState state;

  Vanta::MemoryTable<Vanta::Fib::FecId, Vanta::Fib::Fec>* fecs;
  Vanta::MemoryTable<Vanta::Fib::FecId, Vanta::Fib6::Fec>* fecs6;
  Vanta::MemoryTable<Vanta::Fib::FecId, Vanta::Fib::Fec>* policyFecs;
  Vanta::MemoryTable<Arp::Table::ArpKey, Arp::Table::ArpEntry>* arp;
  Vanta::MemoryTable<Arp::Table::ArpKey, Arp::Table::ArpEntry>* neighbors;
  Vanta::MemoryTable<NexthopGroup::NexthopGroupEntryKey, NexthopGroup::NexthopGroupEntry>*
      nexthopGroups;
  Vanta::MemoryTable<Routing::NexthopGroup::NexthopGroupEntryCounterKey,
                     Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo>* counterKeys;
  Vanta::MemoryTable<Gaugex::CounterIndex, Gaugex::VantaGaugexCounter>* counters;
  Vanta::MemoryTable<Gaugex::CounterIndex, Gaugex::VantaGaugexCounter>* counterSnapshots;

  /// Adds a VRF, or gives the one that has the name. Tables stay where they are when more VRFs
  /// come.
  VrfTables& vrf(const L3::VrfName& name, Vrf::VrfIdMap::VrfId id) {
    return vrfTables_[vrfPlace(name, id)];
  }
  /// The same VRF's place in `state.vrfs`, where its other state stands.
  std::size_t vrfPlace(const L3::VrfName& name, Vrf::VrfIdMap::VrfId id);
  /// The VRF that every device has.
  VrfTables& defaultVrf() { return vrfTables_.front(); }

  /// Marks a route as missing from the hardware and counts it for its VRF; once a route.
  void hardwareUnprogrammed(const Kesh::Prefix& prefix, Vrf::VrfIdMap::VrfId vrf);
  void hardwareUnprogrammed(const Kesh::Ip6Prefix& prefix, Vrf::VrfIdMap::VrfId vrf);

 private:
  void makeCounters();
  void makeVrf(const L3::VrfName& name, Vrf::VrfIdMap::VrfId id);

  template <class PrefixType>
  struct Unprogrammed {
    Vanta::MemoryTable<Vanta::BasicUnprogrammedRouteKey<PrefixType>,
                       Vanta::BasicUnprogrammedRoute<PrefixType>>* routes;
    Vanta::MemoryTable<Vrf::VrfIdMap::VrfId, Vanta::UnprogrammedRouteCount>* counts;
    Lumo::HashMap2018<Vrf::VrfIdMap::VrfId, std::uint32_t> counted; ///< as `counts` has them
    void add(const PrefixType& prefix, Vrf::VrfIdMap::VrfId vrf);
  };

  Vanta::MemoryTable<Vrf::VrfIdMap::VrfId, Vrf::VrfIdMap::VrfEntry>* vrfEntries_;
  Unprogrammed<Kesh::Prefix> unprogrammed_;
  Unprogrammed<Kesh::Ip6Prefix> unprogrammed6_;
  std::deque<VrfTables> vrfTables_;
};

/// The families with the places of the writer's sides of their tables.
struct Ip4Tables : Ip4 {
  /// The writer's sides of the family's tables:
  static constexpr auto routes = &VrfTables::routes;
  static constexpr auto kernelErrorTable = &VrfTables::kernelErrors;
  static constexpr auto fecs = &DeviceBuilder::fecs;
};

/// The same of IPv6.
struct Ip6Tables : Ip6 {
  static constexpr auto routes = &VrfTables::routes6;
  static constexpr auto kernelErrorTable = &VrfTables::kernelErrors6;
  static constexpr auto fecs = &DeviceBuilder::fecs6;
};

} // namespace state
