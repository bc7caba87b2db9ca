// What a follower makes of a kernel that changes while it is read. The kernel is played: each dump
// shows objects, between which things are notified.
#include "sources/kernel/Follower.h"
#include "kernel/Message.h"
#include "kernel/Shown.h"
#include "sources/kernel/Device.h"

#include <gtest/gtest.h>
#include <linux/if.h>
#include <linux/if_addr.h>
#include <linux/nexthop.h>

#include <deque>

namespace kernel_test {
namespace {

using namespace sources::kernel;
using std::chrono::milliseconds;

/// Something that happens: an object of a dump, or a notification.
struct Step {
  std::uint16_t told = 0; ///< the type of a notification; 0 for an object
  std::uint16_t flags = 0;
  Message message;
};

Step told(std::uint16_t type, Step object, std::uint16_t flags = 0) {
  return {type, flags, std::move(object.message)};
}

Step link(int index, const char* name, bool up = true) {
  ifinfomsg header{};
  header.ifi_index = index;
  header.ifi_flags = up ? IFF_UP | IFF_RUNNING | IFF_LOWER_UP : 0;
  return {0, 0, Message(header).add(IFLA_IFNAME, text(name))};
}

Step address(int interface, const char* own, std::uint8_t length) {
  const auto bytes = ip(own);
  ifaddrmsg header{};
  header.ifa_family = bytes.size() == 4 ? AF_INET : AF_INET6;
  header.ifa_prefixlen = length;
  header.ifa_index = static_cast<std::uint32_t>(interface);
  return {0, 0, Message(header).add(IFA_ADDRESS, bytes).add(IFA_LOCAL, bytes)};
}

Step nexthop(std::uint32_t id, int interface) {
  nhmsg header{};
  header.nh_family = AF_INET;
  return {0, 0,
          Message(header).add(NHA_ID, id).add(NHA_OIF, interface).add(NHA_GATEWAY, ip("10.0.0.9"))};
}

struct To {
  const char* gateway = nullptr;
  int interface = 1;
};

/// A static route of table main; its fields are set behind it.
struct RouteStep {
  const char* prefix;
  std::uint8_t length;
  std::vector<To> hops = {{}};
  std::uint32_t metric = 0;
  std::uint32_t nexthop = 0;
  const char* source = nullptr;
  std::uint8_t type = RTN_UNICAST;
  std::uint32_t table = RT_TABLE_MAIN;

  operator Step() const {
    const auto bytes = ip(prefix);
    rtmsg header{};
    header.rtm_family = bytes.size() == 4 ? AF_INET : AF_INET6;
    header.rtm_dst_len = length;
    header.rtm_type = type;
    header.rtm_protocol = RTPROT_STATIC;
    Message message(header);
    message.add(RTA_TABLE, table).add(RTA_DST, bytes).add(RTA_PRIORITY, metric);
    if (nexthop) message.add(RTA_NH_ID, nexthop);
    if (source) message.add(RTA_PREFSRC, ip(source));
    if (hops.size() > 1) {
      message.add(RTA_MULTIPATH, rows());
    } else if (!nexthop) {
      addHop(message, hops[0]);
      message.add(RTA_OIF, hops[0].interface);
    }
    return {0, 0, message};
  }

 private:
  static void addHop(Message& message, const To& hop) {
    if (hop.gateway) message.add(RTA_GATEWAY, ip(hop.gateway));
  }
  Message rows() const {
    Message all;
    for (const To& hop : hops) {
      rtnexthop header{};
      header.rtnh_ifindex = hop.interface;
      Message row(header);
      addHop(row, hop);
      row.bytes()[0] = static_cast<std::byte>(row.bytes().size()); // rtnh_len
      all.then(row);
    }
    return all;
  }
};
using R = RouteStep;

/// A kernel that plays scripts: for the tables by name, what each of their dumps shows. The last
/// script of a table serves all further dumps.
class PlayedKernel final : public Feed {
 public:
  using Script = std::vector<Step>;

