// What differs between two listings of routes.
#pragma once

#include "command/diff/DiffFields.h"
#include "rova/CliSupport.h"

#include <optional>
#include <vector>

namespace command {

/// One of the listings: those routes of one VRF that were loaded, or none where there is no such
/// VRF.
template <class Family>
class DiffSide {
 public:
  using Sorter = Rova::Sorter<Family>;
  using Entries = Rova::RouteEntries<Family>;

  /// `sorter` may be null.
  explicit DiffSide(Lumo::Ptr<Sorter> sorter) : sorter_(std::move(sorter)) {
    if (!sorter_) return;
    model_ = std::make_unique<Entries>(*sorter_, scrivo::modelFormat);
    text_ = std::make_unique<Entries>(*sorter_, scrivo::textFormat);
  }

  /// The loaded routes; null for none.
  Sorter* sorter() const { return sorter_.ptr(); }
  /// What the listing has for a route of it, in JSON and as text: the same each time, where what a
  /// FEC shows can change with the first look of another object at it.
  Entries& model() const { return *model_; }
  Entries& text() const { return *text_; }

 private:
  Lumo::Ptr<Sorter> sorter_;
  std::unique_ptr<Entries> model_, text_;
};

/// A route that two listings show differently; null where one does not show it.
template <class Family>
struct RouteChange {
  const typename Family::Route* from;
  const typename Family::Route* to;
};

/// The listings of one VRF before and after, and the routes that they show differently, in the
/// order of the listings.
template <class Family>
struct RouteDifference {
  DiffSide<Family> from, to;
  std::vector<RouteChange<Family>> changes = {};
};

/// Finds the changes between two listings. What is compared is what they show, in JSON, which
/// numbers of the state behind it are no part of, and the segment lists of policies, which text
/// alone shows. Where one of them has the form for IPv6 next hops, the other one gets it too: it
/// differs in what JSON has of some routes.
template <class Family>
void findChanges(RouteDifference<Family>& difference, const IgnoredFields& ignored);

} // namespace command
