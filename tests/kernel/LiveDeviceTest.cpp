// A device that follows the kernel by what changes is the one that would be made anew: as a
// database has it that only the changes were written to.
#include "agent/WriteChanges.h"
#include "kernel/PlayedKernel.h"
#include "sources/database/Database.h"
#include "sources/database/Writer.h"

#include <filesystem>
#include <random>
#include <unistd.h>

namespace kernel_test {
namespace {

using sources::database::Batch;
using sources::database::Writer;

class LiveDeviceTest : public FollowerTest {
 protected:
  LiveDeviceTest() { kernel.scripts["nexthop objects"] = {{nexthop(7, 1)}}; }
  ~LiveDeviceTest() override { sources::database::removeFiles(path); }

  void begin() {
    follower.read(std::chrono::seconds(2));
    follower.listen();
    writer.replace(device.make(follower, {}), ofAgent, device.facts());
  }
  /// Writes what these change; false when it took the whole.
  bool hear(const std::vector<Step>& events) {
    kernel.pending = events;
    follower.listen();
    const auto changes = device.change(follower);
    if (!changes) {
      writer.replace(device.make(follower, {}), ofAgent, device.facts());
      return false;
    }
    Batch batch(writer);
    agent::writeChanges(*changes, batch);
    batch.commit({});
    return true;
  }
  /// The rows of routes by "VRF PREFIX".
  std::map<std::string, std::string> rows() {
    std::map<std::string, std::string> rows;
    for (const std::string view : {"ip_route", "ipv6_route"}) {
      sources::database::Statement select(
          writer.connection(), "select (select id from vrf where name = r.vrf) || ' ' || prefix, "
                               "fec || ' ' || type || ' ' || metric from " +
                                   view + " r");
      while (select.step()) {
        const std::string key(select.text("key"));
        rows[key] = select.text("route");
      }
    }
    return rows;
  }
  /// What differs between those and the rows by now is what the log says behind `seq`.
  void expectLogged(const std::map<std::string, std::string>& before, std::int64_t seq,
                    const std::string& hint) {
    std::set<std::string> changed, logged;
    const auto now = rows();
    const auto tell = [&](const char* what, const std::string& key) { changed.insert(what + key); };
    for (const auto& [key, route] : before) {
      if (!now.contains(key)) tell("3 ", key);
    }
    for (const auto& [key, route] : now) {
      const auto old = before.find(key);
      if (old == before.end()) tell("1 ", key);
      if (old != before.end() && old->second != route) tell("2 ", key);
    }
    using namespace sources::database;
    LogReader reader(std::make_shared<Session>(path, Access::read));
    reader.read(seq, [&](const LoggedChange& change) {
      if (change.family == 0) return;
      const auto prefix =
          change.family == 4 ? change.prefix.stringValue() : change.prefix6.stringValue();
      logged.insert(std::to_string(static_cast<int>(change.what)) + " " +
                    std::to_string(change.vrf.value()) + " " + prefix.str());
    });
    EXPECT_EQ(logged, changed) << hint;
  }
  std::int64_t lastLogged() {
    return writer.connection().number("select ifnull(max(seq), 0) from change_log");
  }
  void expectCurrent(const std::string& hint) {
    state::DeviceState whole;
    std::uint64_t hidden = 0;
    follower.show([&](KernelState& state) {
      whole = makeDevice(state);
      hidden = sources::hiddenAmong(sources::kernel::routeFacts(state).hidden, {}, whole);
    });
    const auto written = sources::database::load(path);
    EXPECT_EQ(showRoutes(written.device), showRoutes(whole)) << hint;
    EXPECT_EQ(written.notes.hiddenRoutes, hidden) << hint;
    EXPECT_EQ(written.device.vrfs.size(), whole.vrfs.size()) << hint;
    EXPECT_EQ(fecs(written.device), fecs(whole)) << hint;
    EXPECT_EQ(configured(written.device), configured(whole)) << hint;
  }

