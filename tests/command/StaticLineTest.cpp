// Reading configuration lines of static routes, held against the saver that writes them.
#include "command/StaticLineParser.h"
#include "lumo/ActivityLock.h"
#include "rova/CliSupport.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace {

using namespace command;
using Routing::RouteType;

std::string saved(const Lumo::Ptr<Routing::ConfigGen>& config, const std::string& start) {
  return Rova::StaticRoutesCliSaver().save(config, false, Lumo::String(start), {}).str();
}

/// The configuration that the lines make.
Lumo::Ptr<Routing::ConfigGen> parsed(const std::string& lines) {
  const auto config = Lumo::newEntity<Routing::ConfigGen>();
  for (std::size_t at = 0; at < lines.size();) {
    const auto end = lines.find('\n', at);
    enterStaticLine(parseStaticLine(std::string_view(lines).substr(at, end - at)), *config);
    at = end + 1;
  }
  return config;
}

TEST(StaticLineTest, ReadsEachPiece) {
  const auto line = parseStaticLine(
      "ip route vrf red 10.0.0.0/8 Ethernet1 10.1.0.1 label 100 track bfd 5 tag 7 name to the core "
      "leak vrf blue");
  EXPECT_FALSE(line.ip6);
  EXPECT_EQ(line.vrf, "red");
  EXPECT_EQ(line.key.prefix.stringValue().str(), "10.0.0.0/8");
  EXPECT_EQ(line.key.preference, 5);
  EXPECT_EQ(line.via.intfId.stringValue().str(), "Ethernet1");
  EXPECT_EQ(line.via.hop.stringValue().str(), "10.1.0.1");
  EXPECT_EQ(line.via.mplsLabel.value(), 100u);
  EXPECT_TRUE(line.bfdTracked);
  EXPECT_EQ(line.tag, 7u);
  EXPECT_EQ(line.name, "to the core");
  EXPECT_EQ(line.leakVrf, "blue");
  const auto vxlan = parseStaticLine(
      "ipv6 route 2001:db8::/32 vtep 10.0.0.9 vni 10 router-mac-address 00:1c:73:00:00:01");
  EXPECT_EQ(vxlan.via.vni, 10u);
  EXPECT_EQ(vxlan.via.vtepAddr.stringValue().str(), "10.0.0.9");
  EXPECT_EQ(parseStaticLine("ip route 10.0.0.0/8 Nexthop-Group west 9").nexthopGroup, "west");
  EXPECT_EQ(parseStaticLine("ip route 10.0.0.0/8 Nexthop-Group").nexthopGroup, "");
  EXPECT_EQ(parseStaticLine("ip route 10.0.0.0/8 Null0 name spare").name, "spare");
}

TEST(StaticLineTest, SaysWhatIsWrongAndWhere) {
  const struct {
    const char* line;
    std::size_t column;
    const char* message;
  } cases[] = {
      {"route 10.0.0.0/8 Null0", 0, "\"route\": expected ip"},
      {"ip route", 8, "expected an IPv4 prefix without bits behind its mask here"},
      {"ip route 10.0.0.1/8 Null0", 9,
       "\"10.0.0.1/8\": expected an IPv4 prefix without bits behind its mask"},
      {"ip route 10.0.0.0/8", 19, "expected an interface or a next hop here"},
      {"ip route 10.0.0.0/8 5", 20, "\"5\": expected an interface or a next hop"},
      {"ip route 10.0.0.0/8 0.0.0.0", 20, "\"0.0.0.0\": a next hop is an address other than zero"},
      {"ip route 10.0.0.0/8 Ethernet1 256", 30, "\"256\": expected a number from 0 to 255"},
      {"ip route 10.0.0.0/8 10.0.0.1 label 1048576", 35,
       "\"1048576\": expected a number from 0 to 1048575"},
      {"ip route 10.0.0.0/8 10.0.0.1 track", 34, "expected bfd here"},
      {"ip route 10.0.0.0/8 10.0.0.1 vtep 10.0.0.2 vni 1 router-mac-address 00:00:00:00:00:01", 29,
       "\"vtep\": a via has a next hop or a VXLAN endpoint, not both"},
      {"ip route 10.0.0.0/8 Null0 Ethernet1", 26, "\"Ethernet1\": nothing is expected here"},
      {"ip route 10.0.0.0/8 Ethernet1 Ethernet2", 30, "\"Ethernet2\": nothing is expected here"},
  };
  for (const auto& one : cases) {
    try {
      parseStaticLine(one.line);
      ADD_FAILURE() << one.line;
    } catch (const LineError& error) {
      EXPECT_STREQ(error.what(), one.message) << one.line;
      EXPECT_EQ(error.column, one.column) << one.line;
    }
  }
}

