#include "command/watch/WatchedLog.h"

#include <algorithm>

namespace command {

namespace {

using sources::database::LoggedChange;
using sources::database::What;

/// What a database has beside the things that lines of routes show.
constexpr std::string_view hidden[] = {
    "neighbour4",
    "neighbour6",
    "static_route",
    "route_list",
    "interface",
    "hidden_routes",
    "counter_key",
    "counter",
    "nhgConfig",
    "nhgHwStatus",
    "counter_snapshot",
    "unprogrammed_count4",
    "ipConfig",
    "ip6Config",
    "routeDistinguisherInputDir",
    "unprogrammed_count6",
};

/// What only the lines of one family show.
struct OfFamily {
  std::string_view name;
  int family;
};
constexpr OfFamily ofFamilies[] = {
    {"ipStatus", 4},      {"ip6Status", 6},     {"unprogrammed4", 4},
    {"unprogrammed6", 6}, {"kernel_error4", 4}, {"kernel_error6", 6},
};

const Kesh::Prefix& prefixOf(const LoggedChange& change, Kesh::Prefix) { return change.prefix; }
const Kesh::Ip6Prefix& prefixOf(const LoggedChange& change, Kesh::Ip6Prefix) {
  return change.prefix6;
}

} // namespace

template <class Prefix>
void WatchedLog<Prefix>::add(const LoggedChange& change) {
  const Stamp stamp{change.seq, change.time};
  if (!change.fec.isNull()) return addFec(change);
  if (change.what >= What::other) {
    touchesAll_ = touchesAll_ || change.what == What::everything || isShown(change.name);
    return;
  }
  if (change.family != parts_.family) return;
  const Prefix& prefix = prefixOf(change, Prefix());
  auto& routes = routes_[change.vrf];
  if (Touched* const known = routes.find(prefix)) {
    known->stamp = stamp;
  } else {
    routes.insertOrAssign(prefix, {prefix, stamp, change.what != What::entered});
  }
}

template <class Prefix>
void WatchedLog<Prefix>::addFec(const LoggedChange& change) {
  if (change.what == What::replaced) fecs_.insertOrAssign(change.fec, {change.seq, change.time});
  if (change.what == What::entered) return;
  touchesIp6Fecs_ = touchesIp6Fecs_ || Vanta::Fib::isV6FecId(change.fec);
}

template <class Prefix>
bool WatchedLog<Prefix>::isShown(std::string_view name) const {
  if (std::ranges::find(hidden, name) != std::end(hidden)) return false;
  if (name == "allIntfConfig") return parts_.descriptions;
  const auto* const of = std::ranges::find(ofFamilies, name, &OfFamily::name);
  return of == std::end(ofFamilies) || of->family == parts_.family;
}

template class WatchedLog<Kesh::Prefix>;
template class WatchedLog<Kesh::Ip6Prefix>;

} // namespace command
