#include "state/DeviceBuilder.h"

namespace state {

namespace {

/// A table in memory for a status entity to own; `writer` keeps the writer's side of it.
template <class Key, class Value>
std::unique_ptr<Vanta::MemoryTable<Key, Value>> makeTable(Vanta::MemoryTable<Key, Value>*& writer,
                                                          const char* name) {
  auto table = std::make_unique<Vanta::MemoryTable<Key, Value>>(name);
  writer = table.get();
  return table;
}

/// A status entity that owns the tables of those writers.
template <class Status, class... Tables>
Lumo::Ptr<Status> makeStatus(std::unique_ptr<Tables>... tables) {
  return Lumo::newEntity<Status>(std::move(tables)...);
}

} // namespace

DeviceBuilder::DeviceBuilder() {
  state.forwardingStatus = makeStatus<Vanta::Fib::ForwardingStatus>(makeTable(fecs, "fec"));
  state.forwarding6Status = makeStatus<Vanta::Fib6::ForwardingStatus>(makeTable(fecs6, "fec6"));
  state.policyForwardingStatus =
      makeStatus<Vanta::Fib::ForwardingStatus>(makeTable(policyFecs, "policyFec"));
  state.unprogrammedRouteStatus = makeStatus<Vanta::Fib::UnprogrammedRouteStatus>(
      makeTable(unprogrammed_.routes, "unprogrammedRoute"),
      makeTable(unprogrammed_.counts, "unprogrammedRouteCount"));
  state.unprogrammedRoute6Status = makeStatus<Vanta::Fib6::UnprogrammedRouteStatus>(
      makeTable(unprogrammed6_.routes, "unprogrammedRoute6"),
      makeTable(unprogrammed6_.counts, "unprogrammedRouteCount6"));
  state.vrfIdMap = makeStatus<Vrf::VrfIdMap::Status>(makeTable(vrfEntries_, "vrfEntry"));
  state.arpVanta =
      makeStatus<Arp::Table::Status>(makeTable(arp, "arp"), makeTable(neighbors, "neighbor"));
  state.nhEntryStatus =
      makeStatus<NexthopGroup::EntryStatus>(makeTable(nexthopGroups, "nexthopGroupEntry"));
  state.allIntfConfig = Lumo::newEntity<Interface::AllIntfConfigDir>();
  state.ipConfig = Lumo::newEntity<Ip::Config>();
  state.ip6Config = Lumo::newEntity<::Ip6::Config>();
  state.routeDistinguisherInputDir = Lumo::newEntity<Lumo::Dir>();
  state.nhgConfig = Lumo::newEntity<Routing::NexthopGroup::Config>();
  state.nhgHwStatus = Lumo::newEntity<Routing::Hardware::NexthopGroupStatus>();
  makeCounters();
  state.ipStatus = Lumo::newEntity<Ip::Status>();
  state.ip6Status = Lumo::newEntity<::Ip6::Status>();
  state.routingHardwareStatus = Lumo::newEntity<Routing::Hardware::Status>();
  state.routing6HardwareStatus = Lumo::newEntity<Routing6::Hardware::Status>();
  state.tunnelFib = Lumo::newEntity<Tunnel::TunnelFib::TunnelFib>();
  state.evpnVxlanTunnelTable = Lumo::newEntity<Tunnel::TunnelTable::EvpnVxlanTunnelTable>();
  state.tunnelTableDir = Lumo::newEntity<Lumo::Dir>();
  state.srTePolicyStatus = Lumo::newEntity<SrTePolicy::PolicyStatus>();
  vrf(L3::defaultVrfName, Vrf::VrfIdMap::VrfId(0));
}

void DeviceBuilder::makeCounters() {
  using Gaugex::CounterTable;
  using Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable;
  state.counterKeyTable =
      makeStatus<NexthopGroupEntryToCounterKeyTable>(makeTable(counterKeys, "counterKeyInfo"));
  state.counterTable = makeStatus<CounterTable>(makeTable(counters, "counter"));
  state.snapshotTable = makeStatus<CounterTable>(makeTable(counterSnapshots, "snapshotCounter"));
  state.entityManager = Lumo::newEntity<Merrow::EntityManager>();
  state.entityManager->entityIs(NexthopGroupEntryToCounterKeyTable::path, state.counterKeyTable);
  state.entityManager->entityIs(CounterTable::path, state.counterTable);
  state.entityManager->entityIs(CounterTable::snapshotPath, state.snapshotTable);
}

std::size_t DeviceBuilder::vrfPlace(const L3::VrfName& name, Vrf::VrfIdMap::VrfId id) {
  if (const auto* const place = state.vrfPlaces.find(name)) return *place;
  makeVrf(name, id);
  return state.vrfPlaces.insertOrAssign(name, state.vrfs.size() - 1);
}

void DeviceBuilder::makeVrf(const L3::VrfName& name, Vrf::VrfIdMap::VrfId id) {
  VrfTables& tables = vrfTables_.emplace_back();
  VrfState vrf{name, id, {}, {}, {}, {}, {}, {}, {}};
  vrf.routingConfig = Lumo::newEntity<Routing::ConfigGen>();
  vrf.routing6Config = Lumo::newEntity<Routing::ConfigGen>();
  vrf.routingStatus = makeStatus<Vanta::Fib::RouteStatus>(makeTable(tables.routes, "route"));
  vrf.routing6Status = makeStatus<Vanta::Fib6::RouteStatus>(makeTable(tables.routes6, "route6"));
  vrf.kernelUnprogrammedRoute = makeStatus<Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>(
      makeTable(tables.kernelErrors, "kernelError"),
      makeTable(tables.kernelErrors6, "kernelError6"));
  state.vrfs.push_back(std::move(vrf));
  vrfEntries_->insert({id, name.stringValue()});
}

template <class PrefixType>
void DeviceBuilder::Unprogrammed<PrefixType>::add(const PrefixType& prefix,
                                                  Vrf::VrfIdMap::VrfId vrf) {
  routes->insert({{prefix, vrf}});
  auto* count = counted.find(vrf);
  if (!count) count = &counted.insertOrAssign(vrf, 0);
  counts->insert({vrf, ++*count}); // without a read, which would put the table in order each time
}

void DeviceBuilder::hardwareUnprogrammed(const Kesh::Prefix& prefix, Vrf::VrfIdMap::VrfId vrf) {
  unprogrammed_.add(prefix, vrf);
}

void DeviceBuilder::hardwareUnprogrammed(const Kesh::Ip6Prefix& prefix, Vrf::VrfIdMap::VrfId vrf) {
  unprogrammed6_.add(prefix, vrf);
}

} // namespace state
