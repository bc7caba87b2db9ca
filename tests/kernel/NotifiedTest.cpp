// What follows from what the kernel notifies.
#include "kernel/PlayedKernel.h"

namespace kernel_test {
namespace {

/// Of routes that differ in their hops alone, the kernel's order decides.
TEST_F(FollowerTest, Ip4RoutesAmongTheirEquals) {
  const R a{"10.0.0.0", 8, {{"10.0.0.1"}}}, b{"10.0.0.0", 8, {{"10.0.0.2"}}},
      c{"10.0.0.0", 8, {{"10.0.0.3"}}};
  const R both{"10.0.0.0", 8, {{"10.0.0.1"}, {"10.0.0.2", 2}}};
  R likeA = a;
  likeA.protocol = RTPROT_BGP;
  R overObject{"10.0.0.0", 8};
  overObject.nexthop = 7;
  R overObjectThatDrops = overObject;
  overObjectThatDrops.type = RTN_BLACKHOLE;
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1)}};
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
      {{a}, {told(RTM_NEWROUTE, likeA, NLM_F_APPEND), told(RTM_DELROUTE, a)}, "10.0.0.1 eth1"},
      {{a, overObject},
       {told(RTM_NEWROUTE, overObjectThatDrops, NLM_F_REPLACE),
        told(RTM_DELNEXTHOP, nexthop(7, 1))},
       "10.0.0.1 eth1"},
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
  const R toHost{"fd00::9", 128, {{"fe80::1"}}}, toHostOnLink{"fd00::9", 128};
  R advertised = a, advertisedToo = b, throws = onLink, overObject = onLink, ofBgp = a;
  ofBgp.protocol = RTPROT_BGP;
  advertised.protocol = advertisedToo.protocol = RTPROT_RA;
  throws.type = RTN_THROW;
  overObject.nexthop = 7;
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1)}};
  const struct {
    std::vector<Step> steps;
    const char* shown;
  } cases[] = {
      {{a, told(RTM_NEWROUTE, both, NLM_F_APPEND)}, "| fe80::1 eth1 | fe80::2 eth1"},
      {{ofBgp, told(RTM_NEWROUTE, both, NLM_F_APPEND)},
       "bgp [200/0] | fe80::1 eth1 | fe80::2 eth1"},
      {{both, told(RTM_DELROUTE, a)}, "| fe80::2 eth1"},
      {{all, told(RTM_DELROUTE, a), told(RTM_DELROUTE, b)}, "| fe80::3 eth1"},
      {{all, told(RTM_DELROUTE, both)}, "| fe80::3 eth1"},
      {{both, told(RTM_DELROUTE, both)}, "none"},
      {{both, told(RTM_NEWROUTE, a, NLM_F_REPLACE)}, "| fe80::1 eth1"},
      {{advertised, told(RTM_NEWROUTE, advertisedToo)}, "| fe80::1 eth1"},
      {{advertised, advertisedToo, told(RTM_DELROUTE, advertised)}, "| fe80::2 eth1"},
      {{throws, told(RTM_NEWROUTE, onLink)}, "drop [1/0]"},
      {{throws, told(RTM_NEWROUTE, onLink), told(RTM_DELROUTE, throws)}, "| eth1"},
      {{overObject, told(RTM_NEWROUTE, onLink)}, "| ::ffff:10.0.0.9 eth1"},
      {{overObject, told(RTM_NEWROUTE, onLink), told(RTM_DELROUTE, overObject)}, "| eth1"},
      {{onLink, told(RTM_NEWROUTE, a)}, "| eth1"},
      {{onLink, told(RTM_NEWROUTE, a), told(RTM_DELROUTE, onLink)}, "| fe80::1 eth1"},
      {{toHost, told(RTM_NEWROUTE, toHostOnLink)}, "| fe80::1 eth1"},
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
  R dropsOverObject = overObject;
  own.type = RTN_LOCAL;
  from.source = "10.9.0.1";
  overObject.nexthop = dropsOverObject.nexthop = 7;
  dropsOverObject.type = RTN_BLACKHOLE;
  const Step down = told(RTM_NEWLINK, link(1, "eth1", Works::down)),
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
      {"the only address of an interface",
       over2,
       {told(RTM_DELADDR, address(2, "10.9.0.2", 24))},
       "none"},
      {"one of two addresses of an interface",
       over2,
       {told(RTM_NEWADDR, address(2, "10.9.0.3", 24)),
        told(RTM_DELADDR, address(2, "10.9.0.2", 24))},
       "eth2"},
      {"the only address of an object's interface",
       overObject,
       {told(RTM_DELADDR, address(1, "10.9.0.1", 24))},
       "10.0.0.9 eth1"},
      {"another address", from, {told(RTM_DELADDR, address(2, "10.9.0.2", 24))}, "eth1"},
      {"object", overObject, {told(RTM_DELNEXTHOP, nexthop(7, 1))}, "none"},
      {"object of a route that drops",
       dropsOverObject,
       {told(RTM_DELNEXTHOP, nexthop(7, 1))},
       "none"},
      {"object of an interface", overObject, {down}, "none"},
      {"another object", overObject, {told(RTM_DELNEXTHOP, nexthop(8, 1))}, "10.0.0.9 eth1"},
  };
  for (const auto& one : cases) EXPECT_EQ(after({one.route}, one.events), one.shown) << one.what;
}

