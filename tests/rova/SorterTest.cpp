// A sorter's life: what it loads, what it traces, when it yields.
#include "support/Device.h"
#include "support/Expect.h"
#include "support/Process.h"

namespace {

using namespace support;
using Lines = std::vector<std::string>;

template <class Family>
struct SorterTest : testing::Test {
  using Sorter = Rova::Sorter<Family>;

  auto open(const Query& query = {}) { return openSorter<Family>(device, query); }
  void staticRoutes(std::uint32_t count) {
    const auto fec = device.fec({});
    for (std::uint32_t i = 0; i < count; ++i) {
      typename Family::Route route;
      route.key = numbered(i, typename Family::Address());
      route.routeType = Texts<Family>::Type::staticRoute;
      route.fecId = fec;
      device.template routes<Family>().insert(route);
    }
  }
  static Kesh::Prefix numbered(std::uint32_t i, Kesh::IpAddr) {
    return Kesh::pfx(0x0a000000 + i, 32);
  }
  static Kesh::Ip6Prefix numbered(std::uint32_t i, Kesh::Ip6Addr) {
    return Kesh::pfx(Kesh::Ip6Addr::fromHalves(0x20010db800000000, i), 128);
  }

  Device device;
};
TYPED_TEST_SUITE(SorterTest, Families, FamilyNames);

TEST(LocalAddressTest, AnInterfaceWithoutConfigurationIsOfTheVrfWithoutName) {
  Device device;
  device.interface("Ethernet1", "10.0.0.1/24");
  device.state.ipStatus->ipIntfStatus.find(intf("Ethernet1"))->vrf.reset();
  EXPECT_EQ(openSorter<Rova::Ip4Family>(device)->addrToIntfIds(), 0u);
  device.vrf("", 6);
  EXPECT_EQ(openSorter<Rova::Ip4Family>(device, {.vrf = ""})->addrToIntfIds(), 1u);
}

TYPED_TEST(SorterTest, FindsTheTunnelTablesThatThereAre) {
  using namespace Tunnel::TunnelTable;
  auto& dir = *this->device.state.tunnelTableDir;
  const auto sr = Lumo::newEntity<SrTunnelTable>();
  const auto bgpLu = Lumo::newEntity<BgpLuTunnelTable>();
  dir.entityIs("sr", sr);
  dir.entityIs("static", Lumo::newEntity<LdpTunnelTable>()); // of another type
  dir.entityIs("ldp", nullptr);
  dir.entityIs("bgpLu", bgpLu);
  dir.entityIs("SR", Lumo::newEntity<SrTunnelTable>());
  const auto sorter = this->open();
  EXPECT_TRUE(sorter->srTunnelTable() == sr);
  EXPECT_FALSE(sorter->staticTunnelTable());
  EXPECT_FALSE(sorter->ldpTunnelTable());
  EXPECT_TRUE(sorter->bgpLuTunnelTable() == bgpLu);
  dir.entityDel("sr");
  EXPECT_FALSE(this->open()->srTunnelTable());
}

TYPED_TEST(SorterTest, TracesItsEntriesOnLevelEightAlone) {
  this->device.vrf("red", 5);
  this->staticRoutes(1);
  const std::string type = TypeParam::sorterTypeName;
  for (const unsigned level : {0u, 1u, 3u, 7u, 9u}) {
    const Traced trace("CliSupport", {level});
    textOf(this->open());
    EXPECT_EQ(trace.texts, Lines()) << level;
  }
  const Traced trace("CliSupport", {8});
  const auto sorter = this->open();
  this->open({.vrf = "red"});
  textOf(sorter);
  ASSERT_GE(trace.texts.size(), 6u);
  const std::string shortName = type.substr(type.rfind(':') + 1);
  EXPECT_EQ(trace.texts[0], "void " + type + "::handleInitialized()");
  EXPECT_EQ(trace.functions[0], "handleInitialized");
  EXPECT_EQ(trace.texts[1], shortName + " created for vrfName: default, vrfId: 0");
  EXPECT_EQ(trace.texts[3], shortName + " created for vrfName: red, vrfId: 5");
  EXPECT_EQ(trace.functions[4], "printRoutes");
  EXPECT_NE(trace.texts[4].find(type + "::printRoutes("), std::string::npos) << trace.texts[4];
  EXPECT_EQ(trace.functions[5], "printRoute");
  EXPECT_EQ(trace.place.substr(0, trace.place.find(':')), "CliSupport 8 CliSupport");
}

TEST(HostLegendTest, ExplainsTheCodes) {
  Device device;
  EXPECT_EQ(openSorter<Rova::Ip4Family>(device)->hostLegend().str(),
            "R - receive, B - broadcast, F - FIB, A - attached, D - directed broadcast\n");
  EXPECT_EQ(openSorter<Rova::Ip6Family>(device)->hostLegend().str(),
            "R - receive, F - FIB, A - attached\n");
}

TYPED_TEST(SorterTest, YieldsOnThe2001stRouteOfTheWholeTable) {
  const Unreleasable unreleasable;
  this->staticRoutes(2000);
  EXPECT_EQ(this->open()->sortedRoutes(), 2000u);
  this->staticRoutes(2001);
  EXPECT_THROW(this->open(), Lumo::InternalException);
  EXPECT_EQ(
      this->open({.prefix = Texts<TypeParam>::everything, .longerPrefixes = true})->sortedRoutes(),
      2001u)
      << "a query for longer prefixes does not yield";
}

} // namespace
