// Records for the tests of tables: routes, which have one size, and FECs, which have any.
#pragma once

#include "state/Fec.h"
#include "state/Route.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace tables {

using Kesh::Prefix;
using Vanta::Fib::Fec;
using Vanta::Fib::FecId;
using Vanta::Fib::Route;
using Vanta::Fib::Via;

using support::messageOf;
using RouteTable = Vanta::VantaBase<Prefix, Route>;
using FecTable = Vanta::VantaBase<FecId, Fec>;
using RouteView = Vanta::VantaMap<Prefix, Route>;

inline Prefix prefix(const char* text) { return Prefix::parse(text).value(); }

inline Route route(const char* text, std::uint32_t metric = 0) {
  Route route;
  route.key = prefix(text);
  route.metric = metric;
  route.fecId = FecId(7);
  return route;
}

/// Six routes in no order; `sortedTexts` are their keys as listings have them.
inline std::vector<Route> someRoutes() {
  return {route("10.0.0.0/8", 1), route("0.0.0.0/0", 2),  route("10.1.0.0/16", 3),
          route("11.0.0.0/8", 4), route("9.0.0.1/32", 5), route("10.1.1.0/24", 6)};
}
inline const std::vector<std::string> sortedTexts = {"9.0.0.1/32", "10.1.1.0/24", "10.1.0.0/16",
                                                     "10.0.0.0/8", "11.0.0.0/8",  "0.0.0.0/0"};

/// The keys that a walk yields from where it stands.
inline std::vector<std::string> rest(RouteView::IteratorConst it) {
  std::vector<std::string> keys;
  for (; it; it.next()) keys.push_back(it.value().key.stringValue().str());
  return keys;
}
inline std::vector<std::string> walked(const RouteView& view) {
  return rest(RouteView::IteratorConst(view));
}
inline std::vector<std::string> walkedFrom(const RouteView& view, const char* start) {
  return rest(RouteView::IteratorConst(view, prefix(start)));
}

} // namespace tables
