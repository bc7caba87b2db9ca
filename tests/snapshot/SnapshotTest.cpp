// What a snapshot fills, and that saving and loading are each other's inverse.
#include "sources/snapshot/Snapshot.h"
#include "state/DeviceBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

namespace {

using sources::snapshot::loadText;
using sources::snapshot::saveText;
using Vanta::Fib::FecId;

const auto samples = std::filesystem::path(ROVA_SAMPLES);

std::string fileText(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

state::DeviceState rich() { return sources::snapshot::load(samples / "rich.json"); }

template <class View, class Key>
typename View::ValueType recordOf(const View& view, const Key& key) {
  bool found = false;
  const auto record = *view.safeLookup(key, found, 0);
  EXPECT_TRUE(found);
  return record;
}

Kesh::IntfId intf(const char* name) { return Kesh::IntfId(name); }

TEST(Snapshot, GivesBackEachSampleToTheByte) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(samples)) {
    EXPECT_EQ(saveText(sources::snapshot::load(entry.path())), fileText(entry.path()));
    ++count;
  }
  EXPECT_GE(count, 2);
}

TEST(Snapshot, WithNothingInItIsAFreshDevice) {
  const auto device = loadText(R"({"rovaSnapshot": 1})", "leaf1");
  EXPECT_EQ(saveText(device), saveText(state::DeviceBuilder().state));
  ASSERT_EQ(device.vrfs.size(), 1u);
  EXPECT_TRUE(device.vrfs[0].routingConfig->routing);
}

TEST(Snapshot, WithAnEmptyDefaultVrfGoesOnBehindIt) {
  const auto device = loadText(
      R"({"vrfs": {"default": {}, "red": {"id": 1}}, "nhEntryStatus": {}, "rovaSnapshot": 1})",
      "leaf1");
  EXPECT_EQ(device.vrfs.size(), 2u);
}

TEST(Snapshot, FillsRoutes) {
  const auto device = rich();
  const auto& vrf = device.vrfs[0];
  const auto route = recordOf(vrf.routingStatus->route, *Kesh::Prefix::parse("10.0.0.0/8"));
  EXPECT_EQ(route.routeType, Routing::Fib::RouteType::staticRoute);
  EXPECT_EQ(route.fecId, FecId(Vanta::Fib::AdjType::fib, 18));
  EXPECT_EQ(route.preference(), 5);
  EXPECT_EQ(route.srcVrfId().value(), 3u);
  const auto route6 = recordOf(vrf.routing6Status->route, *Kesh::Ip6Prefix::parse("2001:db8::/32"));
  EXPECT_EQ(route6.routeType, Routing6::Fib::RouteType::bgp);
  EXPECT_EQ(route6.srcVrfId().value(), Vrf::VrfIdMap::VrfId::none);
  EXPECT_EQ(device.vrf("red")->id.value(), 3u);
  EXPECT_EQ(device.vrf("red")->routingStatus->route.members(), 1u);
}

TEST(Snapshot, FillsFecs) {
  const auto device = rich();
  const auto fec = recordOf(device.forwardingStatus->fec, FecId(Vanta::Fib::AdjType::fib, 17));
  ASSERT_EQ(fec.viaCount, 2u);
  EXPECT_EQ(fec.backupViaIndex, 1u);
  const auto& first = fec.via(Vanta::Fib::ViaIndex(0));
  EXPECT_EQ(first.hop, *Kesh::IpAddr::parse("10.1.0.1"));
  EXPECT_EQ(first.intfId, intf("Ethernet1"));
  EXPECT_EQ(first.mplsLabel().value(), 16u);
  EXPECT_EQ(first.weight, 2u);
  const auto& second = fec.via(Vanta::Fib::ViaIndex(1));
  EXPECT_TRUE(second.mplsLabel().isNull());
  EXPECT_EQ(second.labelAndAction.action(), 1);
  const auto tunnel = recordOf(device.forwardingStatus->fec, FecId(Vanta::Fib::AdjType::fib, 18));
  EXPECT_EQ(tunnel.via(Vanta::Fib::ViaIndex(0)).tunnelId().index(), 12u);
  EXPECT_EQ(device.forwarding6Status->fec.members(), 2u);
  EXPECT_EQ(device.policyForwardingStatus->fec.members(), 1u);
}

