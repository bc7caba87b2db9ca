#include "command/VrfChoice.h"

#include "command/Nearest.h"
#include "sources/SourceError.h"

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
  throw sources::SourceError(sources::inputName(options.state) + ": " + unknownVrf(device, name));
}

std::string unknownVrf(const state::DeviceState& device, const std::string& name) {
  std::vector<std::string> names;
  std::string list;
  for (const auto& vrf : device.vrfs) {
    names.push_back(vrf.name.stringValue().str());
    list += (list.empty() ? "" : ", ") + names.back();
  }
  const auto message = noSuch("VRF", name, names);
  return message + (message.ends_with('?') ? " The" : "; the") + " VRFs are " + list;
}

} // namespace command
