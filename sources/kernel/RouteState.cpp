#include "sources/kernel/RouteState.h"

#include "sources/SourceError.h"
#include "sources/kernel/HopTunnels.h"
#include "sources/kernel/ListedRoute.h"

#include <algorithm>
#include <span>

namespace sources::kernel {

namespace {

constexpr std::uint32_t inHardware = RTM_F_OFFLOAD | RTM_F_TRAP;

template <class Row>
bool isOffloaded(const Row& row) {
  return row.type == RTN_UNICAST && row.flags & inHardware;
}

/// What the hardware has of a table: where it forwards any unicast route, it should all of them.
class Hardware {
 public:
  template <class Row>
  explicit Hardware(std::span<const Row> table)
      : forwards_(std::ranges::any_of(table, isOffloaded<Row>)) {}

  template <class Row>
  bool lacks(const Row& row) const {
    return (row.flags & RTM_F_OFFLOAD_FAILED) ||
           (forwards_ && row.type == RTN_UNICAST && !isOffloaded(row));
  }

 private:
  bool forwards_;
};

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

  Filler(ViaLists& lists, const Vrfs& vrfs, state::DeviceBuilder& builder)
      : reader_(lists), vrfs_(vrfs), builder_(builder) {}

  /// Marks the via lists of the routes that will be listed.
  void markUsed(std::span<const Row> rows) {
    forEachPrefix(rows, [&](std::span<const Row> same) {
      const Row* const row = reader_.forwarding(same);
      if (!row) return;
      ViaList& list = reader_.listOf(*row);
      if (list.vias.size() > Vanta::Fib::Fec::maxVias) tooManyVias(*row, list.vias.size());
      ++list.routes;
    });
  }

  void fill(std::span<const Row> rows, bool configured) {
    forEachVrf(rows, [&](std::span<const Row> ofVrf) {
      auto* const table = vrfs_.tables(ofVrf[0].table).*Family::routes;
      table->reserve(ofVrf.size());
      const Hardware hardware(ofVrf);
      forEachPrefix(ofVrf, [&](std::span<const Row> same) {
        if (configured) configure(same);
        const Row* const row = reader_.forwarding(same);
        if (!row) return;
        table->insert(reader_.routeOf(*row));
        if (hardware.lacks(*row)) builder_.hardwareUnprogrammed(row->prefix, vrfId(*row));
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

  Vrf::VrfIdMap::VrfId vrfId(const Row& row) const { return vrfs_.vrf(row.table).id; }

  void configure(std::span<const Row> same) {
    auto route = reader_.configured(same);
    if (!route) return;
    const Routing::RouteKey key = route->key;
    (vrfs_.vrf(same[0].table).*Family::routingConfig)->route.insertOrAssign(key, std::move(route));
  }

  const RowReader<Family> reader_;
  const Vrfs& vrfs_;
  state::DeviceBuilder& builder_;
};

} // namespace

ViaLists fillRoutes(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                    FecNumbers& numbers, state::DeviceBuilder& builder) {
  ViaLists lists(kernel, interfaces);
  Filler<Ip4> filler(lists, vrfs, builder);
  Filler<Ip6> filler6(lists, vrfs, builder);
  const std::span<const RouteRow<Ip4>> routes(kernel.routes);
  const std::span<const RouteRow<Ip6>> routes6(kernel.routes6);
  filler.markUsed(routes);
  filler6.markUsed(routes6);
  enterHopTunnels(lists.used(), kernel, interfaces, builder);
  lists.enterFecs(numbers, builder);
  filler.fill(routes, kernel.configured);
  filler6.fill(routes6, kernel.configured);
  return lists;
}

} // namespace sources::kernel