/// What a change may have taken away is read again: the route that the quiet second dump lacks.
TEST_F(FollowerTest, ChangesWhoseConsequencesNobodyTellsHaveRoutesReadAgain) {
  const R over1{"10.0.0.0", 8}, over2{"10.0.0.0", 8, {{nullptr, 2}}};
  const R overBoth{"10.0.0.0", 8, {{"10.0.0.1", 1}, {"10.0.0.2", 2}}};
  const R hasDead{"10.0.0.0", 8, {{"10.0.0.1", 1, true}, {"10.0.0.2", 2}}};
  const struct {
    const char* what;
    Works before, now; ///< of eth1
    R route;
    bool isReadAgain;
  } cases[] = {
      {"the carrier of its interface", Works::up, Works::withoutCarrier, over1, true},
      {"the carrier of another", Works::up, Works::withoutCarrier, over2, false},
      {"nothing", Works::up, Works::up, over1, false},
      {"one of its interfaces goes down", Works::up, Works::down, overBoth, true},
      {"a carrier is back, no hop waits for it", Works::withoutCarrier, Works::up, over1, false},
      {"the carrier of a hop that was dead is back", Works::withoutCarrier, Works::up, hasDead,
       true},
      {"the interface of a hop that was dead is up", Works::down, Works::up, hasDead, true},
  };
  for (const auto& one : cases) {
    kernel.scripts["interfaces"] = {{link(1, "eth1", one.before), link(2, "eth2")}};
    kernel.scripts["IPv4 routes"] = {{one.route, told(RTM_NEWLINK, link(1, "eth1", one.now))}, {}};
    EXPECT_EQ(read().empty(), one.isReadAgain) << one.what;
  }
}

/// A group of nexthop objects, of which some are counted.
Step group(std::uint32_t id, std::vector<std::uint32_t> members,
           std::vector<std::pair<std::uint32_t, std::uint32_t>> packetsOf = {}) {
  // The numbers of linux/nexthop.h since Linux 6.9, which older headers lack.
  constexpr unsigned statistics = 15, entry = 1, entryId = 1, entryPackets = 2;
  Message rows, counts;
  for (const std::uint32_t member : members) rows.then(Message(nexthop_grp{member, 0, 0, 0}));
  for (const auto& [member, packets] : packetsOf) {
    counts.add(entry, Message().add(entryId, member).add(entryPackets, packets));
  }
  Message message = Message(nhmsg{}).add(NHA_ID, id).add(NHA_GROUP, rows);
  return {0, 0, packetsOf.empty() ? message : message.add(statistics, counts)};
}

TEST_F(FollowerTest, NexthopObjectsGoWithTheCarrier) {
  R route{"10.0.0.0", 8};
  route.nexthop = 7;
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1)}};
  const Step lost = told(RTM_NEWLINK, link(1, "eth1", Works::withoutCarrier));
  EXPECT_EQ(after({route}, {lost}), "none");
}

