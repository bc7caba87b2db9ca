#include "command/VrfChoice.h"

#include "sources/SourceError.h"
#include "state/NoSuch.h"

namespace command {

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
  if (vrf) return *vrf;
  throw sources::SourceError(sources::inputName(options.state) + ": " +
                             state::noSuchVrf(device, name));
}

} // namespace command
