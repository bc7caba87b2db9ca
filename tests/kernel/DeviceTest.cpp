// From decoded messages to a device's state, without a kernel.
#include "sources/kernel/Device.h"
#include "kernel/Shown.h"
#include "sources/SourceError.h"
#include "sources/snapshot/Snapshot.h"

#include <gtest/gtest.h>
#include <linux/if_addr.h>
#include <sys/socket.h>

namespace kernel_test {
namespace {

using namespace sources::kernel;

Kesh::IpGenAddr addr(std::string_view text) {
  return text.empty() ? Kesh::IpGenAddr() : Kesh::IpGenAddr::parse(text).value();
}

Hop hop(std::string_view gateway, std::uint32_t interface = 1, std::uint32_t weight = 1) {
  Hop made;
  made.gateway = addr(gateway);
  made.interface = interface;
  made.weight = weight;
  return made;
}

/// A static unicast route of table main, to be changed.
RouteMessage route(const char* destination, std::uint8_t length, std::vector<Hop> hops = {}) {
  RouteMessage message;
  message.destination = addr(destination);
  message.family = message.destination.af() == Kesh::AddressFamily::ip4 ? AF_INET : AF_INET6;
  message.length = length;
  message.type = RTN_UNICAST;
  message.protocol = RTPROT_STATIC;
  message.table = RT_TABLE_MAIN;
  message.hops = std::move(hops);
  return message;
}

void enterRoute(const RouteMessage& message, KernelState& kernel) {
  if (!isRow(message)) return;
  if (message.family == AF_INET) {
    kernel.routes.push_back(rowOf<sources::kernel::Ip4>(message, kernel.hopLists));
  } else {
    kernel.routes6.push_back(rowOf<sources::kernel::Ip6>(message, kernel.hopLists));
  }
}

class DeviceTest : public testing::Test {
 protected:
  DeviceTest() { kernel.links = {{1, "eth1", "", 0, 0}, {2, "eth2", "", 0, 0}}; }

  RouteMessage& add(RouteMessage message) { return messages.emplace_back(std::move(message)); }
  /// What the kernel has, with the messages.
  KernelState whole() const {
    KernelState entered = kernel;
    for (const RouteMessage& message : messages) enterRoute(message, entered);
    putInOrder(entered.routes);
    putInOrder(entered.routes6);
    return entered;
  }
  state::DeviceState device() const { return makeDevice(whole()); }

  KernelState kernel;
  std::deque<RouteMessage> messages;
};

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

std::string showConfig(const Lumo::Ptr<Routing::ConfigGen>& config) {
  std::map<std::string, std::string> lines;
  config->route.forEach([&](const Routing::RouteKey& key, const Lumo::Ptr<Routing::Route>& route) {
    std::string& line = lines[key.prefix.stringValue().str()];
    line = "[" + std::to_string(key.preference) + "]";
    if (route->routeType == Routing::RouteType::drop) line += " drop";
    route->via.forEach([&](const Routing::Via& via, bool) {
      line += " " + via.hop.stringValue().str() + "@" + via.intfId.stringValue().str();
    });
  });
  std::string out;
  for (const auto& [prefix, line] : lines) out += prefix + line + "; ";
  return out;
}

/// The routes that no listing has a place for, of a message list that ends in such ones.
struct HiddenCase {
  const char* what;
  std::uint64_t hidden;
  std::vector<RouteMessage> messages;
};

RouteMessage with(RouteMessage message, std::uint32_t metric, std::uint8_t tos = 0,
                  std::uint32_t table = RT_TABLE_MAIN) {
  message.metric = metric;
  message.tos = tos;
  message.table = table;
  return message;
}

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
    const KernelState state = whole();
    EXPECT_EQ(hiddenRoutes<sources::kernel::Ip4>(state.routes) +
                  hiddenRoutes<sources::kernel::Ip6>(state.routes6),
              one.hidden)
        << one.what;
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

/// Routes with tunnels: the hops of 10.N.0.0/16 are the N-th list, from 1.
class TunnelTest : public DeviceTest {
 protected:
  TunnelTest() {
    kernel.links[1].isVxlan = true; // eth2
  }

