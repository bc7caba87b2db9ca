#include "sources/kernel/Links.h"

#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace sources::kernel {

namespace {

/// The routing table of a vrf device, 0 for any other kind. The kernel writes the kind before the
/// data whose meaning it decides; a message in another order is read just as well.
std::uint32_t vrfTableOf(Bytes linkInfo) {
  std::string kind;
  Bytes data;
  forEachAttribute(linkInfo, [&](unsigned type, Bytes value) {
    if (type == IFLA_INFO_KIND) kind = textOf(value);
    if (type == IFLA_INFO_DATA) data = value;
  });
  std::uint32_t table = 0;
  if (kind != "vrf") return table;
  forEachAttribute(data, [&](unsigned type, Bytes value) {
    if (type == IFLA_VRF_TABLE) take(value, table);
  });
  return table;
}

} // namespace

std::optional<Link> decodeLink(Bytes payload) {
  const auto header = readRecord<ifinfomsg>(payload);
  if (!header || header->ifi_family != AF_UNSPEC) return {};
  Link link;
  link.index = static_cast<std::uint32_t>(header->ifi_index);
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
      link.vrfTable = vrfTableOf(value);
      break;
    }
  });
  if (link.name.empty()) return {};
  return link;
}

} // namespace sources::kernel