  void follow(unsigned) override {}
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    now += milliseconds(100);
    dumps += std::string(request.what) +
             (request.attribute == RTA_TABLE ? " " + std::to_string(request.attributeValue) : "") +
             "; ";
    auto& script = scripts[request.what];
    if (script.empty()) return {};
    const Script steps = script.front();
    if (script.size() > 1) script.pop_front();
    for (const Step& step : steps) {
      if (step.told) {
        pending.push_back(step);
      } else {
        take(step.message.bytes());
      }
      if (!keepsOn()) return {true, false, false};
    }
    return {true, interrupted, true};
  }
  bool drain(const TakeNotification& take) override {
    for (const Step& step : std::exchange(pending, {})) {
      nlmsghdr header{};
      header.nlmsg_type = step.told;
      header.nlmsg_flags = step.flags;
      take(header, step.message.bytes());
    }
    return !std::exchange(losesOnce, false);
  }

  std::map<std::string, std::deque<Script>> scripts;
  std::vector<Step> pending;
  std::string dumps; ///< that were asked for
  bool losesOnce = false;
  bool interrupted = false;
  std::chrono::steady_clock::time_point now;
};

class FollowerTest : public testing::Test {
 protected:
  FollowerTest() {
    kernel.scripts["interfaces"] = {{link(1, "eth1"), link(2, "eth2")}};
    needs.neighbours = needs.nexthopGroups = false;
  }

  /// Reads; the routes that are there then.
  Routes read() {
    Follower follower(kernel, needs, [this] { return kernel.now; });
    follower.read(std::chrono::seconds(2));
    moved = follower.moved();
    return showRoutes(makeDevice(follower.take()));
  }
  /// The hops of 10.0.0.0/8 when these things are told of a table that has it through `before`. The
  /// further dump shows nothing, which proves nothing: something else moves.
  std::string after(PlayedKernel::Script before, const std::vector<Step>& events) {
    before.insert(before.end(), events.begin(), events.end());
    kernel.scripts["IPv4 routes"] = {before, {told(RTM_NEWROUTE, RouteStep{"99.0.0.0", 8})}};
    const auto routes = read();
    const auto found = routes.find("default 10.0.0.0/8");
    return found == routes.end() ? "none" : found->second.substr(found->second.find('|') + 2);
  }

