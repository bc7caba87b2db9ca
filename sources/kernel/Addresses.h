// Interface addresses as the kernel reports them.
#pragma once

#include "kesh/Address.h"
#include "sources/kernel/Attributes.h"

#include <tuple>

namespace sources::kernel {

struct Address {
  std::uint32_t interface = 0; ///< the kernel's index of the interface
  Kesh::IpGenAddr address;     ///< the interface's own address, also on a point-to-point link
  std::uint8_t length = 0;     ///< of the mask, in bits
  std::uint32_t flags = 0;     ///< IFA_F_*
  Kesh::IpGenAddr peer = {};   ///< of a point-to-point link; elsewhere the address itself

  auto key() const { return std::tuple(interface, address, length, peer); }
  friend bool operator==(const Address&, const Address&) = default;
  bool isSecondary() const;
  /// Whether IPv6 found another owner of the address, so that the interface does not have it.
  bool isDuplicate() const;
};

/// From the payload of an RTM_NEWADDR message; nothing for a damaged one or another family.
std::optional<Address> decodeAddress(Bytes payload);

/// The address of netlink family `family` (AF_INET, AF_INET6) at the start of `payload`; unset for
/// another family or too few bytes.
Kesh::IpGenAddr readAddress(unsigned family, Bytes payload);

/// The address among IPv6 ones: an IPv4 address takes the form ::ffff:a.b.c.d of RFC 4291.
Kesh::Ip6Addr ip6Form(const Kesh::IpGenAddr& address);

/// The bits of an address of that family, 0 for a family that is not IP.
unsigned addressBits(unsigned family);

} // namespace sources::kernel
