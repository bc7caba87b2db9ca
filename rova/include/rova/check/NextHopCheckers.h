// Whether a next hop is one of the device's own addresses, which no static route may lead to.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

namespace Rova {

/// Tells whether an IPv4 next hop is an address of the device.
class ROVA_EXPORT InvalidNextHopChecker {
  LUMO_TYPE(InvalidNextHopChecker, "Rova::InvalidNextHopChecker")
  LUMO_METHOD(check, "ipConfig", "hop", "vrfName")
  LUMO_END
  LUMO_VALUE(InvalidNextHopChecker)

  InvalidNextHopChecker() = default;
  /// True when an interface of the VRF has `hop` as its primary address or a secondary one. Virtual
  /// addresses do not count; an interface without a primary address has 0.0.0.0.
  bool check(Lumo::Ptr<const Ip::Config> ipConfig, Kesh::IpAddr hop, L3::VrfName vrfName) const;
};

/// Tells the same of an IPv6 next hop.
class ROVA_EXPORT InvalidNextHop6Checker {
  LUMO_TYPE(InvalidNextHop6Checker, "Rova::InvalidNextHop6Checker")
  LUMO_METHOD(check, "ip6Config", "hop", "vrfName")
  LUMO_END
  LUMO_VALUE(InvalidNextHop6Checker)

  InvalidNextHop6Checker() = default;
  /// True when an interface of the VRF has the address `hop`, be it link-local.
  bool check(Lumo::Ptr<const Ip6::Config> ip6Config, const Kesh::Ip6Addr& hop,
             L3::VrfName vrfName) const;
};

} // namespace Rova