TEST_F(FollowerTest, GroupsLoseTheMembersOfAnInterfaceThatGoes) {
  needs.nexthopGroups = true;
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1), nexthop(8, 2), group(20, {7, 8})}};
  kernel.scripts["IPv4 routes"] = {{told(RTM_DELLINK, link(1, "eth1"))}};
  Follower follower(kernel, needs, [this] { return kernel.now; });
  follower.read(milliseconds(0));
  const auto groups = showNexthopGroups(makeDevice(follower.take()));
  EXPECT_EQ(groups.at("nexthop-20"), "20 ip4 1 of 1 in default | 10.0.0.9 eth2 00:00:00:00:00:00");
  EXPECT_EQ(groups.count("nexthop-7"), 0u);
}

TEST_F(FollowerTest, AnAddressThatStandsElsewhereKeepsItsRoutes) {
  R from{"10.0.0.0", 8, {{nullptr, 2}}};
  from.source = "10.9.0.1";
  kernel.scripts["addresses"] = {{address(1, "10.9.0.1", 24), address(2, "10.9.0.1", 32)}};
  const Step first = told(RTM_DELADDR, address(1, "10.9.0.1", 24)),
             second = told(RTM_DELADDR, address(2, "10.9.0.1", 32));
  const Step another = told(RTM_DELADDR, address(1, "fd00::1", 64));
  EXPECT_EQ(after({from}, {first, another}), "eth2");
  EXPECT_EQ(after({from}, {first, second}), "none");
  EXPECT_EQ(after({from}, {first, second, told(RTM_NEWADDR, address(2, "10.9.0.1", 32)),
                           told(RTM_NEWROUTE, from)}),
            "eth2");
}

TEST_F(FollowerTest, MembersKeepTheirCountsWhenAGroupChanges) {
  needs.nexthopGroups = true;
  const Step members[] = {nexthop(7, 1), nexthop(8, 2)};
  const std::string first = "10.0.0.9 eth1 00:00:00:00:00:00",
                    second = "10.0.0.9 eth2 00:00:00:00:00:00";
  const struct {
    Step now;
    std::string entries;
  } cases[] = {
      {group(20, {7, 8}), "2 of 2 in default | " + first + " 5p | " + second + " 0p"},
      {group(20, {8}), "1 of 1 in default | " + second + " 0p"},
      {group(21, {7}), "1 of 1 in default | " + first + " 5p"},
  };
  for (const auto& [now, entries] : cases) {
    const PlayedKernel::Script dumped{members[0], members[1], group(20, {7}, {{7, 5}})};
    for (const char* const during : {"nexthop objects", "IPv4 routes"}) {
      kernel.scripts["IPv4 routes"] = {{}};
      kernel.scripts["nexthop objects"] = {dumped};
      kernel.scripts[during].front().push_back(told(RTM_NEWNEXTHOP, now));
      Follower follower(kernel, needs, [this] { return kernel.now; });
      follower.read(milliseconds(0));
      EXPECT_EQ(showNexthopGroups(makeDevice(follower.take())).at("nexthop-20"),
                "20 ip4 " + entries)
          << "changed while it dumps " << during;
    }
  }
}

TEST_F(FollowerTest, NothingIsCountedByAKernelThatDoesNotCount) {
  needs.nexthopGroups = true;
  kernel.scripts["nexthop objects"] = {{nexthop(7, 1), group(20, {7})}};
  kernel.refusesCounts = {told(RTM_NEWNEXTHOP, nexthop(7, 1)),
                          told(RTM_NEWNEXTHOP, group(20, {7}))};
  Follower follower(kernel, needs, [this] { return kernel.now; });
  follower.read(milliseconds(0));
  const auto made = makeDevice(follower.take());
  EXPECT_EQ(showNexthopGroups(made).at("nexthop-20"),
            "20 ip4 1 of 1 in default | 10.0.0.9 eth1 00:00:00:00:00:00");
  EXPECT_FALSE(made.routingHardwareStatus->nexthopGroupEntryCounterSupported);
}

