// A device in a few sentences, and sorters over it:
//
//   Device device;
//   device.interface("Ethernet1", "10.0.0.2/24");
//   device.route("10.1.0.0/16", Type::staticRoute, device.fec({via("10.0.0.1", "Ethernet1")}),
//                20);
//   const auto sorter = openSorter<Rova::Ip4Family>(device, {.prefix = "10.1.1.1/32"});
//   EXPECT_EQ(textOf(sorter), "...");
//
// A route's family is that of its type; a FEC's table follows from the family of its hops.
#pragma once

#include "lumo/ActivityLock.h"
#include "scrivo/Capture.h"
#include "state/DeviceBuilder.h"
#include "support/Families.h"

#include <string>
#include <type_traits>
#include <vector>

namespace support {

using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

/// One via of a FEC; the hop's family decides for the FEC's table.
struct Via {
  Kesh::IpGenAddr hop;
  Kesh::IntfId intfId;
  std::uint32_t weight = 1;
  std::uint32_t labelWord = Kesh::MplsLabel::null;
};

struct ViaOptions {
  std::uint32_t weight = 1;
  std::uint32_t labelWord = Kesh::MplsLabel::null; ///< as the record holds it, unchecked
};

inline Via via(const std::string& hop, const Kesh::IntfId& intfId, const ViaOptions& options = {}) {
  return {addr(hop), intfId, options.weight, options.labelWord};
}
/// `interface` is a name; the empty one makes a via that leads nowhere.
inline Via via(const std::string& hop, const char* interface, const ViaOptions& options = {}) {
  return via(hop, Kesh::IntfId(Lumo::String(interface)), options);
}

template <class Family>
using TablesOf =
    std::conditional_t<std::is_same_v<Family, Rova::Ip4Family>, state::Ip4Tables, state::Ip6Tables>;

template <class RouteType>
using FamilyOf = std::conditional_t<std::is_same_v<RouteType, Routing::Fib::RouteType>,
                                    Rova::Ip4Family, Rova::Ip6Family>;

template <class Fec>
Fec fecRecord(FecId id, const std::vector<Via>& vias, std::uint32_t backupViaIndex) {
  Fec record(id);
  record.backupViaIndex = backupViaIndex;
  for (const Via& from : vias) {
    typename Fec::ViaType to;
    if constexpr (std::is_same_v<Fec, Vanta::Fib6::Fec>) {
      to.hop = from.hop.v6Addr();
    } else {
      to.hop = from.hop.v4Addr();
    }
    to.intfId = from.intfId;
    to.weight = from.weight;
    to.labelAndAction = Kesh::MplsLabelAndAction(from.labelWord);
    record.viaAppend(to);
  }
  return record;
}

/// The device. It holds the activity lock as a command does, so a test has one at a time.
class Device {
 public:
  state::DeviceBuilder tables;
  state::DeviceState& state = tables.state;

  /// A further VRF with its tables; its place is the number of VRFs before it.
  void vrf(const char* name, std::uint32_t id) { tables.vrf(name, Vrf::VrfIdMap::VrfId(id)); }

  /// A fresh FEC with those vias.
  FecId fec(const std::vector<Via>& vias) {
    const bool v6 = !vias.empty() && vias.front().hop.af() == Kesh::AddressFamily::ip6;
    const FecId id(v6 ? AdjType::fib6 : AdjType::fib, ++lastFec_);
    fecIs(id, vias);
    return id;
  }
  /// Enters or replaces the FEC of that identifier, in the table that its type names.
  void fecIs(FecId id, const std::vector<Via>& vias, std::uint32_t backupViaIndex = 0) {
    if (isV6FecId(id)) {
      tables.fecs6->insert(fecRecord<Vanta::Fib6::Fec>(id, vias, backupViaIndex));
    } else {
      tables.fecs->insert(fecRecord<Vanta::Fib::Fec>(id, vias, backupViaIndex));
    }
  }

  template <class RouteType>
  void route(const std::string& prefix, RouteType type, FecId fecId, std::uint32_t metric = 0) {
    using Family = FamilyOf<RouteType>;
    typename Family::Route record;
    record.key = prefixOf<Family>(prefix);
    record.metric = metric;
    record.preferenceIs(1);
    record.srcVrfIdIs(Vrf::VrfIdMap::VrfId(Vrf::VrfIdMap::VrfId::none));
    record.routeType = type;
    record.fecId = fecId;
    routes<Family>().insert(record);
  }

