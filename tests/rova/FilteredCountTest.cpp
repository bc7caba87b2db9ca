// The forecast of what the printing stage refuses, and the count of what the selection refused.
#include "support/Device.h"

#include "rova/route/Selection.h"

namespace {

using namespace support;
using Type = Rova::Ip6Family::RouteType;

constexpr const char* prefix = "2001:db8::/32";
constexpr const char* hop = "fe80::1";

struct Case {
  const char* what;
  std::vector<Via> vias;
  Query query;
  bool filtered;
};

TEST(IsRouteFilteredTest, ForetellsThePrintingStage) {
  const std::vector<Via> none,
      one = {via(hop, "Ethernet1")}, two = {via(hop, "Ethernet1"), via(hop, "Ethernet2")},
      evpn = {via(hop, "DynamicTunnel:6.1")},
      twoEvpn = {via(hop, "DynamicTunnel:6.1"), via(hop, "DynamicTunnel:6.2")};
  const Case cases[] = {
      {"one via", one, {}, false},
      {"the protocol", one, {.protocol = "S"}, false},
      {"another protocol", one, {.protocol = "B"}, true},
      {"no vias", none, {}, false},
      {"no vias with an interface", none, {.interface = "Ethernet1"}, true},
      {"an interface without the flag", one, {.interface = "Ethernet2"}, false},
      {"the interface", one, {.interface = "Ethernet1", .byInterface = true}, false},
      {"another interface", one, {.interface = "Ethernet2", .byInterface = true}, true},
      {"the flag without an interface", one, {.byInterface = true}, true},
      {"several vias", two, {}, false},
      {"several vias, the flag alone", two, {.byInterface = true}, true},
      {"one of several", two, {.interface = "Ethernet2", .byInterface = true}, false},
      {"none of several", two, {.interface = "Ethernet3", .byInterface = true}, true},
      {"an EVPN via has no interface",
       evpn,
       {.interface = "DynamicTunnel:6.1", .byInterface = true},
       true},
      {"nor have several", twoEvpn, {.interface = "DynamicTunnel:6.2", .byInterface = true}, true},
      {"an EVPN via without the flag", evpn, {}, false},
  };
  for (const Case& expected : cases) {
    Device device;
    device.route(prefix, Type::staticRoute, device.fec(expected.vias));
    const auto sorter = openSorter<Rova::Ip6Family>(device, expected.query);
    ASSERT_EQ(sorter->sortedRoutes(), 1u) << expected.what;
    const auto& route = sorter->sortedRouteMap().begin()->second;
    EXPECT_EQ(Rova::isRouteFiltered(*sorter, route), expected.filtered) << expected.what;
    EXPECT_EQ(Rova::getFilteredRoutesCount(*sorter), expected.filtered ? 1u : 0u) << expected.what;
  }
}

TEST(IsRouteFilteredTest, LooksAtNoViaOfRoutesThatArePrintedWithoutOne) {
  Device device;
  device.route(prefix, Type::nexthopGroup, FecId()); // refused: it has no captured FEC
  EXPECT_EQ(Rova::getFilteredRoutesCount(*openSorter<Rova::Ip6Family>(device)), 1u);
  device.interface("Loopback0", "2001:db8::1/128");
  device.route("2001:db8::1/128", Type::receive, device.fec({via("::", "")}));
  const auto sorter = openSorter<Rova::Ip6Family>(device);
  ASSERT_EQ(sorter->sortedRoutes(), 2u);
  EXPECT_EQ(Rova::getFilteredRoutesCount(*sorter), 1u) << "a receive route need not be printable";
}

TEST(GetFilteredRoutesCountTest, IsZeroForIp4WhateverTheFilters) {
  Device device;
  device.route("10.0.0.0/8", Routing::Fib::RouteType::staticRoute,
               device.fec({via("10.0.0.1", "Ethernet1")}));
  const auto sorter =
      openSorter<Rova::Ip4Family>(device, {.protocol = "B", .interface = "Ethernet9"});
  EXPECT_EQ(Rova::getFilteredRoutesCount(*sorter), 0u);
}

TEST(GetInternalFilteredRoutesCountTest, FollowsTheCasesOfTheSelection) {
  Device device;
  const auto fec = device.fec({via(hop, "Ethernet1")});
  device.route("2001:db8::/32", Type::staticRoute, fec);
  device.route("2001:db8:1::/48", Type::attached, fec);
  device.route("2001:db8:1:1::/64", Type::martian, fec);
  device.route("2001:db9::/32", Type::staticRoute, fec);
  device.route("::/0", Type::attached, fec);
  const struct {
    Query query;
    std::uint32_t count;
  } cases[] = {
      {{}, 3}, // both attached, the martian
      {{.detail = true}, 2},
      {{.prefix = "2001:db8::/32", .longerPrefixes = true}, 4}, // two outside, two refused
      {{.prefix = "2001:db8::/32"}, 0},                         // kept at once
      {{.prefix = "2001:db8:1:1::1/128"}, 2},                   // two refused on the way
      {{.prefix = "2001:db8:1:1::/64"}, 2},
      {{.prefix = "2001:dba::/32"}, 1}, // the default route, and the end
      {{.prefix = "::/0"}, 1},
  };
  for (const auto& [query, count] : cases) {
    const auto sorter = openSorter<Rova::Ip6Family>(device, query);
    const int before = sorter->printCount();
    EXPECT_EQ(Rova::getInternalFilteredRoutesCount(*sorter), count) << query.prefix;
    EXPECT_GE(sorter->printCount(), before);
  }
}

} // namespace
