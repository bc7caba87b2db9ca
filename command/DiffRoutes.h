// What differs between two listings of routes.
#pragma once

#include "command/DiffFields.h"
#include "rova/CliSupport.h"

#include <vector>

namespace command {

/// A route that two listings show differently; null where one does not show it.
template <class Family>
struct RouteChange {
  const typename Family::Route* from;
  const typename Family::Route* to;
};

/// The listings of one VRF before and after, and the routes that they show differently, in the
/// order of the listings. A VRF that is not there has no sorter.
template <class Family>
struct RouteDifference {
  Lumo::Ptr<Rova::Sorter<Family>> from, to;
  std::vector<RouteChange<Family>> changes = {};
};

/// Finds the changes between the loaded sorters. What is compared is what a listing shows, in JSON,
/// which numbers of the state behind it are no part of.
template <class Family>
void findChanges(RouteDifference<Family>& difference, const IgnoredFields& ignored);

} // namespace command