  Hop labelled(Hop to, std::initializer_list<std::uint32_t> labels) {
    LabelStack stack;
    stack.operationIs(Kesh::LabelAction::push);
    for (const std::uint32_t label : labels) stack.labelAppend(Kesh::MplsLabel(label));
    return pushing(to, stack);
  }
  Hop segmented(Hop to, std::initializer_list<const char*> travel) {
    Segments segments;
    for (const char* const segment : travel) segments.push_back(addr(segment).v6Addr());
    return pushing(to, segments);
  }
  Hop remote(Hop to, const char* end, std::uint32_t vni = 5) {
    return pushing(to, RemoteEnd{addr(end), vni});
  }
  void addLists(const std::vector<std::vector<Hop>>& lists) {
    for (const auto& hops : lists) {
      add(route(("10." + std::to_string(messages.size() + 1) + ".0.0").c_str(), 16, hops));
    }
  }
  /// The vias of the N-th list.
  std::string vias(const state::DeviceState& made, std::size_t number) const {
    const auto routes = showRoutes(made);
    const auto& shown = routes.at("default 10." + std::to_string(number) + ".0.0/16");
    const std::string head = "static [1/0] | ";
    return shown.starts_with(head) ? shown.substr(head.size()) : shown;
  }
  void expectVias(std::initializer_list<const char*> expected) const {
    const auto made = device();
    std::size_t number = 0;
    for (const char* const one : expected) EXPECT_EQ(vias(made, ++number), one) << number;
  }

