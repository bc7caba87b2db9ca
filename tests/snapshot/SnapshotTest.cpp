// What a snapshot fills, and that saving and loading are each other's inverse.
#include "sources/snapshot/Snapshot.h"
#include "state/DeviceBuilder.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <random>

namespace {

using sources::snapshot::loadText;
using sources::snapshot::saveText;
using support::fileText;
using Vanta::Fib::FecId;

const auto samples = std::filesystem::path(ROVA_SAMPLES);

state::DeviceState rich() { return sources::snapshot::load(samples / "rich.json"); }

template <class View, class Key>
typename View::ValueType recordOf(const View& view, const Key& key) {
  bool found = false;
  const auto record = *view.safeLookup(key, found, 0);
  EXPECT_TRUE(found);
  return record;
}

Kesh::IntfId intf(const std::string& name) { return Kesh::IntfId(Lumo::String(name)); }

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

// The scenarios of the command show what a snapshot fills; this is what none of them shows.
TEST(Snapshot, FillsWhatNoDisplayShows) {
  using namespace Tunnel::TunnelTable;
  const auto device = rich();
  const auto& vrf = device.vrfs[0];
  EXPECT_FALSE(vrf.routing6Config);
  EXPECT_EQ((*vrf.routeInput.find("bgp"))->route.size(), 0u);
  EXPECT_EQ(recordOf(vrf.kernelUnprogrammedRoute->error, *Kesh::Prefix::parse("10.0.0.0/8")).error,
            -22);
  const auto fec = recordOf(device.forwardingStatus->fec, FecId(Vanta::Fib::AdjType::fib, 17));
  EXPECT_EQ(fec.via(Vanta::Fib::ViaIndex(1)).labelAndAction.action(), 1);
  EXPECT_TRUE(fec.via(Vanta::Fib::ViaIndex(1)).mplsLabel().isNull());
  EXPECT_EQ(device.tunnelFib->entry(TunnelId(TunnelId::convertToTunnelValue(7, 12))).flags, 3);
  EXPECT_EQ(device.routing6HardwareStatus->maxUcmpWeight, 32u);
  const Arp::Table::ArpKey key{Vrf::VrfIdMap::VrfId(3), intf("Ethernet2"),
                               *Kesh::IpGenAddr::parse("10.1.0.9")};
  EXPECT_EQ(recordOf(device.arpVanta->arpEntry, key).ethAddr.stringValue(), "00:11:22:33:44:56");
  const auto& vlan = *device.ipConfig->ipIntfConfig.find(intf("Vlan10"));
  EXPECT_EQ(vlan.virtualAddrWithMask.stringValue(), "10.10.0.1/24");
  EXPECT_TRUE(vlan.virtualSecondaryWithMask.find(*Kesh::IpAddrWithMask::parse("10.11.0.1/25")));
  const auto& edge = **device.nhgConfig->nexthopGroup.find("edge");
  EXPECT_EQ(edge.mplsLabelStack[1].operation(), Kesh::LabelAction::pop);
  const auto& strange = **device.nhgConfig->nexthopGroup.find("strange");
  EXPECT_EQ(strange.type, Routing::NexthopGroup::NexthopGroupType{9});
  const auto& group = *device.nhgHwStatus->vrfStatus.find("default")->nexthopGroupAdj.find(7);
  EXPECT_EQ(group.via.find(0)->vlanId, 10u);
  EXPECT_EQ(group.via.find(0)->tunnelId, ~std::uint64_t{0});
  EXPECT_TRUE(!*group.via.find(10));
  const Routing::NexthopGroup::NexthopGroupEntryCounterKey counterKey{7, 0};
  EXPECT_EQ(recordOf(device.counterKeyTable->counterKeyInfo, counterKey).firstHalf, 1u);
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

template <class RouteType>
std::size_t namedTypes() {
  std::size_t count = 0;
  for (std::uint32_t number = 0; number < 256; ++number) {
    if (!state::routeTypeName(static_cast<RouteType>(number)).empty()) ++count;
  }
  return count;
}

// The schema is tested against the same sample, which has a route of each type.
TEST(Snapshot, HasEachRouteTypeInASample) {
  const auto device = sources::snapshot::load(samples / "route-types.json");
  const auto& vrf = device.vrfs[0];
  EXPECT_EQ(vrf.routingStatus->route.members(), namedTypes<Routing::Fib::RouteType>());
  EXPECT_EQ(vrf.routing6Status->route.members(), namedTypes<Routing6::Fib::RouteType>());
}

TEST(Snapshot, KeepsTypesWithoutANameByNumber) {
  state::DeviceBuilder builder;
  builder.defaultVrf().routes->insert(
      {Kesh::Prefix(), 0, 0xffffff01, static_cast<Routing::Fib::RouteType>(6), FecId(1)});
  const auto text = saveText(builder.state);
  EXPECT_NE(text.find(R"("0.0.0.0/0": {"type": 6, "fec": "0.1"})"), text.npos) << text;
  EXPECT_EQ(saveText(loadText(text, "saved")), text);
}

TEST(Snapshot, KeepsBytesThatAreNotUtf8) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\xe4\x7f\xed\xa0\x80\xf0\x9f", R"(a\udce4\u007f\udced\udca0\udc80\udcf0\udc9f)"},
      {"\x80\xff", R"(\udc80\udcff)"},
      {"a\xff", R"(a\udcff)"},
      {"a\xef\xbf\xbd", "a\xef\xbf\xbd"},
      {"\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80"},
      {R"(\udcff)", R"(\\udcff)"},
  };
  state::DeviceBuilder builder;
  std::uint32_t number = 0;
  for (const auto& [name, written] : cases) {
    const Lumo::String text(name);
    const auto id = Kesh::IntfId(text);
    builder.state.allIntfConfig->configs.insertOrAssign(
        id, Lumo::newEntity<Interface::IntfConfig>(id, text));
    builder.vrf(text, Vrf::VrfIdMap::VrfId(++number));
  }
  const auto text = saveText(builder.state);
  const auto loaded = loadText(text, "saved");
  EXPECT_EQ(saveText(loaded), text);
  for (const auto& [name, written] : cases) {
    const auto quoted = std::string("\"") + written + "\"";
    EXPECT_NE(text.find(quoted + ": {\"description\": " + quoted + "}"), text.npos) << quoted;
    const auto* const config = loaded.allIntfConfig->configs.find(intf(name));
    ASSERT_TRUE(config) << quoted;
    EXPECT_EQ((*config)->description, name);
    EXPECT_TRUE(loaded.vrf(name)) << quoted;
  }
}

