#include "sources/kernel/Nexthops.h"

#include "sources/kernel/Addresses.h"

#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <unordered_map>

namespace sources::kernel {

namespace {

// Of linux/nexthop.h since Linux 6.9; the headers of older systems lack them.
constexpr unsigned groupStatistics = 15;   // NHA_GROUP_STATS
constexpr unsigned statisticsOfMember = 1; // NHA_GROUP_STATS_ENTRY
constexpr unsigned memberOfStatistics = 1; // NHA_GROUP_STATS_ENTRY_ID
constexpr unsigned packetsOfMember = 2;    // NHA_GROUP_STATS_ENTRY_PACKETS

// Stored weights are one less than those that were configured. Kernels with weights above 256 keep
// the high byte in what older headers call a reserved field, which is 0 on older kernels.
Nexthop::Member memberOf(const nexthop_grp& row) {
  return {row.id, (std::uint32_t{row.resvd1} << 8 | row.weight) + 1};
}

std::vector<Nexthop::Member> membersOf(Bytes rows) {
  std::vector<Nexthop::Member> members;
  members.reserve(rows.size() / sizeof(nexthop_grp));
  while (const auto row = readRecord<nexthop_grp>(rows)) {
    members.push_back(memberOf(*row));
    rows = rows.subspan(sizeof *row);
  }
  return members;
}

/// An integer that the kernel writes in four bytes, or in eight when it needs them.
std::optional<std::uint64_t> readInteger(Bytes payload) {
  if (const auto wide = readRecord<std::uint64_t>(payload)) return wide;
  return readRecord<std::uint32_t>(payload);
}

void takePackets(Bytes statistics, std::vector<Nexthop::Member>& members) {
  std::unordered_map<std::uint32_t, std::uint64_t> packetsById;
  forEachAttribute(statistics, [&](unsigned entryType, Bytes entry) {
    if (entryType != statisticsOfMember) return;
    std::optional<std::uint32_t> id;
    std::optional<std::uint64_t> packets;
    forEachAttribute(entry, [&](unsigned type, Bytes value) {
      if (type == memberOfStatistics) id = readRecord<std::uint32_t>(value);
      if (type == packetsOfMember) packets = readInteger(value);
    });
    if (id && packets) packetsById[*id] = *packets;
  });
  for (Nexthop::Member& member : members) {
    const auto found = packetsById.find(member.id);
    if (found != packetsById.end()) member.packets = found->second;
  }
}

void takeHeader(const nhmsg& header, Nexthop& nexthop) {
  nexthop.hop.dead = header.nh_flags & RTNH_F_DEAD ? 1 : 0;
  nexthop.linkDown = header.nh_flags & RTNH_F_LINKDOWN;
  if (header.nh_family == AF_INET) nexthop.family = Kesh::AddressFamily::ip4;
  if (header.nh_family == AF_INET6) nexthop.family = Kesh::AddressFamily::ip6;
}

} // namespace

std::optional<Nexthop> decodeNexthop(Bytes payload, Encapsulations& encapsulations) {
  const auto header = readRecord<nhmsg>(payload);
  if (!header) return {};
  Nexthop found;
  Bytes statistics;
  takeHeader(*header, found);
  EncapsulationAttributes encapsulation;
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    switch (type) {
    case NHA_ID:
      take(value, found.id);
      break;
    case NHA_GROUP:
      found.group = membersOf(value);
      break;
    case NHA_BLACKHOLE:
      found.blackhole = true;
      break;
    case NHA_FDB:
      found.forwardsFrames = true;
      break;
    case groupStatistics:
      statistics = value;
      break;
    case NHA_OIF:
      take(value, found.hop.interface);
      break;
    case NHA_GATEWAY:
      found.hop.gateway = readAddress(header->nh_family, value);
      break;
    case NHA_ENCAP_TYPE:
      take(value, encapsulation.kind);
      break;
    case NHA_ENCAP:
      encapsulation.data = value;
      break;
    }
  });
  encapsulation.fill(found.hop, encapsulations);
  takePackets(statistics, found.group);
  if (found.id == 0) return {};
  return found;
}

} // namespace sources::kernel