  PlayedKernel kernel;
  sources::Needs needs;
  std::vector<std::string> moved;
};

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

/// Of routes that differ in their hops alone, the kernel's order decides.
TEST_F(FollowerTest, Ip4RoutesAmongTheirEquals) {
  const R a{"10.0.0.0", 8, {{"10.0.0.1"}}}, b{"10.0.0.0", 8, {{"10.0.0.2"}}},
      c{"10.0.0.0", 8, {{"10.0.0.3"}}};
  const R both{"10.0.0.0", 8, {{"10.0.0.1"}, {"10.0.0.2", 2}}};
  const struct {
    std::vector<Step> before, events;
    const char* shown;
  } cases[] = {
      {{a}, {told(RTM_NEWROUTE, b, NLM_F_CREATE | NLM_F_APPEND)}, "10.0.0.1 eth1"},
      {{a}, {told(RTM_NEWROUTE, b, NLM_F_CREATE)}, "10.0.0.2 eth1"},
      {{a}, {told(RTM_NEWROUTE, b, NLM_F_REPLACE), told(RTM_DELROUTE, a)}, "10.0.0.2 eth1"},
      {{a, b}, {told(RTM_NEWROUTE, c, NLM_F_REPLACE)}, "10.0.0.3 eth1"},
      {{a, b}, {told(RTM_DELROUTE, a)}, "10.0.0.2 eth1"},
      {{a}, {told(RTM_DELROUTE, a)}, "none"},
      {{a}, {told(RTM_DELROUTE, b)}, "10.0.0.1 eth1"},
      {{both}, {told(RTM_DELROUTE, both)}, "none"},
      {{both}, {told(RTM_NEWROUTE, both)}, "10.0.0.1 eth1 | 10.0.0.2 eth2"},
      {{}, {told(RTM_NEWROUTE, a), told(RTM_DELROUTE, a), told(RTM_NEWROUTE, b)}, "10.0.0.2 eth1"},
  };
  for (const auto& one : cases) EXPECT_EQ(after(one.before, one.events), one.shown) << one.shown;
}

/// The kernel joins routes through gateways to one; its messages tell of all of these, or of those
/// that go.
TEST_F(FollowerTest, Ip6RoutesAmongTheirEquals) {
  const R a{"fd00::", 64, {{"fe80::1"}}}, b{"fd00::", 64, {{"fe80::2"}}}, onLink{"fd00::", 64};
  const R both{"fd00::", 64, {{"fe80::1"}, {"fe80::2"}}};
  const R all{"fd00::", 64, {{"fe80::1"}, {"fe80::2"}, {"fe80::3"}}};
  const struct {
    std::vector<Step> steps;
    const char* shown;
  } cases[] = {
      {{a, told(RTM_NEWROUTE, both, NLM_F_APPEND)}, "| fe80::1 eth1 | fe80::2 eth1"},
      {{both, told(RTM_DELROUTE, a)}, "| fe80::2 eth1"},
      {{all, told(RTM_DELROUTE, a), told(RTM_DELROUTE, b)}, "| fe80::3 eth1"},
      {{all, told(RTM_DELROUTE, both)}, "| fe80::3 eth1"},
      {{both, told(RTM_DELROUTE, both)}, "none"},
      {{both, told(RTM_NEWROUTE, a, NLM_F_REPLACE)}, "| fe80::1 eth1"},
      {{onLink, told(RTM_NEWROUTE, a)}, "| eth1"},
      {{onLink, told(RTM_NEWROUTE, a), told(RTM_DELROUTE, onLink)}, "| fe80::1 eth1"},
  };
  for (const auto& one : cases) {
    kernel.scripts["IPv6 routes"] = {one.steps};
    const auto routes = read();
    const std::string shown = routes.empty() ? "none" : routes.begin()->second;
    EXPECT_TRUE(shown.ends_with(one.shown)) << shown << " for " << one.shown;
  }
}

/// What the kernel removes without a word of its own.
TEST_F(FollowerTest, RoutesGoWithWhatTheyNeed) {
  const R over1{"10.0.0.0", 8}, over2{"10.0.0.0", 8, {{nullptr, 2}}};
  const R overBoth{"10.0.0.0", 8, {{"10.0.0.1", 1}, {"10.0.0.2", 2}}};
  R own{"10.0.0.0", 8}, from{"10.0.0.0", 8}, overObject{"10.0.0.0", 8};
  own.type = RTN_LOCAL;
  from.source = "10.9.0.1";
  overObject.nexthop = 7;
  const Step down = told(RTM_NEWLINK, link(1, "eth1", false)),
             gone = told(RTM_DELLINK, link(1, "eth1"));
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1)}};
  kernel.scripts["addresses"] = {{address(1, "10.9.0.1", 24), address(2, "10.9.0.2", 24)}};
  const struct {
    const char* what;
    R route;
    std::vector<Step> events;
    const char* shown;
  } cases[] = {
      {"down", over1, {down}, "none"},
      {"deleted", over1, {gone}, "none"},
      {"another is down", over2, {down}, "eth2"},
      {"own addresses stay", own, {down}, "eth1"},
      {"own addresses go", own, {gone}, "none"},
      {"back again", over1, {down, told(RTM_NEWROUTE, over1)}, "eth1"},
      {"another hop is left", overBoth, {down}, "10.0.0.1 eth1 | 10.0.0.2 eth2"},
      {"address", from, {told(RTM_DELADDR, address(1, "10.9.0.1", 24))}, "none"},
      {"another address", from, {told(RTM_DELADDR, address(2, "10.9.0.2", 24))}, "eth1"},
      {"object", overObject, {told(RTM_DELNEXTHOP, nexthop(7, 1))}, "none"},
      {"object of an interface", overObject, {down}, "none"},
      {"another object", overObject, {told(RTM_DELNEXTHOP, nexthop(8, 1))}, "10.0.0.9 eth1"},
  };
  for (const auto& one : cases) EXPECT_EQ(after({one.route}, one.events), one.shown) << one.what;
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

} // namespace
} // namespace kernel_test
