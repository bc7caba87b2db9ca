#include "sources/kernel/Links.h"

#include "sources/kernel/Addresses.h"

#include <arpa/inet.h>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/if_tunnel.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace sources::kernel {

namespace {

using Tunnel::TunnelTable::EncapKind;

/// Where the attributes of a tunnel device stand in its data; the kinds number them differently.
struct TunnelAttributes {
  unsigned local, remote, key, ttl, tos, pathMtuDiscovery;
};
constexpr unsigned absent = NLA_TYPE_MASK + 1u; // no attribute has this number
constexpr TunnelAttributes greAttributes{IFLA_GRE_LOCAL, IFLA_GRE_REMOTE, IFLA_GRE_IKEY,
                                         IFLA_GRE_TTL,   IFLA_GRE_TOS,    IFLA_GRE_PMTUDISC};
// The keys of VTI mark packets inside the kernel, they are not sent.
constexpr TunnelAttributes vtiAttributes{IFLA_VTI_LOCAL, IFLA_VTI_REMOTE, absent,
                                         absent,         absent,          absent};

struct TunnelDeviceKind {
  std::string_view name; ///< IFLA_INFO_KIND
  EncapKind kind;
  unsigned family;
  const TunnelAttributes& attributes;
};
constexpr TunnelDeviceKind tunnelDeviceKinds[] = {
    {"gre", EncapKind::gre, AF_INET, greAttributes},
    {"gretap", EncapKind::gre, AF_INET, greAttributes},
    {"ip6gre", EncapKind::gre, AF_INET6, greAttributes},
    {"ip6gretap", EncapKind::gre, AF_INET6, greAttributes},
    {"vti", EncapKind::ipsecVti, AF_INET, vtiAttributes},
    {"vti6", EncapKind::ipsecVti, AF_INET6, vtiAttributes},
};

/// Nothing for a device without a remote end of its own: each packet may go elsewhere.
std::optional<TunnelDevice> tunnelDeviceOf(const TunnelDeviceKind& kind, Bytes data) {
  TunnelDevice device{kind.kind, {}};
  std::uint32_t key = 0; // big endian
  forEachAttribute(data, [&](unsigned type, Bytes value) {
    const TunnelAttributes& at = kind.attributes;
    if (type == at.local) device.ends.source = readAddress(kind.family, value);
    if (type == at.remote) device.ends.destination = readAddress(kind.family, value);
    if (type == at.key) take(value, key);
    if (type == at.ttl) take(value, device.ends.ttl);
    if (type == at.tos) take(value, device.ends.tos);
    if (type == at.pathMtuDiscovery) take(value, device.ends.pathMtuDiscovery);
  });
  device.ends.greKey = ntohl(key);
  if (device.ends.destination.isAddrZero()) return {};
  return device;
}

/// The routing table of a vrf device.
std::uint32_t vrfTableOf(Bytes data) {
  std::uint32_t table = 0;
  forEachAttribute(data, [&](unsigned type, Bytes value) {
    if (type == IFLA_VRF_TABLE) take(value, table);
  });
  return table;
}

/// Takes what the kind of a device says. The kernel writes the kind before the data whose meaning
/// it decides; a message in another order is read just as well.
void takeLinkInfo(Bytes linkInfo, Link& link) {
  std::string kind;
  Bytes data;
  forEachAttribute(linkInfo, [&](unsigned type, Bytes value) {
    if (type == IFLA_INFO_KIND) kind = textOf(value);
    if (type == IFLA_INFO_DATA) data = value;
  });
  link.isVxlan = kind == "vxlan";
  if (kind == "vrf") link.vrfTable = vrfTableOf(data);
  for (const TunnelDeviceKind& one : tunnelDeviceKinds) {
    if (one.name == kind) link.tunnel = tunnelDeviceOf(one, data);
  }
}

} // namespace

std::optional<Link> decodeLink(Bytes payload) {
  const auto header = readRecord<ifinfomsg>(payload);
  if (!header || header->ifi_family != AF_UNSPEC) return {};
  Link link;
  link.index = static_cast<std::uint32_t>(header->ifi_index);
  link.up = header->ifi_flags & IFF_UP;
  link.carrier = header->ifi_flags & (IFF_RUNNING | IFF_LOWER_UP);
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    switch (type) {
    case IFLA_IFNAME:
      link.name = textOf(value);
      break;
    case IFLA_IFALIAS:
      link.alias = textOf(value);
      break;
    case IFLA_MASTER:
      take(value, link.master);
      break;
    case IFLA_LINKINFO:
      takeLinkInfo(value, link);
      break;
    }
  });
  if (link.name.empty() || link.name.size() >= IFNAMSIZ) return {};
  return link;
}

} // namespace sources::kernel
