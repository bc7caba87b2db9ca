#include "sources/kernel/Neighbours.h"

#include "sources/kernel/Addresses.h"

#include <linux/neighbour.h>

namespace sources::kernel {

namespace {

// Entries of these states have no Ethernet address, or an outdated one.
constexpr unsigned unknownStates = NUD_INCOMPLETE | NUD_FAILED;
constexpr std::size_t ethernetBytes = 6;

bool isKnown(unsigned state) { return state != NUD_NONE && (state & unknownStates) == 0; }

} // namespace

std::optional<Neighbour> decodeNeighbour(Bytes payload) {
  const auto header = readRecord<ndmsg>(payload);
  if (!header || !isKnown(header->ndm_state)) return {};
  Neighbour found;
  found.interface = static_cast<std::uint32_t>(header->ndm_ifindex);
  found.unresolved = header->ndm_state & NUD_NOARP;
  bool hasEthernet = false;
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    if (type == NDA_DST) found.address = readAddress(header->ndm_family, value);
    if (type != NDA_LLADDR || value.size() != ethernetBytes) return;
    found.ethernet = Kesh::EthAddr::fromBytes(value.data());
    hasEthernet = true;
  });
  if (!hasEthernet || found.address == Kesh::IpGenAddr()) return {};
  return found;
}

Neighbour decodeNeighbourKey(Bytes payload) {
  Neighbour found;
  const auto header = readRecord<ndmsg>(payload);
  if (!header) return found;
  found.interface = static_cast<std::uint32_t>(header->ndm_ifindex);
  forEachAttribute(behind(payload, sizeof *header), [&](unsigned type, Bytes value) {
    if (type == NDA_DST) found.address = readAddress(header->ndm_family, value);
  });
  return found;
}

} // namespace sources::kernel
