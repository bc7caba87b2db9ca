// What a route listing was asked for.
#pragma once

#include "command/filter/Expression.h"
#include "command/grammar/Parsed.h"
#include "kesh/Prefix.h"

#include <optional>
#include <string>
#include <vector>

namespace command {

template <class Prefix>
struct RouteQuery {
  std::string vrf = "default"; ///< "all" for every VRF
  Prefix prefix = Prefix::nullPrefix();
  bool typedMask = false;
  bool host = false;    ///< the host route table, which has no other part of a query but the VRF
  bool summary = false; ///< counts of the whole table, which go with no other part but the VRF
  bool longerPrefixes = false;
  bool detail = false;
  std::vector<std::string> protocols; ///< their codes; none for all
  std::optional<filter::Expression> where = {};
  std::optional<std::string> interface;
};

/// The query of a command over routes, but for what the displays of whole tables alone have: `host`
/// and `summary`. Raises UsageError for an expression that cannot be understood.
template <class Prefix>
RouteQuery<Prefix> routeQuery(const grammar::Parsed& parsed);

} // namespace command