TEST(StaticLineTest, LinesOfOneRouteMustAgree) {
  const auto config = parsed("ip route 10.0.0.0/8 Ethernet1 tag 7\n");
  const auto enter = [&](const char* line) { enterStaticLine(parseStaticLine(line), *config); };
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Ethernet2 tag 8"), LineError);
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Null0 tag 7"), LineError);
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Ethernet2 tag 7 leak vrf red"), LineError);
  enter("ip route 10.0.0.0/8 Ethernet2 tag 7");
  EXPECT_EQ(config->route.find({Kesh::IpGenPrefix("10.0.0.0/8"), 1})->ptr()->via.size(), 2u);
}

/// Configurations that lines can tell: no dynamic routes, names and labels only where lines have
/// them, each via with an interface or a next hop.
class RandomConfig {
 public:
  explicit RandomConfig(unsigned seed) : random_(seed) {}

  Lumo::Ptr<Routing::ConfigGen> make() {
    const auto config = Lumo::newEntity<Routing::ConfigGen>();
    for (unsigned i = below(40); i > 0; --i) {
      const Routing::RouteKey key{prefix(), static_cast<std::uint8_t>(below(4) ? 1 : below(256))};
      const auto route = Lumo::newEntity<Routing::Route>(key);
      route->tag = below(2) ? 0 : below(1000);
      fill(*route);
      config->route.insertOrAssign(key, route);
    }
    return config;
  }

 private:
  unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }
  Kesh::IpGenPrefix prefix() {
    return Kesh::pfx(std::uint32_t{10} << 24 | below(256) << 16 | below(256) << 8,
                     static_cast<int>(8 + below(25)));
  }
  Lumo::String word() { return Lumo::String("n" + std::to_string(below(100))); }

  void fill(Routing::Route& route) {
    switch (below(6)) {
    case 0:
      route.routeType = RouteType::drop;
      if (below(2)) route.dropNextHopName = word();
      return;
    case 1:
      route.routeType = RouteType::nexthopGroup;
      if (below(4)) route.nexthopGroupName = word();
      return;
    default:
      if (below(4) == 0) route.leakVrf = L3::VrfName(word());
      do {
        addVia(route);
      } while (below(3));
    }
  }

  void addVia(Routing::Route& route) {
    Routing::Via via;
    const unsigned kind = below(4);
    if (kind != 0) via.intfId = Kesh::IntfId(Lumo::String("Ethernet" + std::to_string(below(9))));
    if (kind == 0 || kind == 2) {
      via.hop = Kesh::IpAddr::fromHost(std::uint32_t{192} << 24 | (1 + below(200)));
      if (below(3) == 0) via.mplsLabel = Kesh::MplsLabel(16 + below(1000));
    }
    if (kind == 3) {
      via.vtepAddr = Kesh::IpAddr::fromHost(std::uint32_t{172} << 24 | below(200));
      via.vni = below(1 << 24);
    }
    route.via.insertOrAssign(via, true);
    if (below(3) == 0) route.bfdTracked.insertOrAssign(via, true);
    if (below(3) == 0) route.viaNextHopName.insertOrAssign(via, word());
  }

  std::mt19937 random_;
};

bool isSame(const Routing::Route& a, const Routing::Route& b) {
  return a.key == b.key && a.routeType == b.routeType && a.tag == b.tag && a.via == b.via &&
         a.viaNextHopName == b.viaNextHopName && a.dropNextHopName == b.dropNextHopName &&
         a.nexthopGroupName == b.nexthopGroupName && a.bfdTracked == b.bfdTracked &&
         a.leakVrf == b.leakVrf;
}

TEST(StaticLineTest, WhatTheSaverWritesReadsBackTheSame) {
  const Lumo::ActivityLockHold hold;
  for (unsigned seed = 0; seed < 200; ++seed) {
    const auto config = RandomConfig(seed).make();
    const auto lines = saved(config, "ip route ");
    const auto back = parsed(lines);
    ASSERT_EQ(back->route.size(), config->route.size()) << lines;
    config->route.forEach([&](const auto& key, const auto& route) {
      const auto* const other = back->route.find(key);
      ASSERT_TRUE(other && isSame(*route, **other)) << seed << ":\n" << lines;
    });
    EXPECT_EQ(saved(back, "ip route "), lines) << "another order of entry changed the lines";
  }
}

} // namespace