Step neighbour(const char* address, std::uint16_t state, std::uint8_t ethernet) {
  ndmsg header{};
  header.ndm_family = AF_INET;
  header.ndm_ifindex = 1;
  header.ndm_state = state;
  Message message = Message(header).add(NDA_DST, ip(address));
  if (ethernet == 0) return {0, 0, message};
  return {0, 0, message.add(NDA_LLADDR, std::vector<std::byte>(6, std::byte{ethernet}))};
}

TEST_F(FollowerTest, NeighboursComeChangeAndGo) {
  needs.neighbours = true;
  const Step known = neighbour("10.0.0.2", NUD_REACHABLE, 2);
  const struct {
    const char* what;
    Step now;
    const char* shown;
  } cases[] = {
      {"one more", told(RTM_NEWNEIGH, neighbour("10.0.0.3", NUD_STALE, 3)),
       "10.0.0.2 02:02:02:02:02:02; 10.0.0.3 03:03:03:03:03:03; "},
      {"another card", told(RTM_NEWNEIGH, neighbour("10.0.0.2", NUD_STALE, 4)),
       "10.0.0.2 04:04:04:04:04:04; "},
      {"no answer", told(RTM_NEWNEIGH, neighbour("10.0.0.2", NUD_FAILED, 0)), ""},
      {"removed", told(RTM_DELNEIGH, neighbour("10.0.0.2", NUD_STALE, 2)), ""},
      {"another removed", told(RTM_DELNEIGH, neighbour("10.0.0.9", NUD_STALE, 2)),
       "10.0.0.2 02:02:02:02:02:02; "},
      {"nothing to read", told(RTM_DELNEIGH, {}), "10.0.0.2 02:02:02:02:02:02; "},
  };
  for (const auto& [what, now, shown] : cases) {
    kernel.scripts["neighbours"] = {{known}};
    kernel.scripts["IPv4 routes"] = {{now}};
    Follower follower(kernel, needs, [this] { return kernel.now; });
    follower.read(std::chrono::seconds(2));
    const auto made = makeDevice(follower.take());
    std::string out;
    for (decltype(made.arpVanta->arpEntry)::IteratorConst it(made.arpVanta->arpEntry); it;
         it.next()) {
      out += it.value().key.address.stringValue().str() + " " +
             it.value().ethAddr.stringValue().str() + "; ";
    }
    EXPECT_EQ(out, shown) << what;
  }
}

TEST_F(FollowerTest, DamagedNotificationsAreHeardWithoutHarm) {
  needs.neighbours = needs.nexthopGroups = true;
  const Step stays = R{"11.0.0.0", 8};
  const struct {
    std::uint16_t changed, gone;
    Step whole;
  } kinds[] = {{RTM_NEWLINK, RTM_DELLINK, link(5, "eth5")},
               {RTM_NEWADDR, RTM_DELADDR, address(5, "10.9.0.1", 24)},
               {RTM_NEWNEIGH, RTM_DELNEIGH, neighbour("10.0.0.2", NUD_STALE, 2)},
               {RTM_NEWNEXTHOP, RTM_DELNEXTHOP, nexthop(7, 5)},
               {RTM_NEWROUTE, RTM_DELROUTE, R{"10.0.0.0", 8, {{"10.0.0.1", 5}}}}};
  for (const auto& [changed, gone, whole] : kinds) {
    PlayedKernel::Script script{stays};
    for (const std::uint16_t type : {changed, gone}) script.push_back(told(type, {}));
    decodeDamaged(whole.message.bytes(), [&, &changes = changed, &goes = gone](Bytes bytes) {
      Step damaged;
      damaged.message.bytes().assign(bytes.begin(), bytes.end());
      for (const std::uint16_t type : {changes, goes}) script.push_back(told(type, damaged));
    });
    script.push_back(told(RTM_NEWTCLASS, whole)); // of a kind that nobody asked for
    kernel.scripts["IPv4 routes"] = {script};
    EXPECT_EQ(read().count("default 11.0.0.0/8"), 1u) << changed;
  }
}

} // namespace
} // namespace kernel_test