  const std::string path =
      std::filesystem::temp_directory_path() / ("rova-live-" + std::to_string(getpid()) + ".db");
  Follower follower{kernel, needs, [this] { return kernel.now; }};
  LiveDevice device;
  Writer writer{path, sources::database::Log::joined};
  const sources::database::Facts ofAgent = [] {
    sources::database::Facts facts;
    facts.agent = getpid();
    return facts;
  }();

 private:
  /// How many FECs of each kind there are.
  static std::pair<std::size_t, std::size_t> fecs(const state::DeviceState& state) {
    return {state.forwardingStatus->fec.members(), state.forwarding6Status->fec.members()};
  }
  static std::set<std::string> configured(const state::DeviceState& state) {
    std::set<std::string> all;
    for (const auto& vrf : state.vrfs) {
      for (const auto& config : {vrf.routingConfig, vrf.routing6Config}) {
        config->route.forEach([&](const Routing::RouteKey& key, const auto& route) {
          all.insert(vrf.name.stringValue().str() + " " + key.prefix.stringValue().str() + " " +
                     std::to_string(route->via.size()));
        });
      }
    }
    return all;
  }
};

class RandomRoutes {
 public:
  explicit RandomRoutes(unsigned seed) : random_(seed) {}

  unsigned pick(unsigned count) {
    return std::uniform_int_distribution<unsigned>(0, count - 1)(random_);
  }

  RouteStep route() {
    const bool ip6 = pick(3) == 0;
    static const char* const prefixes[] = {"10.0.0.0", "10.1.0.0", "10.2.0.0"};
    static const char* const prefixes6[] = {"fd00::", "fd01::", "fd02::"};
    RouteStep route{ip6 ? prefixes6[pick(3)] : prefixes[pick(3)],
                    static_cast<std::uint8_t>((ip6 ? 48 : 16) + 8 * pick(2))};
    route.hops = {hop(ip6)};
    if (pick(4) == 0) route.hops.push_back(hop(ip6));
    route.metric = pick(2) * 20;
    route.table = pick(6) == 0 ? 70 : std::uint32_t{RT_TABLE_MAIN};
    route.protocol = pick(2) ? RTPROT_STATIC : RTPROT_BGP;
    if (pick(8) == 0) route.type = RTN_BLACKHOLE;
    return route;
  }
  Step event() {
    static const std::uint16_t flags[] = {NLM_F_CREATE, NLM_F_CREATE | NLM_F_APPEND, NLM_F_REPLACE};
    return pick(3) == 0 ? told(RTM_DELROUTE, route()) : told(RTM_NEWROUTE, route(), flags[pick(3)]);
  }

 private:
  To hop(bool ip6) {
    static const char* const gateways[] = {"10.0.0.1", "10.0.0.2", nullptr};
    static const char* const gateways6[] = {"fe80::1", "fe80::2", nullptr};
    return {(ip6 ? gateways6 : gateways)[pick(3)], static_cast<int>(1 + pick(2))};
  }