TEST(Snapshot, FillsConfiguredRoutes) {
  const auto device = rich();
  const auto& config = *device.vrfs[0].routingConfig;
  EXPECT_FALSE(device.vrfs[0].routing6Config);
  EXPECT_FALSE(device.vrf("red")->routingConfig->routing);
  const auto* const found = config.route.find({Kesh::IpGenPrefix(Lumo::String("10.0.0.0/8")), 5});
  ASSERT_TRUE(found);
  const Routing::Route& route = **found;
  EXPECT_EQ(route.tag, 7u);
  EXPECT_TRUE(route.dynamic);
  EXPECT_EQ(route.leakVrf, L3::VrfName("red"));
  Routing::Via via;
  via.hop = *Kesh::IpGenAddr::parse("10.1.0.1");
  via.intfId = intf("Ethernet1");
  via.mplsLabel = Kesh::MplsLabel(16);
  ASSERT_TRUE(route.via.find(via));
  EXPECT_EQ(*route.viaNextHopName.find(via), "uplink");
  EXPECT_TRUE(*route.bfdTracked.find(via));
  EXPECT_EQ(route.via.size(), 2u);
  EXPECT_EQ(route.bfdTracked.size(), 1u);
}

TEST(Snapshot, FillsWhatIsMissingFromHardwareAndKernel) {
  const auto device = rich();
  const auto& status = *device.unprogrammedRouteStatus;
  EXPECT_EQ(recordOf(status.unprogrammedRouteCount, Vrf::VrfIdMap::VrfId(0)).count, 2u);
  EXPECT_EQ(recordOf(status.unprogrammedRouteCount, Vrf::VrfIdMap::VrfId(3)).count, 1u);
  EXPECT_EQ(status.unprogrammedRoute.members(), 3u);
  EXPECT_EQ(device.unprogrammedRoute6Status->unprogrammedRoute.members(), 1u);
  const auto& kernel = *device.vrfs[0].kernelUnprogrammedRoute;
  EXPECT_EQ(recordOf(kernel.error, *Kesh::Prefix::parse("10.0.0.0/8")).error, -22);
  EXPECT_EQ(kernel.error6.members(), 1u);
}

TEST(Snapshot, FillsInterfacesAndNeighbours) {
  const auto device = rich();
  EXPECT_EQ(device.allIntfConfig->intfConfig(intf("Ethernet1"))->description,
            "to \"spine 1\"\\ \xc3\xbc"
            "ber \xe2\x9c\x93");
  EXPECT_EQ(device.allIntfConfig->intfConfig(intf("Ethernet10"))->description, "line\nbreak");
  const auto* const ip = device.ipStatus->ipIntfStatus.find(intf("Ethernet1"));
  EXPECT_EQ(ip->primary, Kesh::IpAddrWithMask::parse("10.1.0.3/24"));
  EXPECT_EQ(ip->activeSecondary.size(), 2u);
  EXPECT_FALSE(device.ipStatus->ipIntfStatus.find(intf("Ethernet2"))->vrf);
  EXPECT_EQ(device.arpVanta->arpEntry.members(), 2u);
  EXPECT_EQ(device.arpVanta->neighborEntry.members(), 1u);
  const Arp::Table::ArpKey key{Vrf::VrfIdMap::VrfId(3), intf("Ethernet2"),
                               *Kesh::IpGenAddr::parse("10.1.0.9")};
  EXPECT_EQ(recordOf(device.arpVanta->arpEntry, key).ethAddr.stringValue(), "00:11:22:33:44:56");
}

