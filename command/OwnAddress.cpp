#include "command/OwnAddress.h"

#include "rova/CliSupport.h"

namespace command {

namespace {

bool isOwn(const state::DeviceState& device, const Kesh::IpGenAddr& hop, const L3::VrfName& vrf) {
  switch (hop.af()) {
  case Kesh::AddressFamily::ip4:
    return Rova::InvalidNextHopChecker().check(device.ipConfig, hop.v4Addr(), vrf);
  case Kesh::AddressFamily::ip6:
    return Rova::InvalidNextHop6Checker().check(device.ip6Config, hop.v6Addr(), vrf);
  default:
    return false;
  }
}

} // namespace

std::optional<std::string> ownAddressRefusal(const state::DeviceState& device,
                                             const Kesh::IpGenAddr& hop, const std::string& vrf) {
  if (!isOwn(device, hop, L3::VrfName(Lumo::String(vrf)))) return {};
  return hop.stringValue().str() + " is an address of this device in VRF " + vrf;
}

} // namespace command