  std::mt19937 random_;
};

TEST_F(LiveDeviceTest, RandomRoutes) {
  std::size_t byChanges = 0;
  for (unsigned seed = 1; seed <= 8; ++seed) {
    RandomRoutes routes(seed);
    PlayedKernel::Script before;
    for (int i = 0; i < 10; ++i) before.push_back(routes.route());
    kernel.scripts["IPv4 routes"] = kernel.scripts["IPv6 routes"] = {before};
    follower.doubt();
    begin();
    for (int batch = 0; batch < 12; ++batch) {
      std::vector<Step> events;
      for (unsigned count = 1 + routes.pick(6); count > 0; --count)
        events.push_back(routes.event());
      const auto hint = "seed " + std::to_string(seed) + ", batch " + std::to_string(batch);
      const auto old = rows();
      const auto seq = lastLogged();
      byChanges += hear(events);
      expectCurrent(hint);
      expectLogged(old, seq, hint);
    }
  }
  EXPECT_GT(byChanges, 48u) << "of 96 batches, which few new VRFs interrupt";
}

TEST_F(LiveDeviceTest, WhatTakesTheWhole) {
  R ofTable{"10.3.0.0", 16}, inHardware{"10.4.0.0", 16};
  ofTable.table = 70;
  kernel.scripts["IPv4 routes"] = {{R{"10.0.0.0", 8}}};
  begin();
  EXPECT_TRUE(hear({told(RTM_NEWROUTE, R{"10.2.0.0", 16})}));
  EXPECT_FALSE(hear({told(RTM_NEWROUTE, ofTable)})) << "a VRF comes";
  EXPECT_TRUE(hear({told(RTM_NEWROUTE, R{"10.5.0.0", 16})}));
  EXPECT_FALSE(hear({told(RTM_DELROUTE, ofTable)})) << "and goes";
  expectCurrent("in the end");
}

/// Nobody tells the protocol of the hop that is first when the first one goes.
TEST_F(LiveDeviceTest, HopsOfAnotherProtocolHaveRoutesReadAgain) {
  R ofBgp{"fd00::", 64, {{"fe80::1"}}}, both{"fd00::", 64, {{"fe80::1"}, {"fe80::2"}}};
  ofBgp.protocol = RTPROT_BGP;
  kernel.scripts["IPv6 routes"] = {{ofBgp}};
  begin();
  hear({told(RTM_NEWROUTE, both, NLM_F_APPEND)});
  EXPECT_TRUE(follower.moved().empty());
  hear({told(RTM_DELROUTE, ofBgp)});
  EXPECT_EQ(follower.moved(), std::vector<std::string>{"IPv6 routes"});
}

/// An agent lives for years, in which every way to forward comes and goes.
TEST_F(LiveDeviceTest, HopListsWithoutRoutesGo) {
  begin();
  for (unsigned batch = 0; batch < 7; ++batch) {
    std::vector<Step> events;
    for (unsigned i = 0; i < 10'000; ++i) {
      const std::string gateway = "10." + std::to_string(batch) + "." + std::to_string(i / 250) +
                                  "." + std::to_string(i % 250);
      events.push_back(told(RTM_NEWROUTE, R{"10.0.0.0", 8, {{gateway.c_str()}}}, NLM_F_REPLACE));
    }
    hear(events);
  }
  EXPECT_LT(follower.hopLists().lists().size(), 10'000u);
  expectCurrent("in the end");
}

/// What is known by its nexthop object keeps its identifier whatever becomes of the object.
TEST_F(LiveDeviceTest, FecsKeepTheirIdentifiers) {
  R overObject{"10.1.0.0", 16};
  overObject.nexthop = 7;
  const Step plain = R{"10.0.0.0", 8, {{"10.0.0.1"}}};
  kernel.scripts["IPv4 routes"] = {{plain, overObject}};
  begin();
  const auto fecOf = [&](const char* prefix, int length) {
    bool found = false;
    const auto loaded = sources::database::load(path);
    const auto& routes = loaded.device.vrf("default")->routingStatus->route;
    return routes.safeLookup({Kesh::IpAddr::parse(prefix).value(), length}, found, 0)->fecId;
  };
  const auto before = std::pair(fecOf("10.0.0.0", 8), fecOf("10.1.0.0", 16));
  hear({told(RTM_NEWROUTE, R{"9.0.0.0", 8, {{"10.0.0.0"}}})});
  hear({told(RTM_NEWNEXTHOP, nexthop(7, 2))});
  writer.replace(device.make(follower, {}), ofAgent, device.facts());
  EXPECT_EQ(std::pair(fecOf("10.0.0.0", 8), fecOf("10.1.0.0", 16)), before);
  LiveDevice later;
  writer.visitFecs([&](const auto& fec) { later.numbers().keep(fec); },
                   [&](const auto& fec) { later.numbers().keep(fec); });
  EXPECT_EQ(writer.replace(later.make(follower, {}), {}, later.facts()).entered, 0u)
      << "an agent that starts again";
}

} // namespace
} // namespace kernel_test