 private:
  Hop pushing(Hop to, Encapsulation encapsulation) {
    to.encapsulation = kernel.encapsulations.enter(std::move(encapsulation));
    return to;
  }
};

TEST_F(TunnelTest, OneStackMakesAllViasOfAListTunnels) {
  Hop one = hop("10.0.0.5"), dead = hop("10.0.0.6");
  one.label = 300;
  dead.dead = 1;
  const Hop two = labelled(hop("10.0.0.3", 1, 4), {100, 200});
  addLists({{two, hop("10.0.0.4"), one, dead, hop("")}, {one, hop("10.0.0.4")}, {two}});
  expectVias({"1.2 (10.0.0.3 eth1 label 100 200) w4 | 1.3 (10.0.0.4 eth1) | "
              "1.4 (10.0.0.5 eth1 label 300) | 1.1 (0.0.0.0 eth1)",
              "10.0.0.5 eth1 label 300 | 10.0.0.4 eth1", "1.2 (10.0.0.3 eth1 label 100 200) w4"});
}

TEST_F(TunnelTest, SegmentsLeadToTheLastOfThem) {
  const Hop here = segmented(hop(""), {"fc00::1", "fc00::9"});
  const Hop there = segmented(hop("fe80::2"), {"fc00::3"});
  addLists({{here}, {there, here}, {segmented(hop(""), {"fc00::2", "fc00::9"})}});
  expectVias({"7.1 to fc00::9/128 (0.0.0.0 eth1)",
              "7.4 to fc00::3/128 (fe80::2 eth1) | 7.3 to fc00::9/128 (:: eth1)",
              "7.2 to fc00::9/128 (0.0.0.0 eth1)"});
}

TEST_F(TunnelTest, SegmentsAmongOtherHopsShowAsHops) {
  const Hop segments = segmented(hop("10.0.0.2"), {"fc00::1"});
  addLists({{segments, hop("10.0.0.3")},
            {segments, labelled(hop("10.0.0.3"), {1, 2})},
            {segments, remote(hop("10.0.0.4", 2), "192.0.2.1")}});
  expectVias({"1.1 (10.0.0.2 eth1) | 1.3 (10.0.0.3 eth1)",
              "1.1 (10.0.0.2 eth1) | 1.2 (10.0.0.3 eth1 label 1 2)",
              "1.1 (10.0.0.2 eth1) | 1.4 (10.0.0.4 eth2)"});
}

TEST_F(TunnelTest, RemoteEndsOfVxlanDevicesAreEvpnTunnels) {
  kernel.links.push_back({3, "geneve0", "", 0, 0});
  const auto ethernet = Kesh::EthAddr::parse("02:00:00:00:00:01").value();
  kernel.neighbours = {{2, addr("10.0.0.2"), ethernet, true}, {1, addr("10.0.0.3"), ethernet}};
  Hop dead = remote(hop("10.0.0.2", 2), "192.0.2.1");
  dead.dead = 1;
  addLists({{remote(hop("10.0.0.2", 2), "192.0.2.1")},
            {remote(hop("10.0.0.3", 2), "192.0.2.1"), hop("10.0.0.2")},
            {remote(hop("", 2), "fd00::1", 9)},
            {remote(hop("10.0.0.2", 3), "192.0.2.1")},
            {dead}});
  addLists({{remote(hop("10.0.0.9", 2), "fd00::1", 9)}});
  EXPECT_EQ(fecOf(device(), "10.3.0.0/16"), fecOf(device(), "10.6.0.0/16")) << "equal vias";
  expectVias({"6.2 VTEP 192.0.2.1 VNI 5 MAC 02:00:00:00:00:01",
              "6.1 VTEP 192.0.2.1 VNI 5 MAC 00:00:00:00:00:00 | 10.0.0.2 eth1",
              "6.3 VTEP fd00::1 VNI 9 MAC 00:00:00:00:00:00", "10.0.0.2 geneve0", "10.0.0.2 dead"});
}

TEST_F(TunnelTest, ConfiguredRoutesKeepTheirHops) {
  addLists({{labelled(hop("10.0.0.3"), {100, 200})}});
  EXPECT_EQ(showConfig(device().vrfs[0].routingConfig), "10.1.0.0/16[1] 10.0.0.3@eth1; ");
}

TEST_F(TunnelTest, EqualTunnelsHaveEqualNumbersInAnyOrderOfRoutes) {
  const Hop stack = labelled(hop("10.0.0.3"), {100, 200});
  addLists({{stack},
            {labelled(hop("10.0.0.2"), {100, 200})},
            {stack, segmented(hop("10.0.0.3"), {"fc00::1"})},
            {segmented(hop("10.0.0.3"), {"fc00::1"})},
            {stack}});
  add(route("10.1.0.0", 16, {labelled(hop("10.0.0.1"), {7, 8})})).metric = 6; // not listed
  for (int round = 0; round < 2; ++round) {
    expectVias({"1.2 (10.0.0.3 eth1 label 100 200)", "1.1 (10.0.0.2 eth1 label 100 200)",
                "1.2 (10.0.0.3 eth1 label 100 200) | 1.3 (10.0.0.3 eth1)",
                "7.1 to fc00::1/128 (10.0.0.3 eth1)", "1.2 (10.0.0.3 eth1 label 100 200)"});
    const auto made = device();
    EXPECT_EQ(made.tunnelFib->entries.size(), 4u);
    EXPECT_EQ(made.tunnelFib->labelStacks.size(), 2u) << "of none and of two labels";
    EXPECT_EQ(made.forwardingStatus->fec.members(), 4u);
    std::ranges::reverse(messages);
  }
}

/// A GRE or VTI device to 10.0.0.N.
Link tunnelLink(const char* name, Tunnel::TunnelTable::EncapKind kind, std::uint32_t end) {
  Link link{1, name, "", 0, 0};
  link.tunnel.emplace();
  link.tunnel->kind = kind;
  link.tunnel->ends.source = addr("10.0.0.1");
  link.tunnel->ends.destination = Kesh::IpAddr::fromHost(0x0a000000 + end);
  return link;
}

TEST_F(DeviceTest, DevicesOfTheNameAreConfiguredTunnels) {
  using Tunnel::TunnelTable::EncapKind, Tunnel::TunnelTable::TunnelId;
  constexpr auto gre = EncapKind::gre, vti = EncapKind::ipsecVti;
  kernel.links = {tunnelLink("Tunnel3", gre, 9),     tunnelLink("Tunnel65535", vti, 9),
                  tunnelLink("Tunnel0", gre, 8),     tunnelLink("Tunnel4", gre, 9),
                  tunnelLink("Tunnel65536", gre, 7), tunnelLink("Tunnel3.5", gre, 7),
                  tunnelLink("Tunnel05", gre, 7),    tunnelLink("gre5", gre, 7),
                  tunnelLink("Ethernet6", gre, 7),   {1, "Tunnel7", "", 0, 0}};
  const auto made = device();
  const auto& fib = *made.tunnelFib;
  EXPECT_EQ(fib.entries.size(), 4u);
  const struct {
    std::uint64_t port;
    std::uint32_t encap;
    const char* destination;
  } cases[] = {
      {0, 1, "10.0.0.8"}, {3, 2, "10.0.0.9"}, {4, 2, "10.0.0.9"}, {65535, 0x10000001, "10.0.0.9"}};
  for (const auto& one : cases) {
    const auto entry = fib.entry(TunnelId(TunnelId::convertToTunnelValue(9, one.port)));
    ASSERT_EQ(entry.tunnelVia.size(), 1u) << one.port;
    const auto encap = entry.tunnelVia[0].encapId;
    EXPECT_EQ(encap.value(), one.encap) << one.port;
    const Tunnel::L3TunnelInfo* ends = &fib.ipsecVtiEncap(encap);
    if (encap.kind() == gre) ends = &fib.greEncap(encap);
    EXPECT_EQ(ends->destination.stringValue().str(), one.destination) << one.port;
    EXPECT_EQ(ends->source.stringValue().str(), "10.0.0.1") << one.port;
  }
}

/// Nexthop objects: eth1 is in the default VRF, eth2 in VRF red.
class NexthopGroupTest : public TunnelTest {
 protected:
  NexthopGroupTest() {
    kernel.links = {{1, "eth1", "", 0, 0}, {2, "eth2", "", 3, 0}, {3, "red", "", 0, 10}};
    kernel.addresses = {{1, addr("10.9.0.1"), 8, 0},
                        {1, addr("10.1.0.1"), 24, 0},
                        {1, addr("10.1.0.9"), 16, 0},
                        {2, addr("fd02::1"), 64, IFA_F_DADFAILED},
                        {2, addr("fd03::1"), 64, 0}};
    const auto ethernet = Kesh::EthAddr::parse("02:00:00:00:00:01").value();
    kernel.neighbours = {{1, addr("10.1.0.2"), ethernet}, {2, addr("fd02::2"), ethernet, true}};
  }

