#include "sources/kernel/Nexthops.h"

#include "sources/kernel/Addresses.h"

#include <linux/nexthop.h>
#include <linux/rtnetlink.h>

namespace sources::kernel {

namespace {

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

} // namespace

std::optional<Nexthop> decodeNexthop(Bytes payload, Encapsulations& encapsulations) {
  const auto header = readRecord<nhmsg>(payload);
  if (!header) return {};
  Nexthop found;
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
  found.hop.dead = header->nh_flags & RTNH_F_DEAD ? 1 : 0;
  if (found.id == 0) return {};
  return found;
}

} // namespace sources::kernel
