// Addresses that the device has itself, which no static route may lead to.
#pragma once

#include "state/DeviceState.h"

#include <optional>
#include <string>

namespace command {

/// Why a next hop is refused in a VRF: it is an address of the device there. Nothing for any other
/// address, and for none.
std::optional<std::string> ownAddressRefusal(const state::DeviceState& device,
                                             const Kesh::IpGenAddr& hop, const std::string& vrf);

} // namespace command
