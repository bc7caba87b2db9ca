// One route table that is watched, and a look at some of its routes.
#pragma once

#include "command/OpenRoutes.h"
#include "command/watch/ToldRoutes.h"

#include <memory>

namespace command {

template <class Family>
struct WatchedVrf {
  std::string name;
  ToldRoutes<typename Family::Prefix> shown{};
  /// Whether the listing has the lines of IPv6: a FEC of the IPv6 table changes the look of all.
  bool hasV6Nexthop = false;
};

template <class Family>
bool hasV6Nexthop(const Rova::Sorter<Family>& sorter) {
  if constexpr (Family::remembersV6Nexthops) {
    return sorter.hasV6Nexthop();
  } else {
    return false;
  }
}

/// Hands each route that the listing of a loaded sorter shows to `visit`, in the listing's order:
/// its prefix, and its entry in that format, which is valid for the call.
template <class Family, class Visit>
void forEachEntry(Rova::Sorter<Family>& sorter, OutputFormat format, Visit&& visit) {
  Rova::RouteEntries<Family> entries(sorter, format);
  for (const auto& [prefix, route] : sorter.sortedRouteMap()) {
    const std::string_view entry = entries.entry(route);
    if (!entry.empty()) visit(prefix, entry);
  }
}

/// Looks at single routes of a VRF, in the state that is held for the life of the object. It shows
/// them as the listing of what the query chooses does.
template <class Family>
class RouteLook {
 public:
  RouteLook(const state::DeviceState& device, const state::VrfState& vrf, QueryOf<Family> query,
            const Options& options, WatchedVrf<Family>& watched)
      : watched_(watched),
        sorter_(openRoutes<Family>(device, vrf, selectingOne(std::move(query)), options)),
        entries_(*sorter_, options.format) {
    if constexpr (Family::remembersV6Nexthops) sorter_->hasV6NexthopIs(watched.hasV6Nexthop);
  }

  WatchedVrf<Family>& watched() { return watched_; }
  std::string_view entryUnder(const typename Family::Prefix& prefix) {
    return entries_.entryUnder(prefix);
  }
  /// Whether all routes show in another way than when the table was looked at as a whole.
  bool changesAll() const { return hasV6Nexthop(*sorter_) != watched_.hasV6Nexthop; }

 private:
  /// One route at most, whatever there is: a million are not selected to look at one of them.
  static QueryOf<Family> selectingOne(QueryOf<Family> query) {
    query.prefix = typename Family::Prefix({}, Family::hostLength);
    query.longerPrefixes = true;
    return query;
  }

  WatchedVrf<Family>& watched_;
  Lumo::Ptr<Rova::Sorter<Family>> sorter_;
  Rova::RouteEntries<Family> entries_;
};

} // namespace command
