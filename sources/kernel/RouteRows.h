// The kernel's routes as rows of a table; small, since there are millions.
#pragma once

#include "sources/kernel/Family.h"
#include "sources/kernel/HopLists.h"
#include "sources/kernel/Routes.h"

#include <algorithm>
#include <span>

namespace sources::kernel {

template <class Family>
struct RouteRow {
  typename Family::Prefix prefix;
  std::uint32_t table;
  std::uint32_t metric;
  std::uint32_t flags;   ///< RTM_F_*
  std::uint32_t hopList; ///< its number in the `HopLists`
  std::uint8_t type;     ///< RTN_*
  std::uint8_t protocol; ///< RTPROT_*
  std::uint8_t tos;      ///< not 0 for a route that looks at the type of service too
};

/// Whether routes of that kind are rows: not cached copies, those that look at the source address
/// too, and those of a type that no listing shows.
bool isRow(const RouteMessage& route);

/// The row of a route that is one; enters its hops in `lists`.
template <class Family>
RouteRow<Family> rowOf(const RouteMessage& route, HopLists& lists);

/// The table that stands for a VRF: addresses of the default VRF are in the table `local`, its
/// other routes in `main`.
constexpr std::uint32_t vrfTable(std::uint32_t table) {
  return table == RT_TABLE_LOCAL ? std::uint32_t{RT_TABLE_MAIN} : table;
}

/// The order of tables: by VRF, then that of listings. Of the routes for one prefix in one VRF, the
/// first is the one that forwards: table `local` before `main`, routes for every type of service,
/// then the lower metric; among equals the kernel's own order.
template <class Row>
bool isBefore(const Row& a, const Row& b) {
  if (vrfTable(a.table) != vrfTable(b.table)) return vrfTable(a.table) < vrfTable(b.table);
  if (a.prefix < b.prefix) return true;
  if (b.prefix < a.prefix) return false;
  if (a.table != b.table) return a.table == RT_TABLE_LOCAL;
  return a.tos != b.tos ? a.tos < b.tos : a.metric < b.metric;
}

/// Puts rows in that order; in time linear to their number when they are in the order of a dump.
template <class Family>
void putInOrder(std::vector<RouteRow<Family>>& rows);

/// Calls `visit` with the run of rows of each prefix in each VRF.
template <class Row, class Visit>
void forEachPrefix(std::span<const Row> rows, Visit&& visit) {
  while (!rows.empty()) {
    const auto isSame = [&](const Row& row) {
      return vrfTable(row.table) == vrfTable(rows[0].table) && row.prefix == rows[0].prefix;
    };
    std::size_t count = 1;
    while (count < rows.size() && isSame(rows[count])) ++count;
    visit(rows.first(count));
    rows = rows.subspan(count);
  }
}

/// How many of the rows of one prefix lose against another of them, or look at the type of service.
/// Every interface has the link-local and multicast prefixes, and the kernel has a route of its own
/// to a local address in two tables: those are not counted.
template <class Family>
std::uint64_t hiddenRoutes(std::span<const RouteRow<Family>> same);

} // namespace sources::kernel
