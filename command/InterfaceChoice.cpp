#include "command/InterfaceChoice.h"

#include "sources/SourceError.h"
#include "state/NoSuch.h"

#include <algorithm>
#include <unordered_set>

namespace command {

namespace {

/// The interfaces that a state names, found part by part.
class Named {
 public:
  explicit Named(const state::DeviceState& device) {
    addInterfaces(device);
    addFecs(device.forwardingStatus->fec);
    addFecs(device.forwarding6Status->fec);
    addFecs(device.policyForwardingStatus->fec);
    addTunnels(*device.tunnelFib);
    addNeighbors(device.arpVanta->arpEntry);
    addNeighbors(device.arpVanta->neighborEntry);
    addNexthopGroups(device);
    for (const auto& vrf : device.vrfs) addVrf(vrf);
  }

  bool has(const Kesh::IntfId& id) const { return ids_.contains(id); }

  /// In their natural order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& id : ids_) names.push_back(id.stringValue().str());
    std::sort(names.begin(), names.end(), Kesh::naturalLess);
    return names;
  }

 private:
  void add(const Kesh::IntfId& id) {
    if (id) ids_.insert(id);
  }

  template <class Map>
  void addKeys(const Map& map) {
    map.forEach([&](const Kesh::IntfId& id, const auto&) { add(id); });
  }

  /// Calls `use` for each record of a shared table.
  template <class View, class Use>
  static void each(const View& view, Use&& use) {
    for (typename View::IteratorConst it(view); it; it.next()) use(it.value());
  }

  void addInterfaces(const state::DeviceState& device) {
    addKeys(device.allIntfConfig->configs);
    addKeys(device.ipConfig->ipIntfConfig);
    addKeys(device.ip6Config->intf);
    addKeys(device.ipStatus->ipIntfStatus);
    addKeys(device.ip6Status->ip6IntfStatus);
  }

  template <class View>
  void addFecs(const View& view) {
    each(view, [&](const auto& fec) {
      for (std::uint32_t i = 0; i < fec.viaCount; ++i) {
        add(fec.via(Vanta::Fib::ViaIndex(i)).intfId);
      }
    });
  }

  void addTunnels(const Tunnel::TunnelFib::TunnelFib& tunnels) {
    tunnels.entries.forEach([&](const auto&, const Tunnel::TunnelFib::TunnelFibEntry& entry) {
      for (const auto& via : entry.tunnelVia) add(via.intfId);
      for (const auto& via : entry.backupTunnelVia) add(via.intfId);
    });
  }

  template <class View>
  void addNeighbors(const View& view) {
    each(view, [&](const Arp::Table::ArpEntry& entry) { add(entry.key.intfId); });
  }

  void addNexthopGroups(const state::DeviceState& device) {
    device.nhgConfig->nexthopGroup.forEach(
        [&](const auto&, const auto& group) { add(group->sourceIntf); });
    device.nhgHwStatus->vrfStatus.forEach([&](const auto&, const auto& vrf) {
      vrf.nexthopGroupAdj.forEach([&](const auto&, const auto& group) {
        for (const auto& [index, via] : group.via) {
          add(via.l3Intf);
          add(via.l2Intf);
        }
      });
    });
  }

  void addRoutes(const Routing::RouteList& routes) {
    routes.route.forEach([&](const auto&, const Lumo::Ptr<Routing::Route>& route) {
      route->via.forEach([&](const Routing::Via& via, bool) { add(via.intfId); });
    });
  }

  void addInputs(const state::RouteInputs& inputs) {
    inputs.forEach([&](const auto&, const auto& input) { addRoutes(*input); });
  }

  void addVrf(const state::VrfState& vrf) {
    if (vrf.routingConfig) addRoutes(*vrf.routingConfig);
    if (vrf.routing6Config) addRoutes(*vrf.routing6Config);
    addInputs(vrf.routeInput);
    addInputs(vrf.route6Input);
    const auto addError = [&](const auto& error) { add(error.intfId); };
    each(vrf.kernelUnprogrammedRoute->error, addError);
    each(vrf.kernelUnprogrammedRoute->error6, addError);
  }

  std::unordered_set<Kesh::IntfId, Lumo::HashOf<Kesh::IntfId>> ids_;
};

} // namespace

std::vector<std::string> interfaceNames(const state::DeviceState& device) {
  return Named(device).names();
}

void requireInterface(const state::DeviceState& device, const std::string& name,
                      const Options& options) {
  const Named named(device);
  if (named.has(Kesh::IntfId(Lumo::String(name)))) return;
  throw sources::SourceError(sources::inputName(options.state) + ": " +
                             state::noSuch("interface", name, named.names()));
}

} // namespace command
