#include "sources/kernel/Device.h"

#include "sources/kernel/InterfaceState.h"
#include "sources/kernel/LinkTunnels.h"
#include "sources/kernel/NexthopGroups.h"
#include "sources/kernel/RouteState.h"

namespace sources::kernel {

state::DeviceState makeDevice(const KernelState& kernel) {
  NumbersByContent numbers;
  return makeDevice(kernel, numbers).device;
}

state::DeviceState makeNexthopGroups(const KernelState& kernel) {
  state::DeviceBuilder builder;
  const Vrfs vrfs(kernel, builder);
  fillNexthopGroups(kernel, Interfaces(kernel.links), vrfs, builder);
  return std::move(builder.state);
}

MadeDevice makeDevice(const KernelState& kernel, FecNumbers& numbers) {
  state::DeviceBuilder builder;
  const Vrfs vrfs(kernel, builder);
  Interfaces interfaces(kernel.links);
  fillInterfaces(kernel, interfaces, vrfs, builder);
  fillLinkTunnels(kernel.links, builder);
  fillNexthopGroups(kernel, interfaces, vrfs, builder);
  ViaLists lists = fillRoutes(kernel, interfaces, vrfs, numbers, builder);
  return {std::move(builder.state), std::move(interfaces), std::move(lists)};
}

} // namespace sources::kernel
