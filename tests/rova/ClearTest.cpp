// Taking the routes of an interface out of a configuration.
#include "support/StaticRoutes.h"

#include <map>
#include <set>

namespace {

using namespace support;
using Routing::RouteType;

/// Every route with the interfaces of its vias, those of its names in brackets.
using Shown = std::map<std::string, std::set<std::string>>;

struct ClearTest : testing::Test {
  Lumo::Ptr<Routing::ConfigGen> config = Lumo::newEntity<Routing::ConfigGen>();

  /// A route with vias through the interfaces, each to a hop of its own.
  Routing::Route& route(const char* to, std::initializer_list<const char*> interfaces,
                        RouteType type = RouteType::forward) {
    auto& made = enterRoute(*config, to, 1, type);
    for (const char* interface : interfaces) addVias(made, {via(interface)});
    return made;
  }
  /// A name for a via, which need not be there.
  static void name(Routing::Route& route, const char* interface) {
    route.viaNextHopName.insertOrAssign(viaOf(via(interface)), "named");
  }
  static ViaParts via(const char* interface) {
    return {.interface = interface, .hop = "192.0.2.1"};
  }
  void clear(const char* interface) {
    Rova::ClearIntfRoutesAndViasHelper().clearIntfRoutesAndViasHelper(config, interface);
  }
  Shown shown() const {
    Shown all;
    config->route.forEach([&](const Routing::RouteKey& key, const auto& route) {
      auto& of = all[key.prefix.stringValue().str()];
      route->via.forEach(
          [&](const Routing::Via& v, bool) { of.insert(v.intfId.stringValue().str()); });
      route->viaNextHopName.forEach([&](const Routing::Via& v, const Lumo::String&) {
        of.insert("(" + v.intfId.stringValue().str() + ")");
      });
    });
    return all;
  }
};

TEST_F(ClearTest, TakesTheViasOfTheInterfaceAndTheRoutesLeftWithoutOne) {
  name(route("10.1.0.0/16", {"Ethernet1", "Ethernet2"}), "Ethernet1");
  name(route("10.2.0.0/16", {"Ethernet2", "Ethernet3", ""}), "Ethernet2");
  auto& all = route("10.3.0.0/16", {"Ethernet1"});
  name(all, "Ethernet1");
  all.tag = 7;
  addVias(all, {{.interface = "Ethernet1"}, {.interface = "Ethernet1", .hop = "fe80::1"}});
  route("10.4.0.0/16", {"Ethernet1"}, RouteType::drop);
  route("10.5.0.0/16", {});
  route("10.6.0.0/16", {}, RouteType::nexthopGroup);
  route("10.7.0.0/16", {"Ethernet10", "Ethernet1.1"});
  name(route("10.8.0.0/16", {}), "Ethernet1");
  name(route("10.9.0.0/16", {"Ethernet2"}), "Ethernet1");
  route("10.10.0.0/16", {"Ethernet1"}, RouteType::nexthopGroup);
  name(route("10.11.0.0/16", {}, RouteType::drop), "Ethernet1");
  clear("Ethernet1");
  const Shown expected = {{"10.1.0.0/16", {"Ethernet2"}},
                          {"10.2.0.0/16", {"Ethernet2", "Ethernet3", "", "(Ethernet2)"}},
                          {"10.4.0.0/16", {}},
                          {"10.5.0.0/16", {}},
                          {"10.6.0.0/16", {}},
                          {"10.7.0.0/16", {"Ethernet10", "Ethernet1.1"}},
                          {"10.9.0.0/16", {"Ethernet2"}},
                          {"10.11.0.0/16", {}}};
  EXPECT_EQ(shown(), expected);
}

TEST_F(ClearTest, LeavesWhatIsTrackedByBfd) {
  auto& changed = route("10.1.0.0/16", {"Ethernet1", "Ethernet2"});
  changed.bfdTracked.insertOrAssign(viaOf(via("Ethernet1")), true);
  clear("Ethernet1");
  EXPECT_TRUE(changed.bfdTracked.find(viaOf(via("Ethernet1"))));
}

TEST_F(ClearTest, WalksOnBehindDeletedRoutes) {
  for (std::uint32_t i = 0; i < 300; ++i) {
    const auto network = Kesh::IpGenPrefix(Kesh::pfx(10u << 24 | i << 8, 24));
    addVias(enterRoute(*config, network, 1, RouteType::forward),
            {via(i % 3 == 0 ? "Ethernet2" : "Ethernet1")});
  }
  clear("Ethernet1");
  EXPECT_EQ(config->route.size(), 100u);
}

} // namespace
