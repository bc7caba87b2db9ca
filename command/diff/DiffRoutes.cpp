#include "command/diff/DiffRoutes.h"

#include "command/diff/AlikeRoutes.h"

namespace command {

namespace {

/// The walk over one of the listings.
template <class Family>
class Walk {
 public:
  explicit Walk(const DiffSide<Family>& side) : side_(side) {
    if (!side.sorter()) return;
    at_ = side.sorter()->sortedRouteMap().begin();
    end_ = side.sorter()->sortedRouteMap().end();
  }

  bool isOver() const { return at_ == end_; }
  /// Whether it is at a route that the other listing does not have.
  bool isAheadOf(const Walk& other) const {
    return !isOver() && (other.isOver() || at_->first < other.at_->first);
  }
  const typename Family::Route& route() const { return at_->second; }
  std::string_view entry() const { return side_.model().entry(route()); }
  std::string_view text() const { return side_.text().entry(route()); }
  bool hasPolicies() const {
    return side_.sorter() && !side_.sorter()->srTePolicyStatus()->fecIdToPolicyKey.empty();
  }
  void next() { ++at_; }

 private:
  using Place = decltype(std::declval<const Rova::Sorter<Family>&>().sortedRouteMap().begin());

  const DiffSide<Family>& side_;
  Place at_{}, end_{};
};

constexpr std::string_view policies = "srTePolicy";

/// Whether two entries that are not alike differ in what is not left out.
bool differ(std::string_view from, std::string_view to, const IgnoredFields& ignored) {
  if (ignored.empty() || from.empty() || to.empty()) return true;
  return ignored.without(from) != ignored.without(to);
}

/// Whether one of the listings has the form for IPv6 next hops.
template <class Family>
bool isWide(const RouteDifference<Family>& difference) {
  const auto isSideWide = [](const DiffSide<Family>& side) {
    if constexpr (Family::remembersV6Nexthops)
      return side.sorter() && side.sorter()->hasV6Nexthop();
    return true;
  };
  return isSideWide(difference.from) || isSideWide(difference.to);
}

template <class Family>
void wideIs(const RouteDifference<Family>& difference, bool isWide) {
  if constexpr (Family::remembersV6Nexthops) {
    for (const auto* side : {&difference.from, &difference.to}) {
      if (side->sorter()) side->sorter()->hasV6NexthopIs(isWide);
    }
  }
}

/// One walk over both listings.
template <class Family>
class Comparison {
 public:
  Comparison(RouteDifference<Family>& difference, const IgnoredFields& ignored)
      : changes_(difference.changes),
        ignored_(ignored),
        from_(difference.from),
        to_(difference.to),
        alike_(difference.from.sorter(), difference.to.sorter()),
        comparesLists_(from_.hasPolicies() && to_.hasPolicies() && !ignored.has(policies)) {}

  void run() {
    changes_.clear();
    while (!from_.isOver() || !to_.isOver()) {
      const bool inFrom = !to_.isAheadOf(from_), inTo = !from_.isAheadOf(to_);
      if (inFrom && inTo) {
        compareBoth();
      } else if (inFrom) {
        if (!from_.entry().empty()) changes_.push_back({&from_.route(), nullptr});
      } else if (!to_.entry().empty()) {
        changes_.push_back({nullptr, &to_.route()});
      }
      if (inFrom) from_.next();
      if (inTo) to_.next();
    }
  }

 private:
  void compareBoth() {
    const auto &from = from_.route(), &to = to_.route();
    if (alike_.has(from, to)) return;
    const auto before = from_.entry(), after = to_.entry();
    const bool hasLists = comparesLists_ && before.find(policies) != before.npos;
    if (before == after && (!hasLists || from_.text() == to_.text())) {
      if (!before.empty()) alike_.enter(from, to);
    } else if (before == after || differ(before, after, ignored_)) {
      changes_.push_back({before.empty() ? nullptr : &from, after.empty() ? nullptr : &to});
    }
  }

  std::vector<RouteChange<Family>>& changes_;
  const IgnoredFields& ignored_;
  Walk<Family> from_, to_;
  AlikeRoutes<Family> alike_;
  const bool comparesLists_;
};

} // namespace

/// Again where an IPv6 next hop was found on the way, behind a tunnel.
template <class Family>
void findChanges(RouteDifference<Family>& difference, const IgnoredFields& ignored) {
  bool wasWide;
  do {
    wasWide = isWide(difference);
    wideIs(difference, wasWide);
    Comparison<Family>(difference, ignored).run();
  } while (isWide(difference) != wasWide);
}

template void findChanges(RouteDifference<Rova::Ip4Family>&, const IgnoredFields&);
template void findChanges(RouteDifference<Rova::Ip6Family>&, const IgnoredFields&);

} // namespace command
