// The addresses that interfaces are configured to have.
#pragma once

#include "kesh/IntfId.h"
#include "kesh/Prefix.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "lumo/RbTreeMap.h"
#include "state/Vrf.h"

namespace L3 {

/// An interface's part in routing.
class IntfConfig : public Lumo::PtrInterface {
 public:
  explicit IntfConfig(VrfName vrfName) : vrf(std::move(vrfName)) {}
  VrfName vrf;
};

} // namespace L3

namespace Ip {

/// The IPv4 addresses of one interface. An address 0.0.0.0/0 is none.
struct IpIntfConfig {
  using Addresses = Lumo::RbTreeMap<Kesh::IpAddrWithMask, bool>;

  Kesh::IntfId intfId;
  Kesh::IpAddrWithMask addrWithMask;
  Addresses secondaryWithMask;
  Kesh::IpAddrWithMask virtualAddrWithMask;
  Addresses virtualSecondaryWithMask;
  Lumo::Ptr<const L3::IntfConfig> l3Config; ///< may be null
};

/// The configured addresses of a device by interface.
class Config : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Kesh::IntfId, IpIntfConfig> ipIntfConfig;
};

} // namespace Ip

namespace Ip6 {

/// What is known of a configured address beyond itself: nothing that is read.
struct AddressInfo {
  friend bool operator==(const AddressInfo&, const AddressInfo&) = default;
};

/// The IPv6 addresses of one interface.
struct IntfConfig {
  Kesh::IntfId intfId;
  Lumo::RbTreeMap<Kesh::Ip6AddrWithMask, AddressInfo> addr;
  Lumo::Ptr<const L3::IntfConfig> l3Config; ///< may be null
};

class Config : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Kesh::IntfId, IntfConfig> intf;
};

} // namespace Ip6
