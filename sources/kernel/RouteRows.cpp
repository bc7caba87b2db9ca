#include "sources/kernel/RouteRows.h"

#include "sources/kernel/Addresses.h"

#include <sys/socket.h>

namespace sources::kernel {

namespace {

bool isListed(const RouteMessage& route) {
  if (route.type == RTN_UNICAST) return true;
  const RouteKind& kind = kindOfType(route.type);
  return route.family == AF_INET ? kind.type4 != Type4::invalid : kind.type6 != Type6::invalid;
}

/// A single address on a link is its own next hop: it is there, and not this device.
void leadToItself(const RouteMessage& route, Hop& hop) {
  if (hop.gateway != Kesh::IpGenAddr() || hop.interface == 0) return;
  hop.gateway = route.destination;
  hop.onLink = 1;
}

std::uint32_t enterHops(const RouteMessage& route, HopLists& lists) {
  const auto family = route.destination.af();
  // The kernel may name the loopback interface for what it drops: nothing goes there. With a
  // nexthop object the route goes nevertheless.
  if (isDrop(route.type)) return lists.enter({family, route.nexthopId, {}, true}, {});
  // What the kernel made of an address goes with a word when the address goes.
  const bool own = route.protocol == RTPROT_KERNEL;
  const HopListHead head{family, route.nexthopId, own ? Kesh::IpGenAddr() : route.source};
  const bool isHost = route.type == RTN_UNICAST && route.length == addressBits(route.family);
  if (!isHost || route.nexthopId != 0) return lists.enter(head, route.hops);
  std::vector<Hop> hops = route.hops;
  for (Hop& hop : hops) leadToItself(route, hop);
  return lists.enter(head, hops);
}

/// Puts the rows of one table in order that the kernel gave in the order of addresses, and those of
/// one address in their order already, or nearly. What begins at an address stands ahead of what is
/// inside it and waits for its end, the widest prefix longest. The order among equals stays.
template <class Row>
void orderTable(std::span<Row> rows) {
  std::vector<Row> waiting, same;
  auto out = rows.begin();
  for (auto at = rows.begin(); at != rows.end();) {
    const auto end = std::find_if(at, rows.end(), [&](const Row& row) {
      return row.prefix.address() != at->prefix.address();
    });
    same.assign(at, end);
    at = end;
    if (!std::ranges::is_sorted(same, isBefore<Row>)) std::ranges::stable_sort(same, isBefore<Row>);
    for (; !waiting.empty() && !isBefore(same.back(), waiting.back()); waiting.pop_back()) {
      *out++ = waiting.back();
    }
    waiting.insert(waiting.end(), same.rbegin(), same.rend());
  }
  std::ranges::reverse_copy(waiting, out);
}

bool isKernelsTwin(const auto& row, const auto& winner) {
  return row.protocol == RTPROT_KERNEL && winner.table == RT_TABLE_LOCAL;
}

} // namespace

bool isRow(const RouteMessage& route) {
  return !(route.flags & RTM_F_CLONED) && route.sourceLength == 0 && isListed(route);
}

template <class Family>
RouteRow<Family> rowOf(const RouteMessage& route, HopLists& lists) {
  return {Family::prefix(route.destination, route.length),
          route.table,
          route.metric,
          route.flags,
          enterHops(route, lists),
          route.type,
          route.protocol,
          route.tos};
}

template <class Family>
void putInOrder(std::vector<RouteRow<Family>>& rows) {
  using Row = RouteRow<Family>;
  if (std::ranges::is_sorted(rows, isBefore<Row>)) return; // as IPv6 routes come
  auto begin = rows.begin();
  while (begin != rows.end()) {
    const auto isElsewhere = [&](const Row& row) { return row.table != begin->table; };
    const auto end = std::find_if(begin, rows.end(), isElsewhere);
    orderTable(std::span<Row>(begin, end));
    std::inplace_merge(rows.begin(), begin, end, isBefore<Row>);
    begin = end;
  }
  if (!std::ranges::is_sorted(rows, isBefore<Row>)) std::ranges::stable_sort(rows, isBefore<Row>);
}

template <class Family>
std::uint64_t hiddenRoutes(std::span<const RouteRow<Family>> same) {
  if (same.empty() || Family::isOnEveryLink(same[0].prefix)) return 0;
  const std::size_t shown = same[0].tos == 0 ? 1 : 0;
  return static_cast<std::uint64_t>(std::ranges::count_if(
      same.subspan(shown), [&](const auto& row) { return !isKernelsTwin(row, same[0]); }));
}

template RouteRow<Ip4> rowOf(const RouteMessage&, HopLists&);
template RouteRow<Ip6> rowOf(const RouteMessage&, HopLists&);
template void putInOrder<Ip4>(std::vector<RouteRow<Ip4>>&);
template void putInOrder<Ip6>(std::vector<RouteRow<Ip6>>&);
template std::uint64_t hiddenRoutes<Ip4>(std::span<const RouteRow<Ip4>>);
template std::uint64_t hiddenRoutes<Ip6>(std::span<const RouteRow<Ip6>>);

} // namespace sources::kernel