TEST(Snapshot, TakesAllEscapes) {
  const auto device = loadText(
      R"({"rovaSnapshot": 1, "allIntfConfig": {"\u0045thernet1": {"description":
         "\"\\\/\b\f\n\r\t\u007F\u00e9\u07ff\u20AC\uffff\ud800\udc00\ud83d\ude00\udbff\udfff"}}})",
      "leaf1");
  const auto* const config = device.allIntfConfig->configs.find(intf("Ethernet1"));
  ASSERT_TRUE(config);
  EXPECT_EQ((*config)->description, "\"\\/\b\f\n\r\t\x7f\xc3\xa9\xdf\xbf\xe2\x82\xac\xef\xbf\xbf"
                                    "\xf0\x90\x80\x80\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf");
}

// Both say that the interface is in the VRF of the empty name.
TEST(Snapshot, LeavesOutAnEmptyVrf) {
  state::DeviceBuilder builder;
  const auto id = intf("Vlan1");
  builder.state.ipConfig->ipIntfConfig.insertOrAssign(
      id, {id, {}, {}, {}, {}, Lumo::newEntity<L3::IntfConfig>(L3::VrfName())});
  const auto text = saveText(builder.state);
  EXPECT_NE(text.find(R"("Vlan1": {})"), text.npos) << text;
  EXPECT_EQ(saveText(loadText(text, "saved")), text);
}

TEST(Snapshot, LeavesOutWhatIsNoRouteDistinguisherInput) {
  state::DeviceBuilder builder;
  auto& dir = *builder.state.routeDistinguisherInputDir;
  dir.entityIs("bgp", Lumo::newEntity<Ip::RouteDistinguisherInput>());
  dir.entityIs("evpn", Lumo::newEntity<Lumo::Dir>());
  dir.entityIs("gone", {});
  const auto loaded = loadText(saveText(builder.state), "saved");
  EXPECT_EQ(loaded.routeDistinguisherInputDir->entities().size(), 1u);
  EXPECT_TRUE(loaded.routeDistinguisherInputDir->hasEntry("bgp"));
}

TEST(Snapshot, LeavesOutElementsThatAreDefaults) {
  const auto device = loadText(
      R"({"rovaSnapshot": 1, "nhgConfig": {"edge": {"mplsLabelStack": {"0": {}, "1": {"labels": []}}}}})",
      "leaf1");
  EXPECT_NE(saveText(device).find("\"edge\": {}"), std::string::npos);
}

TEST(Snapshot, OfCorruptTablesIsRefused) {
  state::DeviceBuilder builder;
  builder.defaultVrf().routes->insert({Kesh::Prefix(), 0, 1, {}, FecId(1)});
  builder.defaultVrf().routes->corruptAt(1);
  EXPECT_THROW(saveText(builder.state), Tembra::CorruptionDetectedException);
}

