// What a route listing was asked for.
#pragma once

#include "command/grammar/Parsed.h"
#include "kesh/Prefix.h"

#include <optional>
#include <string>

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
  std::string protocol; ///< a protocol code
  std::optional<std::string> interface;
};

/// The query of a command over routes, but for what the displays of whole tables alone have: `host`
/// and `summary`.
template <class Prefix>
RouteQuery<Prefix> routeQuery(const grammar::Parsed& parsed);

} // namespace command
