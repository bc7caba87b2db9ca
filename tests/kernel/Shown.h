// Routes of a device's state as one line each, for tests to compare:
//
//   bgpExternal [200/20] | 10.0.0.2 eth0 w3 | fe80::9 eth1
#pragma once

#include "state/DeviceState.h"

#include <map>
#include <string>

namespace kernel_test {

using Routes = std::map<std::string, std::string>; ///< line by "VRF PREFIX"

template <class Via>
std::string showVia(const Via& via) {
  std::string out = " |";
  if (!via.hop.isZero()) out += " " + via.hop.stringValue().str();
  out += via.intfId ? " " + via.intfId.stringValue().str() : " dead";
  if (!via.mplsLabel().isNull()) out += " label " + std::to_string(via.mplsLabel().value());
  return via.weight == 1 ? out : out + " w" + std::to_string(via.weight);
}

template <class Fecs>
std::string showFec(const Fecs& fecs, Vanta::Fib::FecId id) {
  bool found = false;
  const auto* const fec = fecs.safeLookup(id, found, 0);
  if (!found) return " without its FEC";
  std::string out;
  for (std::uint32_t i = 0; i < fec->viaCount; ++i)
    out += showVia(fec->via(Vanta::Fib::ViaIndex(i)));
  return out;
}

template <class Route>
std::string showRoute(const state::DeviceState& device, const Route& route) {
  const std::string head = std::string(state::routeTypeName(route.routeType)) + " [" +
                           std::to_string(route.preference()) + "/" + std::to_string(route.metric) +
                           "]";
  if (route.fecId.isNull()) return head + " absent";
  return head + (Vanta::Fib::isV6FecId(route.fecId)
                     ? showFec(device.forwarding6Status->fec, route.fecId)
                     : showFec(device.forwardingStatus->fec, route.fecId));
}

template <class Table>
void addShown(const state::DeviceState& device, const std::string& vrf, const Table& table,
              Routes& out) {
  for (typename Table::IteratorConst it(table); it; it.next()) {
    out[vrf + " " + it.value().key.stringValue().str()] = showRoute(device, it.value());
  }
}

/// Every route of the device.
inline Routes showRoutes(const state::DeviceState& device) {
  Routes out;
  for (const state::VrfState& vrf : device.vrfs) {
    addShown(device, vrf.name.stringValue().str(), vrf.routingStatus->route, out);
    addShown(device, vrf.name.stringValue().str(), vrf.routing6Status->route, out);
  }
  return out;
}

/// The FEC identifier of a route in the default VRF, 0 when there is no such route.
inline std::uint64_t fecOf(const state::DeviceState& device, std::string_view prefix) {
  bool found = false;
  if (const auto ip4 = Kesh::Prefix::parse(prefix)) {
    return device.vrfs[0].routingStatus->route.safeLookup(*ip4, found, 0)->fecId.value();
  }
  const auto ip6 = Kesh::Ip6Prefix::parse(prefix).value();
  return device.vrfs[0].routing6Status->route.safeLookup(ip6, found, 0)->fecId.value();
}

} // namespace kernel_test
