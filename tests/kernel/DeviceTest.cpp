// From decoded messages to a device's state, without a kernel.
#include "kernel/DeviceFixture.h"
#include "sources/SourceError.h"
#include "sources/kernel/KernelFacts.h"
#include "sources/snapshot/Snapshot.h"

#include <linux/if_addr.h>

namespace kernel_test {
namespace {

struct KindCase {
  std::uint8_t type, protocol;
  bool gateway;
  const char *shown4, *shown6; // empty: not listed
};

const KindCase kindCases[] = {
    {RTN_UNICAST, RTPROT_KERNEL, false, "connected [0/0] | eth1", "connected [0/0] | eth1"},
    {RTN_UNICAST, RTPROT_KERNEL, true, "kernel [40/0] | G eth1", "kernel [40/0] | G eth1"},
    {RTN_UNICAST, RTPROT_RA, true, "kernel [40/0] | G eth1", "kernel [40/0] | G eth1"},
    {RTN_UNICAST, RTPROT_RA, false, "kernel [40/0] | eth1", "kernel [40/0] | eth1"},
    {RTN_UNICAST, RTPROT_ZEBRA, true, "kernel [40/0] | G eth1", "kernel [40/0] | G eth1"},
    {RTN_UNICAST, 77, true, "kernel [40/0] | G eth1", "kernel [40/0] | G eth1"},
    {RTN_UNICAST, RTPROT_BOOT, true, "static [1/0] | G eth1", "static [1/0] | G eth1"},
    {RTN_UNICAST, RTPROT_STATIC, false, "static [1/0] | eth1", "static [1/0] | eth1"},
    {RTN_UNICAST, RTPROT_DHCP, true, "dhcp [1/0] | G eth1", "dhcp [1/0] | G eth1"},
    {RTN_UNICAST, RTPROT_BGP, true, "bgpExternal [200/0] | G eth1", "bgp [200/0] | G eth1"},
    {RTN_UNICAST, RTPROT_ISIS, true, "isisLevel2 [115/0] | G eth1", "isisLevel2 [115/0] | G eth1"},
    {RTN_UNICAST, RTPROT_OSPF, true, "ospfIntraArea [110/0] | G eth1", "ospf3 [110/0] | G eth1"},
    {RTN_UNICAST, RTPROT_RIP, true, "rip [120/0] | G eth1", "rip [120/0] | G eth1"},
    {RTN_LOCAL, RTPROT_KERNEL, false, "receive [0/0] | eth1", "receive [0/0] | eth1"},
    {RTN_BROADCAST, RTPROT_KERNEL, false, "receiveBroadcast [0/0] | eth1", ""},
    {RTN_ANYCAST, RTPROT_KERNEL, false, "", "receive [0/0] | eth1"},
    {RTN_MULTICAST, RTPROT_KERNEL, false, "receiveAll [0/0] | eth1", "receiveAll [0/0] | eth1"},
    {RTN_BLACKHOLE, RTPROT_BGP, false, "drop [1/0]", "drop [1/0]"},
    {RTN_UNREACHABLE, RTPROT_BOOT, false, "drop [1/0]", "drop [1/0]"},
    {RTN_PROHIBIT, RTPROT_STATIC, false, "drop [1/0]", "drop [1/0]"},
    {RTN_THROW, RTPROT_STATIC, false, "drop [1/0]", "drop [1/0]"},
    {RTN_NAT, RTPROT_STATIC, true, "", ""},
};

std::string withGateway(std::string shown, const char* gateway) {
  const auto at = shown.find(" G ");
  return at == std::string::npos ? shown : shown.replace(at + 1, 1, gateway);
}

TEST(RouteKinds, ByTypeAndProtocol) {
  for (const KindCase& one : kindCases) {
    KernelState kernel;
    kernel.links = {{1, "eth1", "", 0, 0}};
    RouteMessage ip4 = route("10.0.0.0", 8, {hop(one.gateway ? "10.1.0.2" : "")});
    RouteMessage ip6 = route("fd00::", 8, {hop(one.gateway ? "fe80::2" : "")});
    for (RouteMessage* const message : {&ip4, &ip6}) {
      message->type = one.type;
      message->protocol = one.protocol;
      enterRoute(*message, kernel);
    }
    Routes expected;
    if (*one.shown4) expected["default 10.0.0.0/8"] = withGateway(one.shown4, "10.1.0.2");
    if (*one.shown6) expected["default fd00::/8"] = withGateway(one.shown6, "fe80::2");
    EXPECT_EQ(showRoutes(makeDevice(kernel)), expected)
        << "type " << int{one.type} << " protocol " << int{one.protocol};
  }
}

TEST_F(DeviceTest, RoutesThatLookAtMoreThanTheDestinationAreLeftOut) {
  add(route("10.0.0.0", 8)).tos = 8;
  add(route("fd00::", 8)).sourceLength = 64;
  add(route("fd00::1", 128)).flags = RTM_F_CLONED;
  EXPECT_EQ(showRoutes(device()), Routes());
}

/// The routes that no listing has a place for, of a message list that ends in such ones.
struct HiddenCase {
  const char* what;
  std::uint64_t hidden;
  std::vector<RouteMessage> messages;
};

TEST_F(DeviceTest, RoutesThatAreNotShownAreCounted) {
  RouteMessage own = with(route("fd00::1", 128, {hop("")}), 0, 0, RT_TABLE_LOCAL), twin = own;
  own.type = RTN_LOCAL;
  twin.table = RT_TABLE_MAIN;
  twin.protocol = RTPROT_KERNEL;
  const HiddenCase cases[] = {
      {"one each", 0, {route("10.0.0.0", 8), route("11.0.0.0", 8), route("fd00::", 8)}},
      {"metrics",
       2,
       {route("10.0.0.0", 8), with(route("10.0.0.0", 8), 5), with(route("10.0.0.0", 8), 6)}},
      {"metrics of IPv6", 1, {with(route("fd00::", 8), 5), with(route("fd00::", 8), 6)}},
      {"a type of service",
       2,
       {with(route("10.0.0.0", 8), 0, 8), with(route("10.0.0.0", 8), 0, 16)}},
      {"other tables", 0, {route("10.0.0.0", 8), with(route("10.0.0.0", 8), 5, 0, 7)}},
      {"link-local and multicast",
       0,
       {with(route("fe80::", 64), 1), with(route("fe80::", 64), 2), with(route("ff00::", 8), 1),
        with(route("ff00::", 8), 2), with(route("224.0.0.0", 4), 1), with(route("224.0.0.0", 4), 2),
        with(route("169.254.0.0", 16), 1), with(route("169.254.0.0", 16), 2)}},
      {"the kernel's own twin of a local address", 0, {own, twin}},
  };
  for (const HiddenCase& one : cases) {
    messages.assign(one.messages.begin(), one.messages.end());
    std::uint64_t hidden = 0;
    for (const auto& [table, count] : sources::kernel::routeFacts(whole()).hidden) hidden += count;
    EXPECT_EQ(hidden, one.hidden) << one.what;
  }
}

std::string comesBack(const state::DeviceState& device) {
  const auto saved = sources::snapshot::saveText(device);
  const auto again = sources::snapshot::saveText(sources::snapshot::loadText(saved, "saved"));
  return again == saved ? "the same" : saved + "and then " + again;
}

/// A VRF's number has 24 bits, the highest of which means none; a table has 32.
TEST_F(DeviceTest, EachTableHasAVrfWithANumberOfItsOwn) {
  for (const std::uint32_t table : {0xffffffffu, 16777212u, 16777215u, 16777214u}) {
    const auto index = static_cast<std::uint32_t>(kernel.links.size() + 1);
    kernel.links.push_back({index, "red" + std::to_string(index), "", 0, table});
  }
  add(with(route("10.0.0.0", 8), 0, 0, 0xfffffffe));
  add(with(route("fd00::", 8), 0, 0, 7));
  std::string shown;
  const auto made = device();
  for (const state::VrfState& vrf : made.vrfs) {
    shown += vrf.name.stringValue().str() + " " + std::to_string(vrf.id.value()) + "; ";
  }
  EXPECT_EQ(shown, "default 0; table-7 7; red4 16777212; red6 16777214; red5 16777213; "
                   "table-4294967294 16777211; red3 16777210; ");
  EXPECT_EQ(showRoutes(made).count("table-4294967294 10.0.0.0/8"), 1u);
  EXPECT_EQ(comesBack(made), "the same");
}

/// The kernel lets names have any bytes but NUL, slashes, colons and white space.
TEST_F(DeviceTest, AnyNameComesBackFromASnapshot) {
  std::uint32_t index = 0;
  kernel.links.clear();
  for (const char* const name :
       {"a\xff", "a\xfe", "b\xef\xbf\xbd", "Intf#5", "\"\\", "\x7f\x01", "Aa"}) {
    kernel.links.push_back({++index, name, std::string("of ") + name, 0, index + 10});
  }
  EXPECT_EQ(device().ip6Status->ip6IntfStatus.size(), 7u);
  EXPECT_EQ(comesBack(device()), "the same");
}

TEST_F(DeviceTest, EqualNextHopsAreOneWithTheirWeights) {
  add(route("10.0.0.0", 8, {hop("10.1.0.1", 1, 5), hop("10.2.0.1", 2, 10), hop("10.1.0.1", 1, 5)}));
  add(route("11.0.0.0", 8, {hop("10.1.0.1", 1, 5), hop("10.1.0.1", 2, 5)}));
  kernel.nexthops = {{3, hop("10.1.0.1"), false, {}},
                     {4, hop("10.1.0.1"), false, {}},
                     {5, {}, false, {{3, 2}, {4, 3}}}};
  add(route("12.0.0.0", 8)).nexthopId = 5;
  EXPECT_EQ(showRoutes(device()),
            (Routes{{"default 10.0.0.0/8", "static [1/0] | 10.1.0.1 eth1 w10 | 10.2.0.1 eth2 w10"},
                    {"default 11.0.0.0/8", "static [1/0] | 10.1.0.1 eth1 w5 | 10.1.0.1 eth2 w5"},
                    {"default 12.0.0.0/8", "static [1/0] | 10.1.0.1 eth1 w5"}}));
}

/// A peer is what the kernel makes of a point-to-point address; anybody may lead a single address
/// onto a link.
TEST_F(DeviceTest, ASingleAddressOnALinkIsItsOwnNextHop) {
  add(route("10.8.0.2", 32, {hop("")})).protocol = RTPROT_KERNEL;
  add(route("10.8.0.3", 32, {hop("")}));
  add(route("10.8.0.4", 32, {hop("10.8.0.2")}));
  add(route("10.8.0.4", 31, {hop("")})).protocol = RTPROT_KERNEL;
  add(route("fd00::2", 128, {hop("")})).protocol = RTPROT_KERNEL;
  const auto made = device();
  EXPECT_EQ(showRoutes(made), (Routes{{"default 10.8.0.2/32", "kernel [0/0] | 10.8.0.2 eth1"},
                                      {"default 10.8.0.3/32", "static [1/0] | 10.8.0.3 eth1"},
                                      {"default 10.8.0.4/32", "static [1/0] | 10.8.0.2 eth1"},
                                      {"default 10.8.0.4/31", "connected [0/0] | eth1"},
                                      {"default fd00::2/128", "kernel [0/0] | fd00::2 eth1"}}));
  EXPECT_EQ(showConfig(made.vrfs[0].routingConfig),
            "10.8.0.3/32[1] @eth1; 10.8.0.4/32[1] 10.8.0.2@eth1; ");
}

TEST_F(DeviceTest, OneRouteOfAPrefixForwards) {
  add(route("10.0.0.0", 8, {hop("10.1.0.1")})).metric = 30;
  add(route("10.0.0.0", 8, {hop("10.1.0.2")})).metric = 20;
  add(route("10.0.0.0", 8, {hop("10.1.0.3")})).metric = 20;
  add(route("10.9.9.9", 32, {hop("10.1.0.4")}));
  RouteMessage& local = add(route("10.9.9.9", 32, {hop("")}));
  local.table = RT_TABLE_LOCAL;
  local.type = RTN_LOCAL;
  local.metric = 1000;
  EXPECT_EQ(showRoutes(device()), (Routes{{"default 10.0.0.0/8", "static [1/20] | 10.1.0.2 eth1"},
                                          {"default 10.9.9.9/32", "receive [0/1000] | eth1"}}));
}

TEST_F(DeviceTest, VrfsComeFromDevicesAndTables) {
  kernel.links = {{1, "eth1", "", 0, 0},  {2, "eth2", "", 3, 0},     {3, "red", "", 0, 10},
                  {4, "red2", "", 0, 10}, {5, "default", "", 0, 20}, {6, "br0", "", 1, 0}};
  for (const std::uint32_t table : {10u, 20u, 30u, 255u}) add(route("10.0.0.0", 8)).table = table;
  const auto made = device();
  std::string names;
  for (const auto& vrf : made.vrfs) {
    names += vrf.name.stringValue().str() + "=" + std::to_string(vrf.id.value()) + " ";
  }
  EXPECT_EQ(names, "default=0 red=10 default-20=20 table-30=30 ");
  EXPECT_EQ(showRoutes(made).size(), 4u);
  const auto vrfOf = [&](const char* name) {
    return made.ipStatus->ipIntfStatus.find(Kesh::IntfId(name))->vrf->stringValue().str();
  };
  EXPECT_EQ(vrfOf("eth1") + " " + vrfOf("eth2") + " " + vrfOf("red") + " " + vrfOf("red2") + " " +
                vrfOf("br0"),
            "default red red red default");
}

TEST_F(DeviceTest, AddressesThatAreNotInUseAreLeftOut) {
  kernel.addresses = {{1, addr("10.0.0.9"), 24, IFA_F_SECONDARY},
                      {1, addr("10.0.0.1"), 24, 0},
                      {1, addr("fd00::2"), 64, IFA_F_DADFAILED},
                      {1, addr("fd00::3"), 64, IFA_F_TENTATIVE},
                      {99, addr("10.0.0.3"), 24, 0}};
  const auto made = device();
  const auto& ip4 = *made.ipStatus->ipIntfStatus.find(Kesh::IntfId("eth1"));
  EXPECT_EQ(ip4.primary->stringValue().str(), "10.0.0.1/24");
  ASSERT_EQ(ip4.activeSecondary.size(), 1u);
  EXPECT_EQ(ip4.activeSecondary[0].stringValue().str(), "10.0.0.9/24");
  const auto& ip6 = *made.ip6Status->ip6IntfStatus.find(Kesh::IntfId("eth1"));
  ASSERT_EQ(ip6.addr.size(), 1u);
  EXPECT_EQ(ip6.addr[0].stringValue().str(), "fd00::3/64");
}

TEST_F(DeviceTest, AddressesAreWhatIsConfigured) {
  kernel.links = {{1, "eth1", "", 3, 0}, {2, "eth2", "", 0, 0}, {3, "red", "", 0, 10}};
  kernel.addresses = {{1, addr("10.0.0.9"), 24, IFA_F_SECONDARY},
                      {1, addr("10.0.0.1"), 24, 0},
                      {1, addr("10.1.0.1"), 24, 0},
                      {1, addr("fd00::2"), 64, IFA_F_DADFAILED}};
  const auto made = device();
  const auto& ip4 = *made.ipConfig->ipIntfConfig.find(Kesh::IntfId("eth1"));
  EXPECT_EQ(ip4.addrWithMask.stringValue().str(), "10.0.0.1/24");
  EXPECT_EQ(ip4.l3Config->vrf.stringValue().str(), "red");
  std::string secondary;
  for (const auto& [one, isSet] : ip4.secondaryWithMask) secondary += one.stringValue().str() + " ";
  EXPECT_EQ(secondary, "10.0.0.9/24 10.1.0.1/24 ");
  const auto& ip6 = *made.ip6Config->intf.find(Kesh::IntfId("eth1"));
  EXPECT_TRUE(ip6.addr.find({Kesh::Ip6Addr::parse("fd00::2").value(), 64}));
  EXPECT_TRUE(made.ipConfig->ipIntfConfig.find(Kesh::IntfId("eth2")));
}

TEST_F(DeviceTest, NeighboursCarryTheVrfOfTheirInterface) {
  kernel.links = {{1, "eth1", "", 3, 0}, {3, "red", "", 0, 10}};
  const auto ethernet = Kesh::EthAddr::parse("02:00:00:00:00:01").value();
  kernel.neighbours = {{1, addr("10.0.0.2"), ethernet},
                       {1, addr("fe80::2"), ethernet},
                       {9, addr("10.0.0.3"), ethernet}};
  const auto made = device();
  bool found = false;
  const auto key = [](const char* address) {
    return Arp::Table::ArpKey{Vrf::VrfIdMap::VrfId(10), Kesh::IntfId("eth1"), addr(address)};
  };
  EXPECT_EQ(made.arpVanta->arpEntry.safeLookup(key("10.0.0.2"), found, 0)->ethAddr, ethernet);
  EXPECT_EQ(made.arpVanta->neighborEntry.safeLookup(key("fe80::2"), found, 0)->ethAddr, ethernet);
  EXPECT_EQ(made.arpVanta->arpEntry.members(), 1u);
  EXPECT_EQ(made.arpVanta->neighborEntry.members(), 1u);
}

TEST_F(DeviceTest, FecsAreSharedAndNumberedByContentInAnyOrderOfRoutes) {
  add(route("10.1.0.0", 16, {hop("10.0.0.3")}));
  add(route("10.1.0.0", 16, {hop("10.0.0.1")})).metric = 6; // not listed, nor is its FEC there
  add(route("10.2.0.0", 16, {hop("10.0.0.2", 1, 2), hop("10.0.0.3")}));
  add(route("10.3.0.0", 16, {hop("10.0.0.3")}));
  add(route("10.5.0.0", 16, {hop("")}));
  add(route("10.4.0.0", 16, {hop("fe80::1")}));
  add(route("fd00::", 16, {hop("fe80::1")}));
  const auto fec6 = Vanta::Fib::FecId(Vanta::Fib::AdjType::fib6, 1).value();
  for (int round = 0; round < 2; ++round) {
    const auto made = device();
    std::vector<std::uint64_t> numbers;
    for (const char* const prefix :
         {"10.5.0.0/16", "10.2.0.0/16", "10.1.0.0/16", "10.3.0.0/16", "10.4.0.0/16", "fd00::/16"}) {
      numbers.push_back(fecOf(made, prefix));
    }
    EXPECT_EQ(numbers, (std::vector<std::uint64_t>{1, 2, 3, 3, fec6, fec6}));
    EXPECT_EQ(made.forwardingStatus->fec.members(), 3u);
    std::ranges::reverse(messages);
  }
}

TEST_F(DeviceTest, MixedFamiliesAndSpecialHops) {
  add(route("10.1.0.0", 16, {hop("10.0.0.3", 1, 4), hop("fe80::1", 2), hop("", 2)}));
  Hop dead = hop("10.0.0.3");
  dead.dead = 1;
  add(route("10.2.0.0", 16, {dead, hop("10.0.0.4", 2)}));
  Hop labelled = hop("10.0.0.3");
  labelled.label = 100;
  add(route("10.3.0.0", 16, {labelled}));
  EXPECT_EQ(showRoutes(device()),
            (Routes{{"default 10.1.0.0/16",
                     "static [1/0] | ::ffff:10.0.0.3 eth1 w4 | fe80::1 eth2 | eth2"},
                    {"default 10.2.0.0/16", "static [1/0] | 10.0.0.4 eth2"},
                    {"default 10.3.0.0/16", "static [1/0] | 10.0.0.3 eth1 label 100"}}));
}

TEST_F(DeviceTest, WhatTheKernelDoesNotUseIsNoVia) {
  Hop dead = hop("10.0.0.3", 1, 5);
  dead.dead = 1;
  add(route("10.1.0.0", 16, {dead, hop("10.0.0.4", 2, 2), hop("10.0.0.5", 2)}));
  add(route("10.2.0.0", 16, {dead}));
  add(with(route("10.3.0.0", 16, {dead}), 1));
  add(with(route("10.3.0.0", 16, {hop("10.0.0.4")}), 2)); // the kernel takes the next one
  const auto made = device();
  EXPECT_EQ(showRoutes(made),
            (Routes{{"default 10.1.0.0/16", "static [1/0] | 10.0.0.4 eth2 w2 | 10.0.0.5 eth2"},
                    {"default 10.2.0.0/16", "static [1/0] | 10.0.0.3 dead w5"},
                    {"default 10.3.0.0/16", "static [1/2] | 10.0.0.4 eth1"}}));
  EXPECT_EQ(showConfig(made.vrfs[0].routingConfig),
            "10.1.0.0/16[1] 10.0.0.4@eth2 10.0.0.5@eth2 10.0.0.3@eth1; "
            "10.2.0.0/16[1] 10.0.0.3@eth1; 10.3.0.0/16[1] 10.0.0.3@eth1; ");
}

TEST_F(DeviceTest, ANexthopObjectThatIsGoneLeavesTheKernelsExpansion) {
  kernel.nexthops = {{3, {}, true, {}}, {5, {}, false, {{3, 1}}}};
  add(route("10.5.0.0", 16, {hop("10.0.0.7")})).nexthopId = 5; // a group of a blackhole
  add(route("10.9.0.0", 16, {hop("10.0.0.7")})).nexthopId = 9;
  EXPECT_EQ(showRoutes(device()),
            (Routes{{"default 10.5.0.0/16", "drop [1/0]"},
                    {"default 10.9.0.0/16", "static [1/0] | 10.0.0.7 eth1"}}));
}

TEST_F(DeviceTest, MoreViasThanAFecHoldsNameTheRoute) {
  for (const std::size_t count : {512u, 513u}) {
    messages.clear();
    std::vector<Hop> hops;
    for (std::size_t i = 0; i < count; ++i) {
      hops.push_back(
          hop(("10.1." + std::to_string(i / 256) + "." + std::to_string(i % 256)).c_str()));
    }
    add(route("10.0.0.0", 8, hops));
    try {
      EXPECT_EQ(device().forwardingStatus->fec.members(), 1u);
      EXPECT_EQ(count, 512u);
    } catch (const sources::SourceError& failure) {
      EXPECT_EQ(count, 513u);
      EXPECT_STREQ(failure.what(),
                   "kernel route 10.0.0.0/8 of table 254 has 513 next hops: at most 512 "
                   "can be shown; take some of them away");
    }
  }
}

/// The prefixes that the hardware lacks, and how many are counted.
std::string unprogrammed(const state::DeviceState& device) {
  std::string out;
  const auto& status = *device.unprogrammedRouteStatus;
  for (decltype(status.unprogrammedRoute)::IteratorConst it(status.unprogrammedRoute); it;
       it.next()) {
    out += it.value().key.prefix.stringValue().str() + " ";
  }
  bool found = false;
  const auto* const count =
      status.unprogrammedRouteCount.safeLookup(Vrf::VrfIdMap::VrfId(0), found, 0);
  return out + (found ? std::to_string(count->count) : "none");
}

TEST_F(DeviceTest, HardwareIsMissedWhereThereIsSome) {
  const struct {
    const char* what;
    std::uint32_t second, ip6; ///< flags of 11.0.0.0/8 and of fd00::/8
    const char* missing;
  } cases[] = {
      {"a software router", 0, 0, "none"},
      {"a failed offload", RTM_F_OFFLOAD_FAILED, 0, "11.0.0.0/8 1"},
      {"hardware", RTM_F_OFFLOAD, 0, "10.0.0.0/8 1"},
      {"hardware of the other family", 0, RTM_F_TRAP, "none"},
  };
  for (const auto& one : cases) {
    messages.clear();
    add(route("10.0.0.0", 8));
    add(route("11.0.0.0", 8)).flags = one.second;
    add(route("12.0.0.0", 8)).type = RTN_BLACKHOLE;
    add(route("fd00::", 8)).flags = one.ip6;
    EXPECT_EQ(unprogrammed(device()), one.missing) << one.what;
  }
}

TEST_F(DeviceTest, AdministratorsRoutesAreTheConfiguration) {
  add(route("10.0.0.0", 8, {hop("10.1.0.1"), hop("10.1.0.2", 2)}));
  add(route("11.0.0.0", 8, {hop("")})).protocol = RTPROT_BOOT;
  add(route("12.0.0.0", 8)).type = RTN_BLACKHOLE;
  add(route("13.0.0.0", 8, {hop("10.1.0.1")})).protocol = RTPROT_BGP;
  add(route("14.0.0.0", 8, {hop("10.1.0.9")})).metric = 9; // configured, though the next forwards
  add(route("14.0.0.0", 8, {hop("10.1.0.1")})).protocol = RTPROT_BGP;
  add(route("15.0.0.0", 8, {hop("")})).type = RTN_LOCAL;
  add(route("fd00::", 8, {hop("fe80::1")}));
  kernel.forwarding = {false, true};
  const auto made = device();
  EXPECT_EQ(showConfig(made.vrfs[0].routingConfig),
            "10.0.0.0/8[1] 10.1.0.1@eth1 10.1.0.2@eth2; 11.0.0.0/8[1] @eth1; 12.0.0.0/8[1] drop; "
            "14.0.0.0/8[1] 10.1.0.9@eth1; ");
  EXPECT_EQ(showConfig(made.vrfs[0].routing6Config), "fd00::/8[1] fe80::1@eth1; ");
  EXPECT_FALSE(made.vrfs[0].routingConfig->routing);
  EXPECT_TRUE(made.vrfs[0].routing6Config->routing);
}

} // namespace
} // namespace kernel_test
