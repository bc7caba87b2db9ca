// The document of a route listing, and what it has in common with the host route table: whether
// routes are programmed in hardware and in the kernel, the warning about the former, the routing
// flag, the lines of timing.
#pragma once

#include "lumo/System.h"
#include "rova/route/Sorter.h"
#include "scrivo/Printer.h"

namespace Rova {

/// The line above and below the warnings.
inline constexpr const char* warningRule =
    "======================================================\n";
inline constexpr const char* hardwareWarning =
    "WARNING: Some of the routes are not programmed in     \n"
    "hardware, and they are marked with '*'.               \n";

/// Whether the counts say that a route of the sorter's VRF is missing from the hardware.
template <class Family>
bool hasHardwareUnprogrammed(const Sorter<Family>& sorter) {
  if (!sorter.unprogrammedRouteStatus()) return false;
  bool found = false;
  const auto& counts = sorter.unprogrammedRouteStatus()->unprogrammedRouteCount;
  const auto* const count = counts.safeLookup(sorter.vrfId(), found, 0);
  return found && count->count != 0;
}

template <class Family>
bool isHardwareProgrammed(const Sorter<Family>& sorter, const typename Family::Prefix& prefix) {
  const auto& status = sorter.unprogrammedRouteStatus();
  if (!status) return true;
  bool found = false;
  status->unprogrammedRoute.safeLookup({prefix, sorter.vrfId()}, found, 0);
  return !found;
}

/// Whether any route of the device is listed as missing from the hardware.
template <class Family>
bool hasUnprogrammedRoutes(const Sorter<Family>& sorter) {
  const auto& status = sorter.unprogrammedRouteStatus();
  if (!status) return false;
  using Table = std::remove_cvref_t<decltype(status->unprogrammedRoute)>;
  return static_cast<bool>(typename Table::IteratorConst(status->unprogrammedRoute));
}

/// The sorter must have the kernel's table.
template <class Family>
bool isKernelProgrammed(const Sorter<Family>& sorter, const typename Family::Prefix& prefix) {
  bool found = false;
  const auto& errors = (*sorter.kernelUnprogrammedRoute()).*Family::kernelErrors;
  return *errors.safeLookup(prefix, found, 0) == typename Family::KernelError();
}

template <class Family>
bool isRoutingDisabled(const Sorter<Family>& sorter) {
  return !sorter.routingConfig() || !sorter.routingConfig()->routing;
}

/// The last two lines of a timed listing whose printing began at `start`.
template <class Family>
void printTiming(const Sorter<Family>& sorter, scrivo::Printer& printer, double start) {
  scrivo::DoubleAttrInfo quantify(printer, "quantify");
  scrivo::DoubleAttrInfo rsTime(printer, "rsTime");
  quantify.setValue(Lumo::System::currentTime() - sorter.quantify());
  rsTime.setValue(start - sorter.quantify());
  printer.addFrills("Time taken for the routes to be printed: %f seconds.\n", quantify.getArg());
  printer.addFrills("Time taken to create the routeSorter: %f seconds.\n", rsTime.getArg());
}

/// Prints the whole listing of a sorter: warnings, flags, legend, gateway of last resort, routes,
/// timing. IPv4 removes the default route from `sortedRoute` when it prints it as the gateway of
/// last resort.
template <class Family>
void formatOutput(Sorter<Family>& sorter, scrivo::Printer& printer);

} // namespace Rova
