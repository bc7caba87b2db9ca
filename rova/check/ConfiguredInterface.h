// What the checks share: which interfaces a configuration has, in which VRF they are, and which of
// them are for management.
#pragma once

#include "rova/core/TypeNames.h"

#include <optional>
#include <string_view>

namespace Rova {

/// The VRF that an interface is configured to be in; the empty name when nothing is said of it.
template <class Interface>
Lumo::String vrfOf(const Interface& interface) {
  return interface.l3Config ? interface.l3Config->vrf.stringValue() : Lumo::String();
}

/// The VRF of the interface that a query names: the default one when it is not configured yet.
template <class Interfaces>
Lumo::String queriedVrf(const Interfaces& interfaces, const Lumo::String& name) {
  const auto* const interface = interfaces.find(Kesh::IntfId(name));
  return interface ? vrfOf(*interface) : Lumo::String(L3::defaultVrfName);
}

inline bool beginsWith(const Lumo::String& name, const Lumo::String& prefix) {
  return name.view().substr(0, prefix.bytes()) == prefix.view();
}

/// Calls `visit(interface)` for the interfaces of a VRF until it gives a result.
template <class Interfaces, class Visit>
auto firstOfVrf(const Interfaces& interfaces, const Lumo::String& vrf, Visit&& visit) {
  using Interface = typename Interfaces::ValueType;
  decltype(visit(std::declval<const Interface&>())) result{};
  for (auto at = interfaces.cursor(); at && !result; at.next()) {
    const auto* const interface = at.value();
    if (interface && vrfOf(*interface) == vrf) result = visit(*interface);
  }
  return result;
}

/// "Address 10.0.0.1 is already assigned to interface Ethernet1"
inline Lumo::String assignedMessage(const Lumo::String& address, const Lumo::String& interface) {
  return "Address " + address.str() + " is already assigned to interface " + interface.str();
}

/// "Subnet 10.0.0.0 overlaps with existing subnet 10.0.0.0 of interface Ethernet1"
inline Lumo::String overlapMessage(const char* what, const Lumo::String& wanted,
                                   const Lumo::String& existing, const Lumo::String& interface) {
  return std::string(what) + " " + wanted.str() + " overlaps with existing subnet " +
         existing.str() + " of interface " + interface.str();
}

} // namespace Rova
