// The entries of one nexthop group in its display.
#pragma once

#include "rova/core/Flush.h"
#include "rova/nexthopgroup/NexthopGroupHelper.h"

#include <algorithm>

namespace Rova {

/// A group with what its display joins.
struct ShownGroup {
  const Routing::NexthopGroup::NexthopGroupConfigEntry& config;
  const Routing::Hardware::NexthopGroupAdj* adjacency; ///< null for one that is not programmed
  Routing::NexthopGroup::NexthopGroupId id;
  std::uint32_t size; ///< the number of entries that the group is to have

  bool autoSize() const { return config.size == 0; }
  /// The number of entries that it can have: a size beyond comes from a damaged state.
  std::uint32_t entries() const { return std::min(size, Routing::NexthopGroup::maxEntries); }
};

/// Prints the heading of the entries and each of them.
void printEntries(scrivo::Printer& printer, const NexthopGroupHelper& helper,
                  const ShownGroup& group);

} // namespace Rova
