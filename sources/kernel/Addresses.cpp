#include "sources/kernel/Addresses.h"

#include <linux/if_addr.h>
#include <sys/socket.h>

namespace sources::kernel {

unsigned addressBits(unsigned family) {
  return family == AF_INET ? Kesh::IpAddr::bits : family == AF_INET6 ? Kesh::Ip6Addr::bits : 0;
}

Kesh::IpGenAddr readAddress(unsigned family, Bytes payload) {
  const unsigned bits = addressBits(family);
  if (bits == 0 || payload.size() < bits / 8) return {};
  if (family == AF_INET) return Kesh::IpAddr::fromBytes(payload.data());
  return Kesh::Ip6Addr::fromBytes(payload.data());
}

Kesh::Ip6Addr ip6Form(const Kesh::IpGenAddr& address) {
  if (address.af() != Kesh::AddressFamily::ip4) return address.v6Addr();
  return Kesh::Ip6Addr::fromHalves(0, 0xffff00000000ull | address.v4Addr().host());
}

bool Address::isSecondary() const { return flags & IFA_F_SECONDARY; }

// IPv4 gives the bit of IFA_F_DADFAILED no meaning.
bool Address::isDuplicate() const { return flags & IFA_F_DADFAILED; }

std::optional<Address> decodeAddress(Bytes payload) {
  const auto header = readRecord<ifaddrmsg>(payload);
  if (!header || header->ifa_prefixlen > addressBits(header->ifa_family)) return {};
  Address found{header->ifa_index, {}, header->ifa_prefixlen, header->ifa_flags, {}};
  Kesh::IpGenAddr local, other;
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    switch (type) {
    case IFA_LOCAL:
      local = readAddress(header->ifa_family, value);
      break;
    case IFA_ADDRESS:
      other = readAddress(header->ifa_family, value);
      break;
    case IFA_FLAGS:
      take(value, found.flags);
      break;
    }
  });
  // IFA_ADDRESS is the peer wherever IFA_LOCAL stands beside it.
  found.address = local == Kesh::IpGenAddr() ? other : local;
  found.peer = other;
  if (found.address == Kesh::IpGenAddr()) return {};
  return found;
}

} // namespace sources::kernel
