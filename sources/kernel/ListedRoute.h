// What is listed of the kernel's routes for one prefix in one VRF: of those that have a living next
// hop, the first in the order of the rows is the one that forwards.
#pragma once

#include "sources/kernel/ViaLists.h"

#include <algorithm>

namespace sources::kernel {

/// Reads the rows of one family.
template <class Family>
class RowReader {
 public:
  using Row = RouteRow<Family>;
  using Rows = std::span<const Row>;

  explicit RowReader(ViaLists& lists) : lists_(lists) {}

  ViaList& listOf(const Row& row) const { return lists_.at(row.hopList); }

  /// The one that forwards; null where all look at the type of service.
  const Row* forwarding(Rows same) const {
    const Row* first = nullptr;
    for (const Row& row : same) {
      if (row.tos != 0) continue;
      if (!listOf(row).isDead()) return &row;
      if (!first) first = &row;
    }
    return first;
  }

  typename Family::Route routeOf(const Row& row) const {
    const RouteKind& kind = kindOf(row);
    typename Family::Route route;
    route.key = row.prefix;
    route.metric = row.metric;
    route.preferenceIs(kind.preference);
    route.routeType = kind.*Family::type;
    route.fecId = listOf(row).fecId;
    return route;
  }

  /// The first of the routes that an administrator added, whether or not it forwards; null for
  /// none.
  Lumo::Ptr<Routing::Route> configured(Rows same) const {
    const auto row = std::ranges::find_if(same, [&](const Row& one) {
      return one.tos == 0 && (one.protocol == RTPROT_STATIC || one.protocol == RTPROT_BOOT) &&
             (one.type == RTN_UNICAST || isDrop(one.type));
    });
    if (row == same.end()) return {};
    auto route = Lumo::newEntity<Routing::Route>(Routing::RouteKey{row->prefix, 1});
    if (drops(*row)) route->routeType = Routing::RouteType::drop;
    const ViaList& list = listOf(*row);
    for (const auto* const vias : {&list.vias, &list.dead}) {
      for (const Via& via : *vias) {
        const auto hop = via.hasGateway() ? via.hop : Kesh::IpGenAddr();
        route->via.insertOrAssign({hop, via.intfId, Kesh::MplsLabel(via.label), 0, {}, {}}, true);
      }
    }
    return route;
  }

 private:
  bool drops(const Row& row) const { return isDrop(row.type) || listOf(row).drops; }

  const RouteKind& kindOf(const Row& row) const {
    if (drops(row)) return dropRoute;
    if (row.type != RTN_UNICAST) return kindOfType(row.type);
    return kindOfUnicast(row.protocol, listOf(row).firstHop());
  }

  ViaLists& lists_;
};

} // namespace sources::kernel
