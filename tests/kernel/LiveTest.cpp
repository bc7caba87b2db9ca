// The whole source against this machine's kernel, in namespaces that the tests make.
#include "kernel/Netns.h"
#include "kernel/Shown.h"
#include "sources/kernel/Kernel.h"
#include "sources/kernel/Namespace.h"
#include "sources/kernel/Netlink.h"
#include "support/Expect.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <fstream>
#include <set>

namespace kernel_test {
namespace {

using nlohmann::json;
state::DeviceState load(const std::string& netns) { return sources::kernel::load(netns).device; }

class KernelTest : public NetnsTest {
 protected:
  void runAll(std::initializer_list<const char*> commands) const {
    for (const char* const command : commands) run(command);
  }
  /// The keys of the routes that `ip` shows, as listings have them.
  std::set<std::string> keysOfIp() const {
    std::set<std::string> keys;
    for (const bool ip6 : {false, true}) {
      for (const json& route : ask((ip6 ? "-6" : "-4") + std::string(" route show table all"))) {
        const std::string type = route.value("type", "1"), table = route.value("table", "254");
        const bool anycast4 = type == "4" && !ip6;
        if (anycast4 || route.contains("tos") || route.contains("from")) continue;
        std::string to = route.at("dst");
        if (to == "default") to = ip6 ? "::/0" : "0.0.0.0/0";
        if (to.find('/') == std::string::npos) to += ip6 ? "/128" : "/32";
        const bool isDefault = table == "254" || table == "255";
        keys.insert((isDefault ? "default " : "table-" + table + " ") + to);
      }
    }
    return keys;
  }
  /// Loads the routes, which must be those that `ip` shows, and among them the expected ones.
  Routes expectRoutes(const Routes& expected) const {
    const Routes loaded = showRoutes(load(name));
    std::set<std::string> keys;
    for (const auto& [key, shown] : loaded) keys.insert(key);
    EXPECT_EQ(keys, keysOfIp());
    expectAmong(loaded, expected);
    return loaded;
  }
  static void expectAmong(const Routes& loaded, const Routes& expected) {
    for (const auto& [key, shown] : expected) {
      EXPECT_EQ(loaded.contains(key) ? loaded.at(key) : "none", shown) << key;
    }
  }
};

TEST_F(KernelTest, AnotherDumpFollowsOneThatWasGivenUp) {
  runInside("for i in $(seq 3000); do echo route add 20.$((i / 250)).$((i % 250)).0/24 dev eth1; "
            "done | ip -batch -");
  const sources::kernel::NamespaceStay stay(name);
  sources::kernel::KernelFeed feed;
  const sources::kernel::Request routes{"IPv4 routes", RTM_GETROUTE, AF_INET, sizeof(rtmsg)};
  std::size_t count = 0;
  const auto dump = [&](bool whole) {
    count = 0;
    return feed.dump(
        routes, [&](sources::kernel::Bytes) { ++count; }, [whole] { return whole; });
  };
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(dump(false).complete);
    EXPECT_LT(count, 3000u);
  }
  EXPECT_TRUE(dump(true).complete);
  EXPECT_GE(count, 3000u);
}

const std::initializer_list<const char*> everyKind = {
    "route add default via 10.1.0.2 metric 50",
    "route add default via 10.1.0.3 proto dhcp metric 20",
    "route add 20.1.0.0/16 via 10.1.0.2 proto static",
    "route add 20.2.0.0/16 via 10.1.0.2 proto bgp metric 7",
    "route add 20.3.0.0/16 via 10.1.0.2 proto isis",
    "route add 20.4.0.0/16 via 10.1.0.2 proto ospf",
    "route add 20.5.0.0/16 via 10.1.0.2 proto rip",
    "route add 20.7.0.0/16 via 10.1.0.2 proto 77",
    "route add 20.8.0.0/16 dev eth2 proto static",
    "route add 20.9.0.0/16 via 10.1.0.2 tos 8",
    "route add blackhole 21.1.0.0/16",
    "route add unreachable 21.2.0.0/16 proto static",
    "route add prohibit 21.3.0.0/16 metric 4",
    "route add throw 21.4.0.0/16",
    "route add 22.0.0.0/8 via 10.2.0.8 table 70000",
    "route add 30.1.0.0/16 nexthop via 10.1.0.2 weight 3 nexthop via 10.2.0.2 nexthop dev eth1",
    "route add 30.2.0.0/16 nexthop via 10.1.0.2 weight 256 nexthop via 10.2.0.2 weight 255",
    "route add 30.3.0.0/16 via inet6 fe80::9 dev eth1 proto bgp",
    "-6 route add default via fd01::2 proto bgp metric 20",
    "-6 route add fd20::/64 via fd01::2 proto ospf",
    "-6 route add fd21::/64 via fe80::2 dev eth2 proto static metric 5",
    "-6 route add fd21::/64 via fe80::3 dev eth2 proto static metric 4",
    "-6 route add unreachable fd23::/64 table 100",
    "-6 route add anycast fd24::/128 dev eth1",
    "-6 route add fd25::/64 from fd01::/64 via fd01::2",
    "-6 route add fd30::/64 nexthop via fd01::2 weight 5 nexthop via fe80::7 dev eth2",
    "-6 route add fd31::/64 via fd01::3 metric 9",
    "-6 route append fd31::/64 via fd01::4 metric 9"};
TEST_F(KernelTest, EveryKindOfRoute) {
  runAll(everyKind);
  expectRoutes({
      {"default 0.0.0.0/0", "dhcp [1/20] | 10.1.0.3 eth1"},
      {"default 20.1.0.0/16", "static [1/0] | 10.1.0.2 eth1"},
      {"default 20.2.0.0/16", "bgpExternal [200/7] | 10.1.0.2 eth1"},
      {"default 20.3.0.0/16", "isisLevel2 [115/0] | 10.1.0.2 eth1"},
      {"default 20.4.0.0/16", "ospfIntraArea [110/0] | 10.1.0.2 eth1"},
      {"default 20.5.0.0/16", "rip [120/0] | 10.1.0.2 eth1"},
      {"default 20.7.0.0/16", "kernel [40/0] | 10.1.0.2 eth1"},
      {"default 20.8.0.0/16", "static [1/0] | eth2"},
      {"default 20.9.0.0/16", "none"},
      {"default 21.1.0.0/16", "drop [1/0]"},
      {"default 21.2.0.0/16", "drop [1/0]"},
      {"default 21.3.0.0/16", "drop [1/4]"},
      {"default 21.4.0.0/16", "drop [1/0]"},
      {"table-70000 22.0.0.0/8", "static [1/0] | 10.2.0.8 eth2"},
      {"default 30.1.0.0/16", "static [1/0] | 10.1.0.2 eth1 w3 | 10.2.0.2 eth2 | eth1"},
      {"default 30.2.0.0/16", "static [1/0] | 10.1.0.2 eth1 w256 | 10.2.0.2 eth2 w255"},
      {"default 30.3.0.0/16", "bgpExternal [200/0] | fe80::9 eth1"},
      {"default ::/0", "bgp [200/20] | fd01::2 eth1"},
      {"default fd20::/64", "ospf3 [110/1024] | fd01::2 eth1"},
      {"default fd21::/64", "static [1/4] | fe80::3 eth2"},
      {"table-100 fd23::/64", "drop [1/1024]"},
      {"default fd24::/128", "receive [0/1024] | eth1"},
      {"default fd25::/64", "none"},
      {"default fd30::/64", "static [1/1024] | fd01::2 eth1 w5 | fe80::7 eth2"},
      {"default fd31::/64", "static [1/9] | fd01::3 eth1 | fd01::4 eth1"},
      {"default 10.1.0.0/24", "connected [0/0] | eth1"},
      {"default 10.1.0.1/32", "receive [0/0] | eth1"},
      {"default 10.1.0.255/32", "receiveBroadcast [0/0] | eth1"},
  });
}

TEST_F(KernelTest, NexthopObjectsAndGroups) {
  if (!tries("nexthop add id 1 via 10.1.0.2 dev eth1")) GTEST_SKIP() << "no nexthop objects here";
  runAll({"nexthop add id 2 via 10.2.0.2 dev eth2", "nexthop add id 3 blackhole",
          "nexthop add id 4 via fe80::4 dev eth2", "nexthop add id 10 group 1,7/2",
          "nexthop add id 6 via 10.9.0.9 fdb", "route add 40.1.0.0/16 nhid 1",
          "route add 40.3.0.0/16 nhid 3", "route add 40.4.0.0/16 nhid 4",
          "route add 40.10.0.0/16 nhid 10 proto bgp", "-6 route add fd40::/64 nhid 4"});
  const Routes routes = expectRoutes(
      {{"default 40.1.0.0/16", "static [1/0] | 10.1.0.2 eth1"},
       {"default 40.3.0.0/16", "drop [1/0]"},
       {"default 40.4.0.0/16", "static [1/0] | fe80::4 eth2"},
       {"default 40.10.0.0/16", "bgpExternal [200/0] | 10.1.0.2 eth1 w7 | 10.2.0.2 eth2"},
       {"default fd40::/64", "static [1/1024] | fe80::4 eth2"}});
  const auto device = load(name);
  const char* const none =
      device.routingHardwareStatus->nexthopGroupEntryCounterSupported ? " 0p" : "";
  const auto groups = showNexthopGroups(device);
  EXPECT_EQ(groups.size(), 5u);
  EXPECT_EQ(groups.at("nexthop-3"), "3 ip4 0 of 1 in default | -");
  EXPECT_EQ(groups.at("nexthop-10"),
            std::string("10 ip4 2 of 2 in default | 10.1.0.2 eth1 00:00:00:00:00:00 10.1.0.0/24") +
                none + " | 10.2.0.2 eth2 00:00:00:00:00:00 10.2.0.0/24" + none);
  // Now the kernel gives the object's number alone.
  runInside("echo 0 > /proc/sys/net/ipv4/nexthop_compat_mode");
  EXPECT_EQ(showRoutes(load(name)), routes);
}

TEST_F(KernelTest, ResilientNexthopGroups) {
  if (!tries("nexthop add id 1 via 10.1.0.2 dev eth1") ||
      !tries("nexthop add id 12 group 1 type resilient buckets 8")) {
    GTEST_SKIP() << "a kernel without resilient nexthop groups";
  }
  EXPECT_TRUE(showNexthopGroups(load(name))
                  .at("nexthop-12")
                  .starts_with("12 ip4 1 of 1 in default | 10.1.0.2 eth1 00:00:00:00:00:00 "
                               "10.1.0.0/24"));
}

TEST_F(KernelTest, NextHopOfADownInterfaceIsNotUsed) {
  runAll({"route add 41.0.0.0/8 nexthop via 10.1.0.2 nexthop via 10.2.0.2", "link set eth2 down"});
  expectRoutes({{"default 41.0.0.0/8", "static [1/0] | 10.1.0.2 eth1"}});
}

TEST_F(KernelTest, ManyRoutesArriveWhole) {
  const std::string file = testing::TempDir() + name;
  std::ofstream batch(file);
  for (int i = 0; i < 20000; ++i) {
    batch << "route add 50." << i / 200 << "." << i % 200 << ".0/24 via 10.1.0." << 2 + i % 5
          << "\n";
  }
  batch.close();
  const bool added = tries("-batch " + file);
  std::filesystem::remove(file);
  ASSERT_TRUE(added);
  const Routes routes = expectRoutes({{"default 50.99.199.0/24", "static [1/0] | 10.1.0.6 eth1"}});
  EXPECT_GE(routes.size(), 20000u);
}

/// Has the kernel add and remove routes and interfaces all the time, until it goes.
class Churn {
 public:
  Churn(const std::string& netns, const std::string& folder) : folder_(folder + netns + "-churn") {
    std::filesystem::create_directory(folder_);
    std::ofstream add(folder_ + "/add"), del(folder_ + "/del");
    for (int i = 0; i < 200; ++i) {
      const std::string routes[] = {"route VERB 60." + std::to_string(i) + ".0.0/16 via 10.1.0.2",
                                    "route VERB fd60:" + std::to_string(i) + "::/64 via fd01::2"};
      for (std::string line : routes) {
        add << line.replace(line.find("VERB"), 4, "add") << "\n";
        del << line.replace(line.find("add"), 3, "del") << "\n";
      }
    }
    add << "link add moving type veth peer name moving2\nlink set moving up\n"
        << "addr add 61.0.0.1/24 dev moving\nroute add 62.0.0.0/8 dev moving\n";
    del << "link del moving\n";
    const std::string batch = "ip -n " + netns + " -force -batch " + folder_ + "/";
    shell_ = popen(("while [ -e " + folder_ + "/add ]; do " + batch + "add; " + batch +
                    "del; done >/dev/null 2>&1")
                       .c_str(),
                   "r");
  }
  ~Churn() {
    std::filesystem::remove(folder_ + "/add"); // ends the loop
    pclose(shell_);
    std::filesystem::remove_all(folder_);
  }
  Churn(const Churn&) = delete;
  Churn& operator=(const Churn&) = delete;

