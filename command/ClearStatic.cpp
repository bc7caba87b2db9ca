#include "command/ClearStatic.h"

#include "command/ChangedSnapshot.h"
#include "command/InterfaceChoice.h"
#include "command/OpenState.h"
#include "command/StaticLines.h"
#include "rova/CliSupport.h"
#include "sources/Source.h"

namespace command {

namespace {

/// Clears in every VRF; the lines that went.
Lines clear(const state::DeviceState& device, const Lumo::String& interface) {
  Lines gone;
  for (const auto& vrf : device.vrfs) {
    const auto before = staticLines(vrf, false);
    for (const auto& family : staticFamilies) {
      if (const auto& config = vrf.*family.config) {
        Rova::ClearIntfRoutesAndViasHelper().clearIntfRoutesAndViasHelper(config, interface);
      }
    }
    for (auto& line : linesWithout(before, staticLines(vrf, false))) {
      gone.push_back(std::move(line));
    }
  }
  return gone;
}

} // namespace

ExitStatus clearStatic(const grammar::Parsed& parsed, const Options& options) {
  const auto interface = parsed.text("interface");
  if (sources::isKernel(options.state)) {
    throw sources::SourceError(options.state + ": static routes are cleared in snapshots alone; " +
                               "--state names the file of one");
  }
  requireTarget("clear static", options);
  ChangedSnapshot changed(options);
  const auto device = openState(options).device;
  requireInterface(device, interface, options);
  changed.replace(device, clear(device, interface));
  return success;
}

} // namespace command
