// The counts of one pass over a route table. They are plain arrays on the stack, so that a route
// costs additions alone: the collections by key are touched when the pass is over.
#pragma once

#include "lumo/Assert.h"
#include "rova/core/Family.h"
#include "rova/core/Trace.h"

#include <cstdint>

namespace Rova {

template <class RouteType, RouteType lastType, int longestLength>
struct BaseRouteCounters {
  static constexpr std::uint32_t types = static_cast<std::uint32_t>(lastType) + 1;
  static constexpr std::uint32_t lengths = longestLength + 1;

  static constexpr bool counts(RouteType type) { return type <= lastType; }

  /// Counts a route of a type that `counts`.
  void incrementRoute(RouteType type, int length) {
    const auto number = static_cast<std::uint32_t>(type);
    ROVA_TRACE(1, "Incrementing " << number << " of " << types << " of length " << length);
    LUMO_ASSERT(0 <= length && length <= longestLength, "a route has a prefix of its family");
    ++byType[number];
    ++byLength[length];
    ++total;
  }

  std::uint32_t byType[types] = {};
  std::uint32_t byLength[lengths] = {};
  std::uint32_t total = 0;
  // Sums over some of the types, no routes of their own.
  std::uint32_t staticNonPersistent = 0;
  std::uint32_t staticPersistent = 0;
  std::uint32_t ospf = 0;
  std::uint32_t bgp = 0;
  std::uint32_t isis = 0;
};

template <class Family>
using RouteCounters =
    BaseRouteCounters<typename Family::RouteType, Family::lastRouteType, Family::hostLength>;
using Route4Counters = RouteCounters<Ip4Family>;
using Route6Counters = RouteCounters<Ip6Family>;

static_assert(Route4Counters::types == 37 && Route6Counters::types == 22,
              "how many types a summary counts is part of the interface");

} // namespace Rova
