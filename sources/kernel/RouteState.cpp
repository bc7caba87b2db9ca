// Of the kernel's routes for one prefix in one VRF, the first in this order is the route that
// forwards: table `local` before `main`, then the lower metric, then the kernel's own order.
#include "sources/kernel/RouteState.h"

#include "sources/SourceError.h"
#include "sources/kernel/HopTunnels.h"

#include <algorithm>
#include <span>

namespace sources::kernel {

namespace {

constexpr std::uint32_t inHardware = RTM_F_OFFLOAD | RTM_F_TRAP;

template <class Row>
bool isBefore(const Row& a, const Row& b) {
  if (vrfTable(a.table) != vrfTable(b.table)) return vrfTable(a.table) < vrfTable(b.table);
  if (!(a.prefix == b.prefix)) return a.prefix < b.prefix;
  if (a.table != b.table) return a.table == RT_TABLE_LOCAL;
  return a.metric < b.metric;
}

template <class Row>
bool isSameRoute(const Row& a, const Row& b) {
  return vrfTable(a.table) == vrfTable(b.table) && a.prefix == b.prefix;
}

template <class Row>
bool isOffloaded(const Row& row) {
  return row.type == RTN_UNICAST && row.flags & inHardware;
}

/// Calls `visit` with the run of rows of each prefix in each VRF.
template <class Row, class Visit>
void forEachPrefix(std::span<const Row> rows, Visit&& visit) {
  while (!rows.empty()) {
    std::size_t count = 1;
    while (count < rows.size() && isSameRoute(rows[0], rows[count])) ++count;
    visit(rows.first(count));
    rows = rows.subspan(count);
  }
}

/// Calls `visit` with the run of rows of each VRF.
template <class Row, class Visit>
void forEachVrf(std::span<const Row> rows, Visit&& visit) {
  while (!rows.empty()) {
    const auto end = std::ranges::find_if(
        rows, [&](const Row& row) { return vrfTable(row.table) != vrfTable(rows[0].table); });
    const auto count = static_cast<std::size_t>(end - rows.begin());
    visit(rows.first(count));
    rows = rows.subspan(count);
  }
}

/// Fills the tables of one family.
template <class Family>
class Filler {
 public:
  using Row = RouteRow<Family>;

  Filler(ViaLists& lists, const Vrfs& vrfs, state::DeviceBuilder& builder, bool hardware)
      : lists_(lists), vrfs_(vrfs), builder_(builder), hardware_(hardware) {}

  /// Marks the via lists of the routes that will be listed.
  void markUsed(std::span<const Row> rows) {
    forEachPrefix(rows, [&](std::span<const Row> same) {
      ViaList& list = lists_.at(same[0].hopList);
      if (list.vias.size() > Vanta::Fib::Fec::maxVias) tooManyVias(same[0], list.vias.size());
      list.used = true;
    });
  }

  void fill(std::span<const Row> rows) {
    forEachVrf(rows, [&](std::span<const Row> ofVrf) {
      auto* const table = vrfs_.tables(ofVrf[0].table).*Family::routes;
      table->reserve(ofVrf.size());
      forEachPrefix(ofVrf, [&](std::span<const Row> same) {
        table->insert(routeOf(same[0]));
        markProgramming(same[0]);
        configure(same);
      });
    });
  }

 private:
  [[noreturn]] void tooManyVias(const Row& row, std::size_t count) const {
    throw SourceError("kernel route " + row.prefix.stringValue().str() + " of table " +
                      std::to_string(row.table) + " has " + std::to_string(count) +
                      " next hops: at most " + std::to_string(Vanta::Fib::Fec::maxVias) +
                      " can be shown; take some of them away");
  }

  bool drops(const Row& row) const { return isDrop(row.type) || lists_.at(row.hopList).drops; }

  const RouteKind& kindOf(const Row& row) const {
    if (drops(row)) return dropRoute;
    if (row.type != RTN_UNICAST) return kindOfType(row.type);
    return kindOfUnicast(row.protocol, lists_.at(row.hopList).hasGateway());
  }

  typename Family::Route routeOf(const Row& row) const {
    const RouteKind& kind = kindOf(row);
    typename Family::Route route;
    route.key = row.prefix;
    route.metric = row.metric;
    route.preferenceIs(kind.preference);
    route.routeType = kind.*Family::type;
    route.fecId = lists_.at(row.hopList).fecId;
    return route;
  }

  void markProgramming(const Row& row) {
    const bool missing = row.type == RTN_UNICAST && hardware_ && !isOffloaded(row);
    if (!missing && !(row.flags & RTM_F_OFFLOAD_FAILED)) return;
    builder_.hardwareUnprogrammed(row.prefix, vrfs_.vrf(row.table).id);
  }

  /// Enters the first of the routes that an administrator added, whether or not it forwards.
  void configure(std::span<const Row> same) {
    const auto row = std::ranges::find_if(same, [&](const Row& one) {
      return (one.protocol == RTPROT_STATIC || one.protocol == RTPROT_BOOT) &&
             (one.type == RTN_UNICAST || isDrop(one.type));
    });
    if (row == same.end()) return;
    const Routing::RouteKey key{row->prefix, 1};
    auto route = Lumo::newEntity<Routing::Route>(key);
    if (drops(*row)) route->routeType = Routing::RouteType::drop;
    for (const Via& via : lists_.at(row->hopList).vias) {
      route->via.insertOrAssign({via.hop, via.intfId, Kesh::MplsLabel(via.label), 0, {}, {}}, true);
    }
    (vrfs_.vrf(row->table).*Family::config)->route.insertOrAssign(key, std::move(route));
  }

  ViaLists& lists_;
  const Vrfs& vrfs_;
  state::DeviceBuilder& builder_;
  const bool hardware_;
};

} // namespace

void fillRoutes(KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                state::DeviceBuilder& builder) {
  std::ranges::stable_sort(kernel.routes, isBefore<RouteRow<Ip4>>);
  std::ranges::stable_sort(kernel.routes6, isBefore<RouteRow<Ip6>>);
  const bool hardware = std::ranges::any_of(kernel.routes, isOffloaded<RouteRow<Ip4>>) ||
                        std::ranges::any_of(kernel.routes6, isOffloaded<RouteRow<Ip6>>);
  ViaLists lists(kernel, interfaces);
  Filler<Ip4> filler(lists, vrfs, builder, hardware);
  Filler<Ip6> filler6(lists, vrfs, builder, hardware);
  filler.markUsed(kernel.routes);
  filler6.markUsed(kernel.routes6);
  enterHopTunnels(lists.used(), kernel, interfaces, builder);
  lists.enterFecs(builder);
  filler.fill(kernel.routes);
  filler6.fill(kernel.routes6);
}

} // namespace sources::kernel
