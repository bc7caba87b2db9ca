// What a route listing was asked for.
#pragma once

#include "command/Words.h"
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

/// Reads the rest of the words; every part may stand once, in any order.
template <class Prefix>
RouteQuery<Prefix> parseRouteQuery(Words& words);

/// The protocol words, or those of IPv6 alone, separated by blanks.
std::string protocolWordList(bool ip6);

} // namespace command
