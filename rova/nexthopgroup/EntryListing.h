// The entries of one nexthop group in its display.
#pragma once

#include "rova/core/Flush.h"
#include "rova/nexthopgroup/NexthopGroupHelper.h"

namespace Rova {

/// A group with what its display joins.
struct ShownGroup {
  const Routing::NexthopGroup::NexthopGroupConfigEntry& config;
  const Routing::Hardware::NexthopGroupAdj* adjacency; ///< null for one that is not programmed
  Routing::NexthopGroup::NexthopGroupId id;
  std::uint32_t size; ///< the number of entries

  bool autoSize() const { return config.size == 0; }
};

/// Prints the heading of the entries and each of them.
void printEntries(scrivo::Printer& printer, const NexthopGroupHelper& helper,
                  const ShownGroup& group);

} // namespace Rova