 private:
  std::string folder_;
  FILE* shell_;
};

TEST_F(KernelTest, WhatStaysIsListedWhileOthersComeAndGo) {
  const std::string file = testing::TempDir() + name;
  std::ofstream batch(file);
  std::set<std::string> stable;
  for (int i = 1; i <= 3000; ++i) {
    const std::string middle = std::to_string(i / 200) + "." + std::to_string(i % 200);
    batch << "route add 50." << middle << ".0/24 via 10.1.0.2\n";
    batch << "route add fd50:" << i << "::/64 via fd01::2\n";
    stable.insert("default 50." + middle + ".0/24");
    stable.insert("default fd50:" + std::to_string(i) + "::/64");
  }
  batch.close();
  ASSERT_TRUE(tries("-batch " + file));
  std::filesystem::remove(file);
  const Churn churn(name, testing::TempDir());
  for (int round = 0; round < 10; ++round) {
    const Routes routes = showRoutes(load(name));
    std::size_t found = 0;
    for (const std::string& key : stable) found += routes.contains(key);
    EXPECT_EQ(found, stable.size());
    for (const auto& [key, shown] : routes) EXPECT_EQ(shown.find("absent"), shown.npos) << key;
  }
}

/// What is asked for shows as it does among everything.
TEST_F(KernelTest, PartsAreAsInTheWhole) {
  runAll(everyKind);
  run("route add 23.0.0.0/8 via 10.1.0.2 table 7");
  const state::DeviceState whole = load(name);
  for (const char* const vrf : {"default", "table-7", "table-70000"}) {
    for (const bool ip4 : {true, false}) {
      const sources::Needs needs{
          .ip4 = ip4, .ip6 = !ip4, .neighbours = false, .nexthopGroups = false, .vrf = vrf};
      const auto part = sources::kernel::load(name, needs).device;
      ASSERT_TRUE(part.vrf(vrf)) << vrf;
      Routes inWhole, inPart;
      if (ip4) {
        addShown(whole, vrf, whole.vrf(vrf)->routingStatus->route, inWhole);
        addShown(part, vrf, part.vrf(vrf)->routingStatus->route, inPart);
      } else {
        addShown(whole, vrf, whole.vrf(vrf)->routing6Status->route, inWhole);
        addShown(part, vrf, part.vrf(vrf)->routing6Status->route, inPart);
      }
      EXPECT_EQ(inPart, inWhole) << vrf << (ip4 ? " IPv4" : " IPv6");
    }
  }
  EXPECT_EQ(sources::kernel::load(name).notes.hiddenRoutes, 3u);
  EXPECT_EQ(sources::kernel::load(name, {.vrf = "nosuch"}).device.vrfs.size(), whole.vrfs.size());
}

template <class Addresses>
std::set<std::string> texts(const Addresses& addresses) {
  std::set<std::string> out;
  for (const auto& one : addresses) out.insert(one.stringValue().str());
  return out;
}

template <class Neighbours>
std::string ethernetOf(const Neighbours& table, std::uint32_t vrf, const char* interface,
                       const char* address) {
  bool found = false;
  const Arp::Table::ArpKey key{Vrf::VrfIdMap::VrfId(vrf), Kesh::IntfId(interface),
                               Kesh::IpGenAddr::parse(address).value()};
  const auto* const entry = table.safeLookup(key, found, 0);
  return found ? entry->ethAddr.stringValue().str() : "none";
}

TEST_F(KernelTest, AddressesDescriptionsAndNeighbours) {
  runAll({"addr add 10.1.0.7/24 dev eth1", "addr add 10.8.0.1 peer 10.8.0.2/32 dev eth1",
          "addr add fd01::7/64 dev eth1 nodad", "link set eth1 alias \"to the core, 2\"",
          "neigh add 10.1.0.2 lladdr 02:00:00:00:00:02 dev eth1",
          "neigh add 10.1.0.3 lladdr 02:00:00:00:00:03 dev eth1 nud noarp",
          "-6 neigh add fd01::2 lladdr 02:00:00:00:00:04 dev eth1 nud stale"});
  const auto device = load(name);
  const Kesh::IntfId eth1("eth1");
  const auto& ip4 = *device.ipStatus->ipIntfStatus.find(eth1);
  const auto& ip6 = *device.ip6Status->ip6IntfStatus.find(eth1);
  EXPECT_EQ(ip4.primary->stringValue().str(), "10.1.0.1/24");
  EXPECT_EQ(texts(ip4.activeSecondary), (std::set<std::string>{"10.1.0.7/24", "10.8.0.1/32"}));
  EXPECT_EQ(texts(ip6.addr), (std::set<std::string>{"fd01::1/64", "fd01::7/64"}));
  EXPECT_EQ(device.allIntfConfig->intfConfig(eth1)->description.str(), "to the core, 2");
  EXPECT_FALSE(device.allIntfConfig->intfConfig(Kesh::IntfId("eth2")));
  EXPECT_EQ(ethernetOf(device.arpVanta->arpEntry, 0, "eth1", "10.1.0.2"), "02:00:00:00:00:02");
  EXPECT_EQ(device.arpVanta->arpEntry.members(), 1u);
  EXPECT_EQ(ethernetOf(device.arpVanta->neighborEntry, 0, "eth1", "fd01::2"), "02:00:00:00:00:04");
}

TEST_F(KernelTest, RoutingIsOnWhereTheKernelForwards) {
  for (const char* const on : {"0", "1"}) {
    const std::string echo = std::string("echo ") + on + " > /proc/sys/net/";
    runInside(echo + "ipv4/ip_forward");
    runInside(echo + "ipv6/conf/all/forwarding");
    const auto device = load(name);
    EXPECT_EQ(device.vrfs[0].routingConfig->routing, *on == '1');
    EXPECT_EQ(device.vrfs[0].routing6Config->routing, *on == '1');
  }
}

TEST_F(KernelTest, VrfDevices) {
  if (!tries("link add red type vrf table 10")) GTEST_SKIP() << "a kernel without vrf devices";
  runAll({"link set red up", "link set eth2 master red",
          "route add 43.0.0.0/8 via 10.2.0.2 vrf red",
          "neigh add 10.2.0.2 lladdr 02:00:00:00:00:02 dev eth2"});
  const auto device = load(name);
  EXPECT_EQ(device.vrf("red")->id.value(), 10u);
  EXPECT_EQ(showRoutes(device).at("red 43.0.0.0/8"), "static [1/0] | 10.2.0.2 eth2");
  EXPECT_EQ(device.ipStatus->ipIntfStatus.find(Kesh::IntfId("eth2"))->vrf->stringValue().str(),
            "red");
  EXPECT_EQ(ethernetOf(device.arpVanta->arpEntry, 10, "eth2", "10.2.0.2"), "02:00:00:00:00:02");
}

TEST_F(KernelTest, MplsLabels) {
  if (!tries("route add 44.1.0.0/16 encap mpls 100 via 10.1.0.2")) {
    GTEST_SKIP() << "a kernel without MPLS encapsulation";
  }
  runAll({"route add 44.2.0.0/16 encap mpls 100/200 via 10.1.0.2",
          "-6 route add fd44::/64 nexthop encap mpls 300/400 via fd01::2 dev eth1 "
          "nexthop via fd01::3 dev eth1"});
  expectRoutes({{"default 44.1.0.0/16", "static [1/0] | 10.1.0.2 eth1 label 100"},
                {"default 44.2.0.0/16", "static [1/0] | 1.1 (10.1.0.2 eth1 label 100 200)"},
                {"default fd44::/64",
                 "static [1/1024] | 1.2 (fd01::2 eth1 label 300 400) | 1.3 (fd01::3 eth1)"}});
  if (!tries("nexthop add id 1 encap mpls 100/200 via 10.1.0.2 dev eth1")) return;
  EXPECT_EQ(showNexthopGroups(load(name)).at("nexthop-1"),
            "1 mpls ip4 1 of 1 in default | 10.1.0.2 label 200 100 eth1 00:00:00:00:00:00 "
            "10.1.0.0/24");
}

TEST_F(KernelTest, SegmentRouting) {
  if (!tries("-6 route add fd45:1::/64 encap seg6 mode encap segs fc00::1,fc00::2 via fd01::2")) {
    GTEST_SKIP() << "a kernel without SRv6 encapsulation";
  }
  runAll({"-6 route add fd45:2::/64 encap seg6 mode inline segs fc00::1,fc00::3 dev eth1",
          "route add 45.0.0.0/8 encap seg6 mode encap segs fc00::4 via 10.1.0.2"});
  Routes expected = {{"default 45.0.0.0/8", "static [1/0] | 7.1 to fc00::4/128 (10.1.0.2 eth1)"},
                     {"default fd45:1::/64", "static [1/1024] | 7.3 to fc00::2/128 (fd01::2 eth1)"},
                     {"default fd45:2::/64", "static [1/1024] | 7.2 to fc00::3/128 (:: eth1)"}};
  if (tries("-6 route add fd45:3::/64 encap seg6local action End dev eth1")) {
    expected["default fd45:3::/64"] = "static [1/1024] | eth1";
  }
  if (tries("nexthop add id 5 encap seg6 mode encap segs fc00::4 via 10.1.0.2 dev eth1")) {
    run("route add 46.0.0.0/8 nhid 5");
    expected["default 46.0.0.0/8"] = expected["default 45.0.0.0/8"];
  }
  expectRoutes(expected);
}

TEST_F(KernelTest, VxlanTunnels) {
  if (!tries("link add vxlan0 type vxlan external dstport 4789")) {
    GTEST_SKIP() << "a kernel without VXLAN devices";
  }
  runAll({"link set vxlan0 up", "addr add 10.9.0.1/24 dev vxlan0"});
  if (!tries("route add 47.1.0.0/16 encap ip id 100 dst 192.0.2.1 via 10.9.0.2 dev vxlan0")) {
    GTEST_SKIP() << "a kernel without IP encapsulation of routes";
  }
  runAll({"route add 47.2.0.0/16 encap ip6 id 16777215 dst 2001:db8::1 via 10.9.0.3 dev vxlan0",
          "route add 47.3.0.0/16 encap ip id 100 dst 192.0.2.1 via 10.1.0.2 dev eth1",
          "neigh add 10.9.0.2 lladdr 02:00:00:00:00:02 dev vxlan0 nud noarp"});
  // `ip -j` gives the remote end and the prefix the same name.
  expectAmong(
      showRoutes(load(name)),
      {{"default 47.1.0.0/16", "static [1/0] | 6.1 VTEP 192.0.2.1 VNI 100 MAC 02:00:00:00:00:02"},
       {"default 47.2.0.0/16",
        "static [1/0] | 6.2 VTEP 2001:db8::1 VNI 16777215 MAC 00:00:00:00:00:00"},
       {"default 47.3.0.0/16", "static [1/0] | 10.1.0.2 eth1"}});
}

/// The configured tunnels, "Tunnel3 GRE 10.1.0.1 to 10.1.0.2 key 7 ttl 9".
std::set<std::string> configuredTunnels(const state::DeviceState& device) {
  std::set<std::string> out;
  device.tunnelFib->entries.forEach([&](Tunnel::TunnelTable::TunnelId id, const auto& entry) {
    const auto encap = entry.tunnelVia.at(0).encapId;
    const bool gre = encap.kind() == Tunnel::TunnelTable::EncapKind::gre;
    const auto key = device.tunnelFib->greEncap(encap).greKey;
    const Tunnel::L3TunnelInfo* ends = &device.tunnelFib->ipsecVtiEncap(encap);
    if (gre) ends = &device.tunnelFib->greEncap(encap);
    out.insert("Tunnel" + std::to_string(id.index()) + (gre ? " GRE " : " VTI ") +
               ends->source.stringValue().str() + " to " + ends->destination.stringValue().str() +
               " key " + std::to_string(key) + " ttl " + std::to_string(ends->ttl));
  });
  return out;
}

TEST_F(KernelTest, ConfiguredTunnels) {
  const struct {
    const char *command, *shown;
  } cases[] = {
      {"link add Tunnel3 type gre local 10.1.0.1 remote 10.1.0.2 key 7 ttl 9",
       "Tunnel3 GRE 10.1.0.1 to 10.1.0.2 key 7 ttl 9"},
      {"link add Tunnel4 type ip6gre local fd01::1 remote fd01::2 ttl 64",
       "Tunnel4 GRE fd01::1 to fd01::2 key 0 ttl 64"},
      {"link add Tunnel5 type gretap local 10.1.0.1 remote 10.1.0.2",
       "Tunnel5 GRE 10.1.0.1 to 10.1.0.2 key 0 ttl 0"},
      {"link add Tunnel6 type vti local 10.1.0.1 remote 10.1.0.2 key 5",
       "Tunnel6 VTI 10.1.0.1 to 10.1.0.2 key 0 ttl 0"},
      {"link add Tunnel7 type vti6 local fd01::1 remote fd01::2",
       "Tunnel7 VTI fd01::1 to fd01::2 key 0 ttl 0"},
  };
  std::set<std::string> expected;
  for (const auto& one : cases) {
    if (tries(one.command)) expected.insert(one.shown);
  }
  if (expected.empty()) GTEST_SKIP() << "a kernel without GRE and VTI devices";
  EXPECT_EQ(configuredTunnels(load(name)), expected);
}

/// The network namespace of this thread.
ino_t currentNamespace() {
  struct stat status {};
  stat("/proc/thread-self/ns/net", &status);
  return status.st_ino;
}

std::string errorOf(const std::string& netns) {
  return support::messageOf<sources::SourceError>([&] { load(netns); });
}

TEST(Namespaces, NamesThatAreNotThereSayWhereTheyWereLookedFor) {
  const ino_t home = currentNamespace();
  EXPECT_TRUE(errorOf("rova-no-such")
                  .starts_with("cannot enter network namespace \"rova-no-such\": it is not in "
                               "/run/netns, which has "))
      << errorOf("rova-no-such");
  for (const char* const name : {"../netns/x", ".", "..", "/proc/self/ns/net"}) {
    EXPECT_TRUE(errorOf(name).starts_with('"' + std::string(name) + "\" is not the name of a"))
        << name;
  }
  EXPECT_EQ(currentNamespace(), home);
}

TEST_F(KernelTest, ProcessIsBackInItsNamespaceAlsoBehindAnError) {
  const ino_t home = currentNamespace();
  EXPECT_TRUE(load("").ipStatus->ipIntfStatus.find(Kesh::IntfId("lo"))) << "the process's own";
  load(name);
  EXPECT_EQ(currentNamespace(), home);
  try {
    const sources::kernel::NamespaceStay stay(name);
    EXPECT_NE(currentNamespace(), home);
    throw sources::SourceError("inside");
  } catch (const sources::SourceError&) {
    EXPECT_EQ(currentNamespace(), home);
  }
}

TEST_F(KernelTest, FileThatIsNoNamespaceIsNamed) {
  const std::string plain = name + "-plain";
  std::ofstream("/run/netns/" + plain) << "x";
  const std::string error = errorOf(plain);
  std::filesystem::remove("/run/netns/" + plain);
  EXPECT_EQ(error, "cannot enter network namespace \"" + plain +
                       "\": Invalid argument; /run/netns/" + plain +
                       " is a file that is no network namespace");
}

TEST_F(KernelTest, EnteringWithoutTheRightSaysWhatIsNeeded) {
  ASSERT_EQ(seteuid(65534), 0);
  const std::string error = errorOf(name);
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(error,
            "cannot enter network namespace \"" + name +
                "\": Operation not permitted; entering a namespace needs root (CAP_SYS_ADMIN)");
}

} // namespace
} // namespace kernel_test