  /// The writer's side of a route table, for what `route` does not say.
  template <class Family>
  auto& routes() {
    return *(tables.defaultVrf().*TablesOf<Family>::routes);
  }

  /// An address on an interface of the default VRF, the only IPv4 one of its interface.
  void interface(const char* name, const std::string& address) {
    const Kesh::IntfId id{Lumo::String(name)};
    if (const auto v4 = Kesh::IpAddrWithMask::parse(address)) {
      auto& intf = memberOf(state.ipStatus->ipIntfStatus, id);
      intf.vrf = L3::defaultVrfName;
      intf.primary = *v4;
    } else {
      auto& intf = memberOf(state.ip6Status->ip6IntfStatus, id);
      intf.vrf = L3::defaultVrfName;
      intf.addr.push_back(parsed<Kesh::Ip6AddrWithMask>(address));
    }
  }

  template <class Family>
  void hardwareUnprogrammed(const std::string& prefix) {
    tables.hardwareUnprogrammed(prefixOf<Family>(prefix), state.vrfs.front().id);
  }
  /// Nothing but the prefix is known of the refusal.
  template <class Family>
  void kernelUnprogrammed(const std::string& prefix) {
    (tables.defaultVrf().*TablesOf<Family>::kernelErrorTable)
        ->insert({prefixOf<Family>(prefix), {}, {}});
  }

 private:
  template <class Map>
  static typename Map::ValueType& memberOf(Map& map, const Kesh::IntfId& id) {
    if (auto* const present = map.find(id)) return *present;
    return map.insertOrAssign(id, {});
  }

  Lumo::ActivityLockHold lock_;
  std::uint64_t lastFec_ = 0;
};

/// What a command asks; everything has its usual value.
struct Query {
  std::string prefix = {}; ///< empty: the whole table
  std::string protocol = {};
  bool detail = false;
  bool longerPrefixes = false;
  std::string interface = {}; ///< empty: no interface
  bool byInterface = false;   ///< the IPv6 flag `intf`
  std::string vrf = L3::defaultVrfName;
  bool withoutKernelStatus = false; ///< a null `kernelUnprogrammedRoute`
  bool host = false;                ///< the host route table
};

template <class Family>
typename Family::Prefix queriedPrefix(const Query& query) {
  return query.prefix.empty() ? Family::Prefix::nullPrefix() : prefixOf<Family>(query.prefix);
}

inline Lumo::Ptr<const Interface::IntfStatus> queriedInterface(const Query& query) {
  if (query.interface.empty()) return {};
  return Lumo::newEntity<Interface::IntfStatus>(Kesh::IntfId(Lumo::String(query.interface)));
}

/// A loaded sorter over the device, made by the factory of its family.
template <class Family>
Lumo::Ptr<Rova::Sorter<Family>> openSorter(const Device& device, const Query& query = {}) {
  const auto& state = device.state;
  const state::VrfState* const vrf = state.vrf(query.vrf);
  if (!vrf) throw std::invalid_argument("no such VRF in the test: " + query.vrf);
  state::VrfState shown = *vrf;
  if (query.withoutKernelStatus) shown.kernelUnprogrammedRoute = nullptr;
  return Rova::openSorter<Family>(state, shown,
                                  {.prefix = queriedPrefix<Family>(query),
                                   .intfStatus = queriedInterface(query),
                                   .intf = query.byInterface,
                                   .protocol = query.protocol,
                                   .detail = query.detail,
                                   .longerPrefixes = query.longerPrefixes,
                                   .host = query.host});
}

/// The routes that a sorter selected, as texts in listing order.
template <class Sorter>
std::vector<std::string> selected(const Lumo::Ptr<Sorter>& sorter) {
  std::vector<std::string> prefixes;
  for (const auto& [prefix, route] : sorter->sortedRouteMap()) {
    prefixes.push_back(prefix.stringValue().str());
  }
  return prefixes;
}

/// What `printRoutes` writes in a format.
template <class Sorter>
std::string outputOf(const Lumo::Ptr<Sorter>& sorter, unsigned format) {
  const Sink sink;
  sorter->printRoutes(static_cast<std::uint32_t>(sink.fd()), format);
  return sink.text();
}
template <class Sorter>
std::string textOf(const Lumo::Ptr<Sorter>& sorter) {
  return outputOf(sorter, scrivo::textFormat);
}

} // namespace support
