#include "command/VrfChoice.h"

#include "sources/SourceError.h"

namespace command {

namespace {

[[noreturn]] void failUnknown(const state::DeviceState& device, const std::string& name,
                              const Options& options) {
  std::string known;
  for (const auto& vrf : device.vrfs) {
    known += (known.empty() ? "" : ", ") + vrf.name.stringValue().str();
  }
  throw sources::SourceError(options.state + ": there is no VRF \"" + name + "\"; the VRFs are " +
                             known);
}

} // namespace

std::vector<const state::VrfState*> chosenVrfs(const state::DeviceState& device,
                                               const std::string& name, const Options& options) {
  if (name != "all") return {&chosenVrf(device, name, options)};
  std::vector<const state::VrfState*> chosen;
  for (const auto& vrf : device.vrfs) chosen.push_back(&vrf);
  return chosen;
}

const state::VrfState& chosenVrf(const state::DeviceState& device, const std::string& name,
                                 const Options& options) {
  const auto* const vrf = device.vrf(name);
  if (!vrf) failUnknown(device, name, options);
  return *vrf;
}

} // namespace command