TEST(Snapshot, FillsTunnelsPoliciesAndGroups) {
  const auto device = rich();
  using namespace Tunnel::TunnelTable;
  const TunnelId sr(TunnelId::convertToTunnelValue(7, 12));
  const auto entry = device.tunnelFib->entry(sr);
  EXPECT_EQ(entry.key, sr);
  EXPECT_EQ(entry.flags, 3);
  ASSERT_EQ(entry.tunnelVia.size(), 1u);
  const auto stack = device.tunnelFib->labelStack(entry.tunnelVia[0].encapId);
  EXPECT_EQ(stack.operation(), Kesh::LabelAction::push);
  EXPECT_EQ(stack.label(Kesh::MplsStackEntryIndex(1)).value(), 200u);
  EXPECT_EQ(device.tunnelFib->greEncap(EncapId(1)).greKey, 99u);
  const TunnelId evpn(TunnelId::convertToTunnelValue(6, 3));
  EXPECT_EQ(device.evpnVxlanTunnelTable->entry(evpn).vni, 100u);
  const auto table = Lumo::dynamicPtrCast<SrTunnelTable>(device.tunnelTableDir->entity("sr"));
  EXPECT_EQ(table->entry(sr).endpoint.stringValue(), "10.0.0.1/32");
  EXPECT_TRUE(device.tunnelTableDir->hasEntry("bgpLu"));
  const FecId policy(Vanta::Fib::AdjType::srTePolicy, 1);
  EXPECT_EQ(device.srTePolicyStatus->fecIdToPolicyKey.find(policy)->color, 100u);
  const NexthopGroup::NexthopGroupEntryKey edge{Lumo::String("edge")};
  EXPECT_EQ(recordOf(device.nhEntryStatus->nexthopGroupEntry, edge).nhgId, 7u);
  EXPECT_EQ(device.routing6HardwareStatus->maxUcmpWeight, 32u);
}

TEST(Snapshot, TakesFieldsInAnyOrder) {
  const auto device = loadText(R"({"vrfs": {"red": {"unprogrammedRouteStatus": ["10.0.0.0/8"],
      "routingStatus": {"10.0.0.0/8": {"fec": "0.1", "type": "static"}, "10.0.0.0/9": {"type": 36}},
      "id": 7}}, "rovaSnapshot": 1})",
                               "leaf1");
  EXPECT_EQ(device.vrf("red")->id.value(), 7u);
  const auto& counts = device.unprogrammedRouteStatus->unprogrammedRouteCount;
  EXPECT_EQ(recordOf(counts, Vrf::VrfIdMap::VrfId(7)).count, 1u);
}

template <class View>
std::set<std::string> typeNames(const View& view) {
  std::set<std::string> names;
  for (typename View::IteratorConst it(view); it; it.next()) {
    names.emplace(state::routeTypeName(it.value().routeType));
  }
  return names;
}

template <class RouteType>
std::set<std::string> allTypeNames() {
  std::set<std::string> names;
  for (std::uint32_t number = 0; number < 256; ++number) {
    names.emplace(state::routeTypeName(static_cast<RouteType>(number)));
  }
  names.erase("");
  return names;
}

// The schema is tested against the same sample.
TEST(Snapshot, HasEachRouteTypeInASample) {
  const auto device = sources::snapshot::load(samples / "route-types.json");
  const auto& vrf = device.vrfs[0];
  EXPECT_EQ(typeNames(vrf.routingStatus->route), allTypeNames<Routing::Fib::RouteType>());
  EXPECT_EQ(typeNames(vrf.routing6Status->route), allTypeNames<Routing6::Fib::RouteType>());
}

TEST(Snapshot, KeepsTypesWithoutANameByNumber) {
  state::DeviceBuilder builder;
  builder.defaultVrf().routes->insert(
      {Kesh::Prefix(), 0, 0xffffff01, static_cast<Routing::Fib::RouteType>(6), FecId(1)});
  const auto text = saveText(builder.state);
  EXPECT_NE(text.find(R"("0.0.0.0/0": {"type": 6, "fec": "0.1"})"), text.npos) << text;
  EXPECT_EQ(saveText(loadText(text, "saved")), text);
}

