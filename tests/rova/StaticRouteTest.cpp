// Configured routes as lines: every piece of a line, the order of the lines, and the saving walk.
#include "support/Expect.h"
#include "support/Process.h"
#include "support/StaticRoutes.h"

namespace {

using namespace support;
using Routing::RouteType;

struct StaticRouteTest : testing::Test {
  Lumo::ActivityLockHold lock;
  Lumo::Ptr<Routing::ConfigGen> config = Lumo::newEntity<Routing::ConfigGen>();

  Routing::Route& route(const char* prefix, std::uint8_t preference = 1,
                        RouteType type = RouteType::forward) {
    return enterRoute(*config, prefix, preference, type);
  }
  std::string saved(bool saveAll = false, const Rova::RovaConsts& consts = {}) const {
    return Rova::StaticRoutesCliSaver().save(config, saveAll, "ip route ", consts).str();
  }
};

/// A via and what its route says of it; `line` is what follows the prefix.
struct ViaCase {
  const char* line;
  ViaParts via;
  std::optional<bool> bfd = {};
  std::uint8_t preference = 1;
  std::uint32_t tag = 0;
  std::optional<const char*> name = {};
  const char* leakVrf = "";
  bool saveAll = false;
};

const ViaCase viaCases[] = {
    {" Ethernet1 1.1.1.1 label 100 track bfd 5 tag 7 name core leak vrf red",
     {.interface = "Ethernet1", .hop = "1.1.1.1", .label = 100},
     true,
     5,
     7,
     "core",
     "red"},
    {" Ethernet1", {.interface = "Ethernet1", .label = 100}},
    {" 1.1.1.1", {.hop = "1.1.1.1"}},
    {" 2001:db8::1 label 0", {.hop = "2001:db8::1", .label = 0}},
    {" Vlan10 fe80::1", {.interface = "Vlan10", .hop = "fe80::1"}},
    {" Ethernet1", {.interface = "Ethernet1", .hop = "0.0.0.0", .label = 16}},
    {" Ethernet1", {.interface = "Ethernet1", .hop = "::", .label = 16}},
    {"", {}},
    {" 1.1.1.1", {.hop = "1.1.1.1"}, false},
    {" track bfd vtep 192.0.2.9 vni 5001 router-mac-address 00:11:22:33:44:55 9 tag 8 name far",
     {.vtep = "192.0.2.9", .vni = 5001, .routerMac = "00:11:22:33:44:55"},
     true,
     9,
     8,
     "far"},
    {" Ethernet1 vtep 2001:db8::9 vni 0 router-mac-address 00:00:00:00:00:00",
     {.interface = "Ethernet1", .hop = "0.0.0.0", .vtep = "2001:db8::9"}},
    {" vtep 0.0.0.0 vni 0 router-mac-address 00:00:00:00:00:00", {.vtep = "0.0.0.0"}},
    {" Ethernet1", {.interface = "Ethernet1", .vni = 5001, .routerMac = "00:11:22:33:44:55"}},
    {" 1.1.1.1", {.hop = "1.1.1.1"}, {}, 1, 0, ""},
    {" 1.1.1.1 1 tag 0", {.hop = "1.1.1.1"}, {}, 1, 0, "", "", true},
    {" 1.1.1.1 255 tag 4294967295", {.hop = "1.1.1.1"}, {}, 255, 4294967295},
};

TEST_F(StaticRouteTest, WritesThePiecesOfAViaInTheirOrder) {
  for (const auto& c : viaCases) {
    auto& on = route("10.0.0.0/8", c.preference);
    const auto via = viaOf(c.via);
    on.via.insertOrAssign(via, true);
    if (c.bfd) on.bfdTracked.insertOrAssign(via, *c.bfd);
    if (c.name) on.viaNextHopName.insertOrAssign(via, *c.name);
    on.tag = c.tag;
    on.leakVrf = L3::VrfName(c.leakVrf);
    EXPECT_EQ(saved(c.saveAll), std::string("ip route 10.0.0.0/8") + c.line + "\n");
    config->route.erase(on.key);
  }
}

/// Preference 200, tag 9 and the name "spare" go without saying.
const Rova::RovaConsts otherDefaults(200, 9, "spare");

/// A route of one line: `name` is that of a drop route or of the group.
struct RouteCase {
  const char* line;
  RouteType type;
  std::uint8_t preference = 1;
  std::uint32_t tag = 0;
  const char* name = "";
  bool saveAll = false;
  Rova::RovaConsts consts = {};
};

TEST_F(StaticRouteTest, WritesDropAndGroupRoutesOnOneLine) {
  const RouteCase cases[] = {
      {" Null0", RouteType::drop},
      {" Null0 200", RouteType::drop, 200},
      {" Null0 1 tag 0", RouteType::drop, 1, 0, "", true},
      {" Null0 5 tag 7 name spare", RouteType::drop, 5, 7, "spare"},
      {" Null0", RouteType::drop, 200, 9, "spare", false, otherDefaults},
      {" Null0 200 tag 9", RouteType::drop, 200, 9, "spare", true, otherDefaults},
      {" Null0 name ", RouteType::drop, 200, 9, "", false, otherDefaults},
      {" Null0 1 tag 0 name ", RouteType::drop, 1, 0, "", false, otherDefaults},
      {" Nexthop-Group", RouteType::nexthopGroup},
      {" Nexthop-Group west 5 tag 7", RouteType::nexthopGroup, 5, 7, "west"},
      {" Nexthop-Group west 1 tag 0", RouteType::nexthopGroup, 1, 0, "west", true},
      {" Nexthop-Group", RouteType::nexthopGroup, 200, 9, "", false, otherDefaults},
  };
  for (const auto& c : cases) {
    auto& on = route("10.0.0.0/8", c.preference, c.type);
    on.tag = c.tag;
    (c.type == RouteType::drop ? on.dropNextHopName : on.nexthopGroupName) = c.name;
    // What belongs to routes of other types does not show.
    const auto stray = viaOf({.interface = "Ethernet1"});
    on.via.insertOrAssign(stray, true);
    on.viaNextHopName.insertOrAssign(stray, "stray");
    on.leakVrf = L3::VrfName("red");
    if (c.type == RouteType::nexthopGroup) on.dropNextHopName = "stray";
    EXPECT_EQ(saved(c.saveAll, c.consts), std::string("ip route 10.0.0.0/8") + c.line + "\n");
    config->route.erase(on.key);
  }
}

TEST_F(StaticRouteTest, ANameThatIsTheDefaultIsNeverWrittenForAVia) {
  auto& on = route("10.0.0.0/8", 200);
  on.tag = 9;
  const auto via = viaOf({.hop = "1.1.1.1"});
  on.via.insertOrAssign(via, true);
  for (const auto& [name, piece] : {std::pair("spare", ""), {"", ""}, {"core", " name core"}}) {
    on.viaNextHopName.insertOrAssign(via, name);
    EXPECT_EQ(saved(false, otherDefaults),
              std::string("ip route 10.0.0.0/8 1.1.1.1") + piece + "\n");
    EXPECT_EQ(saved(true, otherDefaults),
              std::string("ip route 10.0.0.0/8 1.1.1.1 200 tag 9") + piece + "\n");
  }
}

TEST_F(StaticRouteTest, OrdersLinesByAddressMaskPreferenceAndVia) {
  addVias(route("10.0.0.0/16"), {{.hop = "1.1.1.1"}});
  addVias(route("10.0.0.0/8", 5), {{.hop = "1.1.1.1"}});
  addVias(route("10.0.0.0/8", 1), {{.interface = "Ethernet10", .hop = "1.1.1.2"},
                                   {.interface = "Ethernet2", .hop = "1.1.1.9"},
                                   {.hop = "1.1.1.3"}});
  addVias(route("9.255.0.0/24", 255), {{.hop = "1.1.1.1"}});
  addVias(route("2001:db8::/32"), {{.hop = "fe80::1"}});
  addVias(route("900::/8"), {{.hop = "fe80::1"}}); // below 9.255.0.0 in the same sixteen bytes
  route("10.9.0.0/16");                            // without vias
  addVias(route("10.8.0.0/16"), {{.hop = "1.1.1.1"}});
  config->route.find({prefix("10.8.0.0/16"), 1})->ptr()->dynamic = true;
  EXPECT_EQ(saved(), "ip route 900::/8 fe80::1\n"
                     "ip route 9.255.0.0/24 1.1.1.1 255\n"
                     "ip route 10.0.0.0/8 1.1.1.3\n"
                     "ip route 10.0.0.0/8 Ethernet2 1.1.1.9\n"
                     "ip route 10.0.0.0/8 Ethernet10 1.1.1.2\n"
                     "ip route 10.0.0.0/8 1.1.1.1 5\n"
                     "ip route 10.0.0.0/16 1.1.1.1\n"
                     "ip route 2001:db8::/32 fe80::1\n");
}

TEST(RouteSortKeyTest, ComparesBytesThenMaskThenPreference) {
  const auto key = [](const char* text, std::uint8_t preference) {
    return Rova::RouteSortKey(prefix(text), preference);
  };
  const Rova::RouteSortKey ascending[] = {
      key("0.0.0.0/0", 1),   key("0.0.0.0/0", 2),   key("9.0.0.0/24", 1), key("10.0.0.0/8", 1),
      key("10.0.0.0/8", 2),  key("10.0.0.0/16", 1), key("a00::/16", 2),   key("a00::1/128", 1),
      key("255.0.0.0/8", 0), key("ff00::/8", 1)};
  expectAscending(ascending);
  EXPECT_FALSE(key("10.0.0.0/8", 1) < key("a00::/8", 1) ||
               key("a00::/8", 1) < key("10.0.0.0/8", 1));
  EXPECT_FALSE(key("10.0.0.0/8", 1) == key("a00::/8", 1)) << "the family counts for equality";
  EXPECT_TRUE(!Rova::RouteSortKey());
  EXPECT_TRUE(!Rova::RouteSortKey(Kesh::IpGenPrefix(Lumo::String("")), 1));
  EXPECT_FALSE(!Rova::RouteSortKey(Kesh::IpGenPrefix(Lumo::String("")), 0));
}

TEST_F(StaticRouteTest, ASaverKeepsItsRoutesAndReplacesThoseOfOneKey) {
  Rova::StaticRoutesCliSaver saver;
  route("10.0.0.0/8", 1, RouteType::drop);
  EXPECT_EQ(saver.save(config, false, "a ", {}).str(), "a 10.0.0.0/8 Null0\n");
  config->route = {};
  addVias(route("10.0.0.0/8"), {{.hop = "1.1.1.1"}});
  route("11.0.0.0/8", 1, RouteType::drop);
  EXPECT_EQ(saver.save(config, false, "b", {}).str(), "b10.0.0.0/8 1.1.1.1\nb11.0.0.0/8 Null0\n");
  config->route = {};
  EXPECT_EQ(saver.save(config, true, "", {}).str(), "10.0.0.0/8 1.1.1.1\n11.0.0.0/8 Null0\n");
}

TEST_F(StaticRouteTest, KeysThatNeitherOrderBeforeTheOtherAreOneMember) {
  Rova::StaticRoutesCliSaver saver;
  addVias(route("10.0.0.0/8"), {{.hop = "1.1.1.1"}});
  saver.save(config, false, "", {});
  config->route = {};
  addVias(route("a00::/8"), {{.hop = "fe80::1"}});
  EXPECT_EQ(saver.save(config, false, "", {}).str(), "10.0.0.0/8 fe80::1\n");
}

TEST_F(StaticRouteTest, AHopAndATunnelEndpointOnOneViaStopTheProcess) {
  addVias(route("10.0.0.0/8"), {{.hop = "1.1.1.1", .vtep = "192.0.2.9"}});
  EXPECT_DEATH(saved(), assertion("!via.vtepAddr()"));
}

TEST_F(StaticRouteTest, ALockThatIsNotReleasableFailsTheSave) {
  const Unreleasable unreleasable;
  EXPECT_EQ(messageOf<Lumo::InternalException>([&] { saved(); }),
            "Lock Protocol exception -- unlocking an unreleasable lock");
}

/// The walk gives the lock up on every 2001st step, and dynamic routes are no steps: an
/// unreleasable lock then fails ahead of the routes that follow.
TEST_F(StaticRouteTest, YieldsOnEvery2001stRouteThatIsConfiguration) {
  for (const bool dynamic : {false, true}) {
    config->route = {};
    for (std::uint32_t i = 0; i < 2100; ++i) {
      const auto network = Kesh::IpGenPrefix(Kesh::pfx(10u << 24 | i << 8, 24));
      auto& on = enterRoute(*config, network, 1, RouteType::drop);
      on.dynamic = dynamic && i % 2 == 0;
    }
    const Unreleasable unreleasable;
    Rova::StaticRoutesCliSaver saver;
    EXPECT_THROW(saver.save(config, false, "", {}), Lumo::InternalException);
    EXPECT_EQ(saver.sortedRoutes(), dynamic ? 1050u : 2001u);
  }
}

} // namespace
