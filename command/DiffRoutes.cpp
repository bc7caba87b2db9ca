#include "command/DiffRoutes.h"

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

bool differ(std::string_view from, std::string_view to, const IgnoredFields& ignored) {
  if (from == to) return false;
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

template <class Family>
void compare(RouteDifference<Family>& difference, const IgnoredFields& ignored) {
  difference.changes.clear();
  Walk<Family> from(difference.from), to(difference.to);
  const bool comparesLists = from.hasPolicies() && to.hasPolicies() && !ignored.has(policies);
  while (!from.isOver() || !to.isOver()) {
    const bool inFrom = !to.isAheadOf(from), inTo = !from.isAheadOf(to);
    const auto before = inFrom ? from.entry() : std::string_view();
    const auto after = inTo ? to.entry() : std::string_view();
    const bool hasLists = comparesLists && before == after && before.find(policies) != before.npos;
    if (differ(before, after, ignored) || (hasLists && from.text() != to.text())) {
      difference.changes.push_back(
          {before.empty() ? nullptr : &from.route(), after.empty() ? nullptr : &to.route()});
    }
    if (inFrom) from.next();
    if (inTo) to.next();
  }
}

} // namespace

/// Again where an IPv6 next hop was found on the way, behind a tunnel.
template <class Family>
void findChanges(RouteDifference<Family>& difference, const IgnoredFields& ignored) {
  bool wasWide;
  do {
    wasWide = isWide(difference);
    wideIs(difference, wasWide);
    compare(difference, ignored);
  } while (isWide(difference) != wasWide);
}

template void findChanges(RouteDifference<Rova::Ip4Family>&, const IgnoredFields&);
template void findChanges(RouteDifference<Rova::Ip6Family>&, const IgnoredFields&);

} // namespace command