TEST(Snapshot, MakesForeignBytesUtf8) {
  state::DeviceBuilder builder;
  const auto id = intf("Ethernet1");
  builder.state.allIntfConfig->configs.insertOrAssign(
      id,
      Lumo::newEntity<Interface::IntfConfig>(id, Lumo::String("a\xe4\x7f\xed\xa0\x80\xf0\x9f")));
  const auto text = saveText(builder.state);
  EXPECT_NE(text.find("\"a\xef\xbf\xbd\\u007f"), text.npos) << text;
  EXPECT_EQ(saveText(loadText(text, "saved")), text);
}

TEST(Snapshot, OfCorruptTablesIsRefused) {
  state::DeviceBuilder builder;
  builder.defaultVrf().routes->insert({Kesh::Prefix(), 0, 1, {}, FecId(1)});
  builder.defaultVrf().routes->corruptAt(1);
  EXPECT_THROW(saveText(builder.state), Tembra::CorruptionDetectedException);
}

/// Fills a device with random members; the same seed gives the same members in another order.
class RandomDevice {
 public:
  RandomDevice(unsigned seed, unsigned order) : random_(seed), order_(order) {
    const auto red = Vrf::VrfIdMap::VrfId(number(1, 1000));
    red_ = &builder_.vrf("red", red);
    some([this] { return addRoute(); });
    some([this] { return addFec(); });
    some([this] { return addInterface(); });
    some([this] { return addConfigured(); });
    some([this] { return addTunnel(); });
    some([this] { return addGroup(); });
    for (const auto& step : steps_) step();
  }
  const state::DeviceState& state() const { return builder_.state; }

 private:
  using Step = std::function<void()>;

  std::uint32_t number(std::uint32_t min, std::uint32_t max) {
    return std::uniform_int_distribution<std::uint32_t>(min, max)(random_);
  }
  Kesh::Prefix prefix() { return Kesh::pfx(number(0, ~0u), static_cast<int>(number(0, 32))); }
  Kesh::Ip6Prefix prefix6() {
    const auto address = Kesh::Ip6Addr::fromHalves(number(0, ~0u), number(0, ~0u));
    return {address, static_cast<int>(number(0, 128))};
  }
  Kesh::IntfId anyIntf() {
    static const char* const names[] = {"Ethernet", "Vlan",         "eth",
                                        "bond\"",   "Port-Channel", "t\xc3\xa4p"};
    return Kesh::IntfId(Lumo::String(names[number(0, 5)] + std::to_string(number(0, 99))));
  }

  template <class Make>
  void some(Make&& make) {
    std::vector<Step> steps;
    for (auto count = number(0, 40); count > 0; --count) steps.push_back(make());
    std::shuffle(steps.begin(), steps.end(), order_);
    steps_.insert(steps_.end(), steps.begin(), steps.end());
  }

