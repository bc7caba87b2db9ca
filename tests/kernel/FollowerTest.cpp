// What a follower makes of a kernel that changes while it is read.
#include "kernel/PlayedKernel.h"

namespace kernel_test {
namespace {

TEST_F(FollowerTest, WhatStaysIsDumpedOnce) {
  kernel.scripts["IPv4 routes"] = {{R{"10.0.0.0", 8}}};
  EXPECT_EQ(read(), (Routes{{"default 10.0.0.0/8", "static [1/0] | eth1"}}));
  EXPECT_EQ(kernel.dumps, "interfaces; addresses; nexthop objects; IPv4 routes; IPv6 routes; ");
  EXPECT_EQ(moved, std::vector<std::string>());
}

TEST_F(FollowerTest, NotificationsAreNewerThanWhatADumpShows) {
  const Step early = R{"11.0.0.0", 8}, late = R{"12.0.0.0", 8}, stays = R{"13.0.0.0", 8};
  kernel.scripts["IPv4 routes"] = {
      {early, told(RTM_DELROUTE, early), told(RTM_NEWROUTE, late), stays},
      {late, stays},
  };
  EXPECT_EQ(read(), (Routes{{"default 12.0.0.0/8", "static [1/0] | eth1"},
                            {"default 13.0.0.0/8", "static [1/0] | eth1"}}));
  EXPECT_EQ(moved, std::vector<std::string>());
}

TEST_F(FollowerTest, WhatADumpLostIsFoundByFurtherOnes) {
  const Step lost = R{"fd01::", 64}, moving = R{"fd02::", 64};
  kernel.scripts["IPv6 routes"] = {
      {told(RTM_NEWROUTE, moving)},               // lacks one that is there
      {lost, moving, told(RTM_NEWROUTE, moving)}, // brings it: who knows what else is missing
      {moving, told(RTM_NEWROUTE, moving)},       // loses it again, which proves nothing
  };
  EXPECT_EQ(read().size(), 2u);
  EXPECT_EQ(moved, std::vector<std::string>());
  EXPECT_TRUE(kernel.dumps.ends_with("IPv6 routes; IPv6 routes; IPv6 routes; ")) << kernel.dumps;
}

TEST_F(FollowerTest, WhatAQuietDumpLacksIsGone) {
  const Step gone = R{"fd01::", 64}, stays = R{"fd02::", 64};
  kernel.scripts["IPv6 routes"] = {{gone, told(RTM_NEWROUTE, stays)}, {stays}};
  EXPECT_EQ(read(), (Routes{{"default fd02::/64", "static [1/0] | eth1"}}));
  kernel.interrupted = true; // the kernel says that it is not quiet
  kernel.scripts["IPv6 routes"] = {{gone}, {stays}, {stays}};
  EXPECT_EQ(read().size(), 2u);
}

TEST_F(FollowerTest, PatienceEndsAndSaysWhatMoved) {
  auto& scripts = kernel.scripts["IPv6 routes"];
  for (int i = 0; i < 100; ++i) { // each dump brings something that was never told of
    const std::string prefix = "fd01:0:0:" + std::to_string(i) + "::";
    scripts.push_back({R{prefix.c_str(), 64}, told(RTM_NEWROUTE, R{"fd02::", 64})});
  }
  kernel.scripts["IPv4 routes"] = {{R{"10.0.0.0", 8}}};
  const auto begin = kernel.now;
  EXPECT_GT(read().size(), 10u);
  EXPECT_EQ(moved, std::vector<std::string>{"IPv6 routes"});
  EXPECT_LE(kernel.now - begin, milliseconds(500 + 2000 + 100)) << "a dump takes 100";
}

TEST_F(FollowerTest, LostNotificationsHaveEverythingDumpedAgain) {
  kernel.losesOnce = true;
  kernel.scripts["IPv4 routes"] = {{R{"10.0.0.0", 8}}};
  EXPECT_EQ(read().size(), 1u);
  EXPECT_EQ(moved, std::vector<std::string>());
  kernel.scripts["IPv4 routes"] = {{told(RTM_NEWROUTE, R{"11.0.0.0", 8})}};
  kernel.dumps.clear();
  Follower follower(kernel, needs, [this] { return kernel.now; });
  follower.read(milliseconds(0));
  EXPECT_EQ(follower.moved(), std::vector<std::string>{"IPv4 routes"});
}

/// What was lost may have been the end of a route, and a dump amid changes proves nothing.
TEST_F(FollowerTest, AfterALossOnlyAQuietDumpIsWhole) {
  const Step stays = R{"10.0.0.0", 8}, gone = R{"11.0.0.0", 8}, moving = R{"12.0.0.0", 8};
  auto& scripts = kernel.scripts["IPv4 routes"];
  scripts = {{stays, gone}};
  Follower follower(kernel, needs, [this] { return kernel.now; });
  follower.read(milliseconds(500));
  kernel.losesOnce = true;
  EXPECT_TRUE(follower.listen().lost);
  const Step moves = told(RTM_NEWROUTE, moving);
  scripts = {{stays, moves}, {stays, moves}, {stays, moves}, {stays, moves}, {stays, moves}};
  follower.read(milliseconds(300));
  EXPECT_EQ(follower.moved(), std::vector<std::string>{"IPv4 routes"});
  const auto shown = [&] {
    Routes routes;
    follower.show([&](KernelState& state) { routes = showRoutes(makeDevice(state)); });
    return routes;
  };
  EXPECT_TRUE(shown().contains("default 11.0.0.0/8"));
  scripts = {{stays, moving}};
  follower.read(milliseconds(300));
  EXPECT_EQ(follower.moved(), std::vector<std::string>());
  EXPECT_EQ(shown(), (Routes{{"default 10.0.0.0/8", "static [1/0] | eth1"},
                             {"default 12.0.0.0/8", "static [1/0] | eth1"}}));
}

TEST_F(FollowerTest, NeedsDecideWhatIsAsked) {
  kernel.scripts["interfaces"].front().push_back(link(3, "red"));
  const struct {
    const char* what;
    sources::Needs needs;
    const char* dumps;
  } cases[] = {
      {"IPv4 routes of the default VRF",
       {.ip6 = false, .neighbours = false, .nexthopGroups = false, .vrf = "default"},
       "interfaces; addresses; nexthop objects; IPv4 routes 254; IPv4 routes 255; "},
      {"IPv6 routes and neighbours of a plain table",
       {.ip4 = false, .nexthopGroups = false, .vrf = "table-7"},
       "interfaces; addresses; neighbours; nexthop objects; IPv6 routes 7; "},
      {"nexthop groups", {.routes = false}, "interfaces; addresses; neighbours; nexthop objects; "},
      {"a check",
       {.routes = false, .neighbours = false, .nexthopGroups = false},
       "interfaces; addresses; "},
      {"a VRF that nobody knows",
       {.ip6 = false, .neighbours = false, .nexthopGroups = false, .vrf = "table-07"},
       "interfaces; addresses; nexthop objects; IPv4 routes; "},
  };
  for (const auto& one : cases) {
    needs = one.needs;
    kernel.dumps.clear();
    read();
    EXPECT_EQ(kernel.dumps, one.dumps) << one.what;
  }
}

/// A vrf device of that table.
Step vrf(int index, const char* name, std::uint32_t table) {
  Step made = link(index, name);
  made.message.add(IFLA_LINKINFO, Message()
                                      .add(IFLA_INFO_KIND, text("vrf"))
                                      .add(IFLA_INFO_DATA, Message().add(IFLA_VRF_TABLE, table)));
  return made;
}

/// A name leads to one table only where no device could stand for another one of that name.
TEST_F(FollowerTest, OneTableIsAskedForWhereItIsKnown) {
  const struct {
    std::vector<Step> devices;
    const char* vrf;
    const char* routes;
  } cases[] = {
      {{vrf(3, "red", 10)}, "red", "IPv4 routes 10; "},
      {{vrf(3, "red", 10)}, "table-7", "IPv4 routes 7; "},
      {{vrf(3, "red", 10)}, "table-10", "IPv4 routes; "},
      {{vrf(3, "red", 10), vrf(4, "red2", 10)}, "red", "IPv4 routes; "},
      {{vrf(3, "red", 10), vrf(4, "default", 20)}, "red", "IPv4 routes; "},
      {{vrf(3, "red", 10), vrf(4, "table-7", 20)}, "table-7", "IPv4 routes; "},
      {{vrf(3, "red", RT_TABLE_MAIN)}, "red", "IPv4 routes; "},
  };
  for (const auto& [devices, name, routes] : cases) {
    kernel.scripts["interfaces"] = {devices};
    needs = {.ip6 = false, .neighbours = false, .nexthopGroups = false, .vrf = name};
    kernel.dumps.clear();
    read();
    EXPECT_EQ(kernel.dumps, std::string("interfaces; addresses; nexthop objects; ") + routes);
  }
}

} // namespace
} // namespace kernel_test
