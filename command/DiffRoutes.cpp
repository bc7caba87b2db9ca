#include "command/DiffRoutes.h"

#include <optional>

namespace command {

namespace {

/// The walk over one of the listings; over nothing without a sorter.
template <class Family>
class Side {
 public:
  using Sorter = Rova::Sorter<Family>;

  explicit Side(const Lumo::Ptr<Sorter>& sorter) {
    if (!sorter) return;
    entries_.emplace(*sorter, scrivo::modelFormat);
    at_ = sorter->sortedRouteMap().begin();
    end_ = sorter->sortedRouteMap().end();
  }

  bool isOver() const { return at_ == end_; }
  /// Whether the listing is at a route that the other one does not have.
  bool isAheadOf(const Side& other) const {
    return !isOver() && (other.isOver() || at_->first < other.at_->first);
  }
  const typename Family::Route& route() const { return at_->second; }
  std::string_view entry() { return entries_->entry(route()); }
  void next() { ++at_; }

 private:
  using Place = decltype(std::declval<const Sorter&>().sortedRouteMap().begin());

  std::optional<Rova::RouteEntries<Family>> entries_;
  Place at_{}, end_{};
};

bool differ(std::string_view from, std::string_view to, const IgnoredFields& ignored) {
  if (from == to) return false;
  if (ignored.empty() || from.empty() || to.empty()) return true;
  return ignored.without(from) != ignored.without(to);
}

} // namespace

template <class Family>
void findChanges(RouteDifference<Family>& difference, const IgnoredFields& ignored) {
  Side<Family> from(difference.from), to(difference.to);
  while (!from.isOver() || !to.isOver()) {
    const bool inFrom = !to.isAheadOf(from), inTo = !from.isAheadOf(to);
    const auto before = inFrom ? from.entry() : std::string_view();
    const auto after = inTo ? to.entry() : std::string_view();
    if (differ(before, after, ignored)) {
      difference.changes.push_back(
          {before.empty() ? nullptr : &from.route(), after.empty() ? nullptr : &to.route()});
    }
    if (inFrom) from.next();
    if (inTo) to.next();
  }
}

template void findChanges(RouteDifference<Rova::Ip4Family>&, const IgnoredFields&);
template void findChanges(RouteDifference<Rova::Ip6Family>&, const IgnoredFields&);

} // namespace command