  // Members of one key must be equal, whatever the order: each is a function of its key's number.
  Step addRoute() {
    const auto key = prefix();
    const auto key6 = prefix6();
    return [=, this] {
      const auto bits = static_cast<std::uint32_t>(key.hash());
      const auto type = static_cast<Routing::Fib::RouteType>(bits % 37);
      builder_.defaultVrf().routes->insert({key, bits % 3, bits, type, FecId(bits % 5)});
      red_->routes6->insert(
          {key6, 0, 0xffffff01, Routing6::Fib::RouteType::bgp, FecId(key6.hash() % 7)});
      red_->kernelErrors->insert({key, {}, static_cast<std::int32_t>(bits % 2)});
      red_->kernelErrors6->insert({key6, intf("Vlan7"), 0});
    };
  }
  Step addFec() {
    const FecId id(number(1, 100));
    Vanta::Fib::Fec fec(id);
    for (auto count = id.value() % 4; count > 0; --count) {
      fec.viaAppend({Kesh::IpAddr::fromHost(7), intf("Ethernet1"), {}, 3});
    }
    return [=, this] { builder_.fecs->insert(fec); };
  }
  Step addInterface() {
    const auto id = anyIntf();
    return [=, this] {
      const auto description = Lumo::String("to " + id.stringValue().str());
      builder_.state.allIntfConfig->configs.insertOrAssign(
          id, Lumo::newEntity<Interface::IntfConfig>(id, description));
      builder_.state.ip6Status->ip6IntfStatus.insertOrAssign(id, {L3::VrfName("red"), {{}, {}}});
      const Vrf::VrfIdMap::VrfId vrf(static_cast<std::uint32_t>(id.hash() % 3));
      builder_.state.ipConfig->ipIntfConfig.insertOrAssign(id, {id, {}, {}, {}, {}, {}});
      builder_.state.ip6Config->intf.insertOrAssign(id, {id, {}, {}});
      builder_.arp->insert({{vrf, id, Kesh::IpAddr::fromHost(1)}, {}});
      builder_.neighbors->insert({{vrf, id, Kesh::Ip6Addr()}, {}});
    };
  }
  Step addConfigured() {
    const Routing::RouteKey key{prefix(), static_cast<std::uint8_t>(number(0, 255))};
    return [=, this] {
      const auto route = Lumo::newEntity<Routing::Route>(key);
      const auto first = order_() % 3;
      for (std::uint32_t i = 0; i < 3; ++i) {
        Routing::Via via;
        via.intfId = intf("Vlan1");
        via.vni = (first + i) % 3;
        route->via.insertOrAssign(via, true);
      }
      builder_.state.vrfs[1].routingConfig->route.insertOrAssign(key, route);
      const auto input = Lumo::newEntity<Routing::RouteInput>();
      input->route.insertOrAssign(key, route);
      const Lumo::String agent(key.prefix.stringValue().str() + std::to_string(key.preference));
      builder_.state.vrfs[1].routeInput.insertOrAssign(agent, input);
    };
  }
  Step addGroup() {
    const auto id = number(1, 1000);
    return [=, this] {
      const auto entry =
          Lumo::newEntity<Routing::NexthopGroup::NexthopGroupConfigEntry>(std::to_string(id));
      const auto first = order_() % 3;
      for (std::uint32_t i = 0; i < 3; ++i) {
        const auto index = static_cast<std::uint16_t>((first + i) % 3);
        entry->destinationIp.set(index, Kesh::IpAddr::fromHost(index));
      }
      builder_.state.nhgConfig->nexthopGroup.insertOrAssign(entry->name, entry);
      Routing::Hardware::NexthopGroupVrfStatus status;
      status.nexthopGroupAdj.insertOrAssign(id, {{}, id, {}});
      const L3::VrfName vrf(Lumo::String(std::to_string(id)));
      builder_.state.nhgHwStatus->vrfStatus.insertOrAssign(vrf, status);
      const auto input = Lumo::newEntity<Ip::RouteDistinguisherInput>();
      input->routeDistinguisher.insertOrAssign(vrf, *Kesh::RouteDistinguisher::parse("65000:1"));
      builder_.state.routeDistinguisherInputDir->entityIs(entry->name, input);
      builder_.counterKeys->insert({{id, id % 3}, id, id});
      builder_.counters->insert({Gaugex::CounterIndex(id), id, 0});
      builder_.counterSnapshots->insert({Gaugex::CounterIndex(id), 0, id});
    };
  }
  Step addTunnel() {
    const Tunnel::TunnelTable::TunnelId id(number(1, 1000));
    return [=, this] {
      const Tunnel::TunnelTable::TunnelVia via{{{}, intf("Vlan1")}, {}};
      builder_.state.tunnelFib->entries.insertOrAssign(id, {id, {via}, {}, 0});
      builder_.state.srTePolicyStatus->fecIdToPolicyKey.insertOrAssign(FecId(id.value()), {});
    };
  }

  std::mt19937 random_, order_;
  state::DeviceBuilder builder_;
  state::VrfTables* red_;
  std::vector<Step> steps_;
};

TEST(Snapshot, OfEqualStatesIsEqualAndComesBackToTheByte) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    const auto text = saveText(RandomDevice(seed, 1).state());
    EXPECT_TRUE(saveText(RandomDevice(seed, 2).state()) == text) << "seed " << seed;
    EXPECT_TRUE(saveText(loadText(text, "saved")) == text) << "seed " << seed;
  }
}

} // namespace
