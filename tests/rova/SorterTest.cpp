// A sorter's life: what it loads, how a print ends, what it traces, when it yields.
#include "support/Device.h"
#include "support/Expect.h"
#include "support/Process.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <thread>

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

TYPED_TEST(SorterTest, AnInterruptEndsThePrintAndIsTold) {
  this->staticRoutes(3);
  const auto sorter = this->open();
  const Sink sink;
  testing::internal::CaptureStdout();
  bool complete = true;
  {
    const Interrupted interrupted;
    complete = sorter->printRoutes(static_cast<std::uint32_t>(sink.fd()), 1);
  }
  const std::string told = testing::internal::GetCapturedStdout();
  EXPECT_FALSE(complete);
  EXPECT_EQ(sink.text(), "");
  EXPECT_EQ(told.substr(0, 8), "exiting ");
  EXPECT_GT(told.size(), 9u) << "the exception's text follows";
  EXPECT_EQ(told.find('\n'), told.size() - 1);
  EXPECT_TRUE(sorter->printRoutes(static_cast<std::uint32_t>(sink.fd()), 1));
}

TYPED_TEST(SorterTest, AReaderThatWentAwayEndsThePrintAndOtherFailuresPass) {
  const auto before = std::signal(SIGPIPE, SIG_IGN); // as the program does
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(this->open()->printRoutes(static_cast<std::uint32_t>(ends[1]), 1));
  EXPECT_EQ(testing::internal::GetCapturedStdout().substr(0, 8), "exiting ");
  close(ends[1]);
  std::signal(SIGPIPE, before);
  const int full = ::open("/dev/full", O_WRONLY);
  EXPECT_THROW(this->open()->printRoutes(static_cast<std::uint32_t>(full), 1),
               scrivo::WriteException);
  ::close(full);
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

TEST(AllowWatchdogTest, YieldsOnEvery2001stCall) {
  const Lumo::ActivityLockHold hold;
  std::uint32_t counter = 1999;
  Rova::allowWatchdog(counter);
  EXPECT_EQ(counter, 2000u);
  {
    const Unreleasable unreleasable;
    EXPECT_THROW(Rova::allowWatchdog(counter), Lumo::InternalException);
    EXPECT_EQ(counter, 0u);
    for (int i = 0; i < 2000; ++i) Rova::allowWatchdog(counter);
    EXPECT_EQ(counter, 2000u);
    EXPECT_THROW(Rova::allowWatchdog(counter), Lumo::InternalException);
  }
  counter = 2000;
  Rova::allowWatchdog(counter);
  EXPECT_EQ(counter, 0u);
}

TEST(AllowWatchdogTest, OthersGetTheLockMeanwhile) {
  const Lumo::ActivityLockHold hold;
  std::atomic<bool> taken = false;
  std::thread other([&] {
    const Lumo::ActivityLockHold held;
    taken = true;
  });
  int yields = 0;
  for (std::uint32_t counter = 2000; !taken && yields < 10000; counter = 2000, ++yields) {
    Rova::allowWatchdog(counter);
  }
  EXPECT_TRUE(taken);
  { // the other thread must not be waited for while the lock is held
    const Lumo::UnlockAnchor anchor(Lumo::ActivityUnlockAnchor::lock());
    other.join();
  }
}

} // namespace
