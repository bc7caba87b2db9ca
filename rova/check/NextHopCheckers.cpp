#include "rova/check/NextHopCheckers.h"

#include "ConfiguredInterface.h"

#include <algorithm>

namespace Rova {

LUMO_DEFINE_TYPE(InvalidNextHopChecker);
LUMO_DEFINE_TYPE(InvalidNextHop6Checker);

namespace {

/// Whether one of the addresses with masks is `hop`.
template <class Addresses, class Address>
bool contains(const Addresses& addresses, const Address& hop) {
  return std::any_of(addresses.begin(), addresses.end(),
                     [&](const auto& member) { return member.first.address() == hop; });
}

} // namespace

bool InvalidNextHopChecker::check(Lumo::Ptr<const Ip::Config> ipConfig, Kesh::IpAddr hop,
                                  L3::VrfName vrfName) const {
  return firstOfVrf(ipConfig->ipIntfConfig, vrfName.stringValue(),
                    [&](const Ip::IpIntfConfig& interface) {
                      return interface.addrWithMask.address() == hop ||
                             contains(interface.secondaryWithMask, hop);
                    });
}

bool InvalidNextHop6Checker::check(Lumo::Ptr<const Ip6::Config> ip6Config, const Kesh::Ip6Addr& hop,
                                   L3::VrfName vrfName) const {
  return firstOfVrf(ip6Config->intf, vrfName.stringValue(), [&](const Ip6::IntfConfig& interface) {
    return contains(interface.addr, hop);
  });
}

} // namespace Rova