/// A configured route that gets a via with every member.
const Routing::RouteKey anyRoute{Kesh::pfx(0u, 0), 1};

/// Enters the N-th member of every table.
void enterMember(state::DeviceBuilder& to, state::VrfTables& vrf, std::uint32_t n) {
  const auto prefix = Kesh::pfx(n << 20, static_cast<int>(n % 24) + 8);
  const auto prefix6 = Kesh::pfx(Kesh::Ip6Addr::fromHalves(n, n), 128);
  const FecId fec(n + 1);
  const Kesh::IntfId id = intf((n % 2 ? "Ethernet" : "t\xc3\xa4p\"") + std::to_string(n));
  const Lumo::String name(std::to_string(n));
  vrf.routes->insert({prefix, n, 0xffffff01, static_cast<Routing::Fib::RouteType>(n % 37), fec});
  vrf.routes6->insert({prefix6, 0, n, Routing6::Fib::RouteType::bgp, fec});
  vrf.kernelErrors->insert({prefix, {}, static_cast<std::int32_t>(n)});
  vrf.kernelErrors6->insert({prefix6, id, 0});
  to.fecs->insert(Vanta::Fib::Fec(fec));
  to.arp->insert({{{}, id, Kesh::IpAddr::fromHost(n)}, {}});
  to.neighbors->insert({{{}, id, Kesh::Ip6Addr()}, {}});
  to.counterKeys->insert({{n, n % 3}, n, n});
  to.counters->insert({Gaugex::CounterIndex(n), n, 0});
  to.counterSnapshots->insert({Gaugex::CounterIndex(n), 0, n});
  auto& state = to.state;
  state.allIntfConfig->configs.insertOrAssign(id, Lumo::newEntity<Interface::IntfConfig>(id, name));
  state.ip6Status->ip6IntfStatus.insertOrAssign(id, {L3::VrfName("red"), {{}, {}}});
  state.ipConfig->ipIntfConfig.insertOrAssign(id, {id, {}, {}, {}, {}, {}});
  state.ip6Config->intf.insertOrAssign(id, {id, {}, {}});
  const Routing::RouteKey key{prefix, static_cast<std::uint8_t>(n)};
  const auto input = Lumo::newEntity<Routing::RouteInput>();
  input->route.insertOrAssign(key, Lumo::newEntity<Routing::Route>(key));
  auto& configured = state.vrfs[1].routingConfig->route;
  configured.insertOrAssign(key, *input->route.find(key));
  Routing::Via via;
  via.vni = n;
  (*configured.find(anyRoute))->via.insertOrAssign(via, true);
  state.vrfs[1].routeInput.insertOrAssign(name, input);
  const auto group = Lumo::newEntity<Routing::NexthopGroup::NexthopGroupConfigEntry>(name);
  state.nhgConfig->nexthopGroup.insertOrAssign(group->name, group);
  Routing::Hardware::NexthopGroupVrfStatus status;
  status.nexthopGroupAdj.insertOrAssign(n, {{}, n, {}});
  state.nhgHwStatus->vrfStatus.insertOrAssign(L3::VrfName(name), status);
  const auto distinguishers = Lumo::newEntity<Ip::RouteDistinguisherInput>();
  distinguishers->routeDistinguisher.insertOrAssign(L3::VrfName(name), {});
  state.routeDistinguisherInputDir->entityIs(name, distinguishers);
  const Tunnel::TunnelTable::TunnelId tunnel(n + 1);
  state.tunnelFib->entries.insertOrAssign(tunnel, {tunnel, {{{{}, id}, {}}}, {}, 0});
  state.srTePolicyStatus->fecIdToPolicyKey.insertOrAssign(fec, {});
}

TEST(Snapshot, OfEqualStatesIsEqualAndComesBackToTheByte) {
  std::vector<std::uint32_t> order(40);
  std::iota(order.begin(), order.end(), 0);
  std::mt19937 random(1);
  std::string first;
  for (int round = 0; round < 10; ++round) {
    state::DeviceBuilder builder;
    auto& vrf = builder.vrf("red", Vrf::VrfIdMap::VrfId(1));
    builder.state.vrfs[1].routingConfig->route.insertOrAssign(
        anyRoute, Lumo::newEntity<Routing::Route>(anyRoute));
    for (const std::uint32_t n : order) enterMember(builder, vrf, n);
    const auto text = saveText(builder.state);
    if (round == 0) first = text;
    EXPECT_TRUE(text == first) << "round " << round;
    EXPECT_TRUE(saveText(loadText(text, "saved")) == text) << "round " << round;
    std::shuffle(order.begin(), order.end(), random);
  }
}

} // namespace
