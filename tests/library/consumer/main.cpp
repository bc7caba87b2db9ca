// Lists an empty routing table through the installed library.
#include <lumo/ActivityLock.h>
#include <rova/CliSupport.h>
#include <state/DeviceBuilder.h>

int main() {
  const Lumo::ActivityLockHold hold;
  const state::DeviceBuilder device;
  const auto& state = device.state;
  const auto sorter = Rova::openSorter<Rova::Ip4Family>(state, state.vrfs.front(), {});
  const auto fec = Rova::cachedFecFactory(Vanta::Fib::FecId(1));
  const bool known = Lumo::typeNode("Rova::RouteSorter") == sorter->fwkType() &&
                     Lumo::typeNode("Rova::CachedFec") == fec->fwkType();
  return known && sorter->printRoutes(1, 1) ? 0 : 1;
}
