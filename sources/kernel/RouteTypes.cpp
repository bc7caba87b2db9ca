#include "sources/kernel/RouteTypes.h"

#include <span>

namespace sources::kernel {

namespace {

const RouteKind& find(std::span<const KindRow> rows, std::uint8_t code, const RouteKind& other) {
  for (const KindRow& row : rows) {
    if (row.code == code) return row.kind;
  }
  return other;
}

} // namespace

const RouteKind& kindOfType(std::uint8_t type) { return find(kindsByType, type, notListed); }

const RouteKind& kindOfUnicast(std::uint8_t protocol, FirstHop hop) {
  if (protocol == RTPROT_KERNEL && hop == FirstHop::link) return connectedRoute;
  if (protocol == RTPROT_KERNEL && hop == FirstHop::peer) return peerRoute;
  return find(kindsByProtocol, protocol, kernelRoute);
}

} // namespace sources::kernel
