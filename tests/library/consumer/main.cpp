// Lists an empty routing table through the installed library.
#include <lumo/ActivityLock.h>
#include <rova/CliSupport.h>
#include <state/DeviceBuilder.h>

int main() {
  const Lumo::ActivityLockHold hold;
  const state::DeviceBuilder device;
  const auto& state = device.state;
  const auto& vrf = state.vrfs.front();
  const auto sorter = Rova::routeSorterFactory(
      vrf.routingConfig, vrf.routingStatus, state.forwardingStatus, state.forwarding6Status,
      state.tunnelFib, state.arpVanta, state.vrfIdMap, state.allIntfConfig, state.ipStatus,
      state.routingHardwareStatus, state.nhEntryStatus, vrf.kernelUnprogrammedRoute,
      state.evpnVxlanTunnelTable, state.tunnelTableDir, Kesh::Prefix::nullPrefix(), nullptr, "",
      false, false, vrf.name, vrf.id, false, 1, 0.0, true, state.srTePolicyStatus,
      state.policyForwardingStatus, false, state.unprogrammedRouteStatus);
  const auto fec = Rova::cachedFecFactory(Vanta::Fib::FecId(1));
  const bool known = Lumo::typeNode("Rova::RouteSorter") == sorter->fwkType() &&
                     Lumo::typeNode("Rova::CachedFec") == fec->fwkType();
  return known && sorter->printRoutes(1, 1) ? 0 : 1;
}