  Nexthop& single(std::uint32_t id, const Hop& to) {
    Nexthop& made = kernel.nexthops.emplace_back();
    made.id = id;
    made.hop = to;
    const bool ip6 = to.gateway.af() == Kesh::AddressFamily::ip6;
    made.family = ip6 ? Kesh::AddressFamily::ip6 : Kesh::AddressFamily::ip4;
    return made;
  }
  void group(std::uint32_t id, std::vector<Nexthop::Member> members) {
    Nexthop& made = kernel.nexthops.emplace_back();
    made.id = id;
    made.group = std::move(members);
  }
};

TEST_F(NexthopGroupTest, EverySingleNextHopIsAGroupOfOne) {
  Hop label = hop("10.1.0.2"), dead = hop("10.1.0.2");
  label.label = 30;
  dead.dead = 1;
  single(1, hop("10.1.0.2"));
  single(2, hop("fd02::2", 2));
  single(3, {}).blackhole = true;
  single(4, labelled(hop("10.200.0.2"), {100, 200})); // the top label first
  single(5, label);
  single(6, dead);
  single(7, hop("10.1.0.2")).linkDown = true;
  single(8, hop("", 1));
  single(9, hop("", 2)).family = Kesh::AddressFamily::ip6;
  single(10, segmented(hop("11.0.0.2"), {"fc00::1"}));
  single(11, hop("10.1.0.2", 0)).forwardsFrames = true;
  single(12, hop("fd03::2", 2));
  EXPECT_EQ(showNexthopGroups(device()),
            (Routes{{"nexthop-1",
                     "1 ip4 1 of 1 in default | 10.1.0.2 eth1 02:00:00:00:00:01 10.1.0.0/24"},
                    {"nexthop-2", "2 ip6 1 of 1 in default red | fd02::2 eth2 02:00:00:00:00:01"},
                    {"nexthop-3", "3 ip4 0 of 1 in default | -"},
                    {"nexthop-4", "4 mpls ip4 1 of 1 in default | 10.200.0.2 label 200 100 eth1 "
                                  "00:00:00:00:00:00 10.0.0.0/8"},
                    {"nexthop-5", "5 mpls ip4 1 of 1 in default | 10.1.0.2 label 30 eth1 "
                                  "02:00:00:00:00:01 10.1.0.0/24"},
                    {"nexthop-6", "6 ip4 0 of 1 in default | 10.1.0.2 -"},
                    {"nexthop-7", "7 ip4 0 of 1 in default | 10.1.0.2 -"},
                    {"nexthop-8", "8 ip4 1 of 1 in default | 0.0.0.0 eth1 00:00:00:00:00:00"},
                    {"nexthop-9", "9 ip6 1 of 1 in default red | :: eth2 00:00:00:00:00:00"},
                    {"nexthop-10", "10 ip4 1 of 1 in default | 11.0.0.2 eth1 00:00:00:00:00:00"},
                    {"nexthop-12", "12 ip6 1 of 1 in default red | fd03::2 eth2 "
                                   "00:00:00:00:00:00 fd03::/64"}}));
}

TEST_F(NexthopGroupTest, GroupsHaveAnEntryAMember) {
  single(1, hop("10.1.0.2"));
  single(2, hop("fd02::2", 2));
  single(3, {}).blackhole = true;
  single(4, labelled(hop("10.1.0.2"), {100, 200}));
  single(5, hop("", 1));
  group(20, {{1, 1, 7}, {4, 6}, {99, 1, 5}});
  group(21, {{5, 1, 0}, {1, 1, 8}, {2, 1, {}}});
  group(22, {{3, 1, 4}});
  const auto made = device();
  const auto groups = showNexthopGroups(made);
  const Routes expected{
      {"nexthop-20", "20 mpls ip4 2 of 3 in default | 10.1.0.2 eth1 02:00:00:00:00:01 "
                     "10.1.0.0/24 7p | 10.1.0.2 label 200 100 eth1 02:00:00:00:00:01 "
                     "10.1.0.0/24 | - 5p"},
      {"nexthop-21", "21 ip6 3 of 3 in default red | :: eth1 00:00:00:00:00:00 0p | "
                     "::ffff:10.1.0.2 eth1 02:00:00:00:00:01 10.1.0.0/24 8p | "
                     "fd02::2 eth2 02:00:00:00:00:01"},
      {"nexthop-22", "22 ip4 0 of 1 in default | - 4p"}};
  EXPECT_EQ(groups.size(), 8u);
  for (const auto& [name, shown] : expected) EXPECT_EQ(groups.at(name), shown) << name;
  EXPECT_TRUE(made.routingHardwareStatus->nexthopGroupEntryCounterSupported);
  EXPECT_FALSE(made.routingHardwareStatus->hierarchicalFecSupported());
}

TEST_F(NexthopGroupTest, CountersAreThereOnceTheKernelCounts) {
  single(1, hop("10.1.0.2"));
  group(20, {{1, 1}});
  EXPECT_FALSE(device().routingHardwareStatus->nexthopGroupEntryCounterSupported);
  group(21, {{1, 1, 0}});
  const auto made = device();
  EXPECT_TRUE(made.routingHardwareStatus->nexthopGroupEntryCounterSupported);
  const auto& config = *made.nhgConfig->nexthopGroup.find(Lumo::Name("nexthop-21"));
  EXPECT_EQ(config->entryCounterType, Routing::NexthopGroup::EntryCounterType::perEntry);
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
