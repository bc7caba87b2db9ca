#include "sources/kernel/Routes.h"

#include "sources/kernel/Addresses.h"

#include <linux/rtnetlink.h>

#include <cstddef>

namespace sources::kernel {

namespace {

/// A gateway of a family of its own (RTA_VIA).
Kesh::IpGenAddr readVia(Bytes payload) {
  const auto family = readRecord<__kernel_sa_family_t>(payload);
  if (!family) return {};
  return readAddress(*family, payload.subspan(offsetof(rtvia, rtvia_addr)));
}

/// Takes those attributes that a route and a row of a multipath route have in common.
void takeHop(unsigned family, unsigned type, Bytes value, Hop& hop,
             EncapsulationAttributes& encapsulation) {
  switch (type) {
  case RTA_GATEWAY:
    hop.gateway = readAddress(family, value);
    break;
  case RTA_VIA:
    hop.gateway = readVia(value);
    break;
  case RTA_ENCAP_TYPE:
    take(value, encapsulation.kind);
    break;
  case RTA_ENCAP:
    encapsulation.data = value;
    break;
  }
}

Hop readRow(unsigned family, const rtnexthop& header, Bytes attributes,
            Encapsulations& encapsulations) {
  Hop hop;
  EncapsulationAttributes encapsulation;
  hop.interface = static_cast<std::uint32_t>(header.rtnh_ifindex);
  hop.weight = std::uint32_t{header.rtnh_hops} + 1;
  hop.dead = header.rtnh_flags & RTNH_F_DEAD ? 1 : 0;
  forEachAttribute(attributes, [&](unsigned type, Bytes value) {
    takeHop(family, type, value, hop, encapsulation);
  });
  encapsulation.fill(hop, encapsulations);
  return hop;
}

void readRows(unsigned family, Bytes rows, Encapsulations& encapsulations, std::vector<Hop>& hops) {
  while (const auto header = readRecord<rtnexthop>(rows)) {
    if (header->rtnh_len < sizeof *header || header->rtnh_len > rows.size()) return;
    const Bytes attributes = behind(rows.first(header->rtnh_len), sizeof *header);
    hops.push_back(readRow(family, *header, attributes, encapsulations));
    rows = behind(rows, header->rtnh_len);
  }
}

void takeHeader(const rtmsg& header, RouteMessage& route) {
  route.family = header.rtm_family;
  route.type = header.rtm_type;
  route.protocol = header.rtm_protocol;
  route.tos = header.rtm_tos;
  route.length = header.rtm_dst_len;
  route.sourceLength = header.rtm_src_len;
  route.flags = header.rtm_flags;
  route.table = header.rtm_table;
  route.metric = 0;
  route.nexthopId = 0;
  route.destination = {};
  route.source = {};
  route.hops.clear();
}

/// The address 0 of a family, which the kernel leaves out of the message of a default route.
Kesh::IpGenAddr zeroAddress(unsigned family) {
  static constexpr std::byte zeros[16]{};
  return readAddress(family, zeros);
}

} // namespace

bool decodeRoute(Bytes payload, Encapsulations& encapsulations, RouteMessage& route) {
  const auto header = readRecord<rtmsg>(payload);
  const unsigned bits = header ? addressBits(header->rtm_family) : 0;
  if (bits == 0 || header->rtm_dst_len > bits) return false;
  takeHeader(*header, route);
  Hop single;
  EncapsulationAttributes encapsulation;
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    switch (type) {
    case RTA_DST:
      route.destination = readAddress(route.family, value);
      break;
    case RTA_PREFSRC:
      route.source = readAddress(route.family, value);
      break;
    case RTA_TABLE:
      take(value, route.table);
      break;
    case RTA_PRIORITY:
      take(value, route.metric);
      break;
    case RTA_NH_ID:
      take(value, route.nexthopId);
      break;
    case RTA_OIF:
      take(value, single.interface);
      break;
    case RTA_MULTIPATH:
      readRows(route.family, value, encapsulations, route.hops);
      break;
    default:
      takeHop(route.family, type, value, single, encapsulation);
    }
  });
  if (route.hops.empty() && (single.interface || single.gateway != Kesh::IpGenAddr())) {
    encapsulation.fill(single, encapsulations);
    single.dead = header->rtm_flags & RTNH_F_DEAD ? 1 : 0;
    route.hops.push_back(single);
  }
  if (route.destination != Kesh::IpGenAddr()) return true;
  route.destination = zeroAddress(route.family);
  return route.length == 0;
}

} // namespace sources::kernel
