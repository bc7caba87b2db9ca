// Deletions from configured routes in the middle of a walk.
#include "state/RoutingConfig.h"

#include <gtest/gtest.h>

namespace {

Routing::Via viaOf(std::uint32_t host) {
  Routing::Via via;
  via.hop = Kesh::IpAddr::fromHost(host);
  return via;
}

Routing::RouteKey keyOf(std::uint32_t network) { return {Kesh::pfx(network << 8, 24), 1}; }

/// Walks a collection and deletes every second member; returns how many members were visited.
template <class Collection, class Delete>
int deleteEverySecond(const Collection& collection, Delete&& del) {
  int visited = 0;
  for (auto at = collection.cursor(); at; at.next()) {
    if (visited++ % 2 == 1) del(at);
  }
  return visited;
}

TEST(RouteList, WalksOnBehindADeletedRoute) {
  Routing::ConfigGen config;
  for (std::uint32_t i = 0; i < 100; ++i) {
    config.route.insertOrAssign(keyOf(i), Lumo::newEntity<Routing::Route>(keyOf(i)));
  }
  EXPECT_EQ(deleteEverySecond(config.route, [&](const auto& at) { config.routeDel(at); }), 100);
  EXPECT_EQ(config.route.size(), 50u);
  EXPECT_TRUE(config.route.find(keyOf(98)));
  EXPECT_FALSE(config.route.find(keyOf(99)));
}

TEST(Route, DeletesAViaAndItsNameApart) {
  Routing::Route route(keyOf(1));
  for (std::uint32_t i = 0; i < 10; ++i) {
    route.via.insertOrAssign(viaOf(i), true);
    route.viaNextHopName.insertOrAssign(viaOf(i), "uplink");
    route.bfdTracked.insertOrAssign(viaOf(i), true);
  }
  EXPECT_EQ(deleteEverySecond(route.via, [&](const auto& at) { route.viaDel(at); }), 10);
  EXPECT_EQ(route.via.size(), 5u);
  EXPECT_EQ(route.viaNextHopName.size(), 10u);
  deleteEverySecond(route.viaNextHopName, [&](const auto& at) { route.viaNextHopNameDel(at); });
  EXPECT_EQ(route.viaNextHopName.size(), 5u);
  EXPECT_FALSE(route.viaNextHopName.find(viaOf(9)));
  EXPECT_EQ(route.bfdTracked.size(), 10u);
}

} // namespace
