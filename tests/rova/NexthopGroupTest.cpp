// What the objects of nexthop groups do beside rendering, which the scenarios show.
#include "rova/CliSupport.h"
#include "scrivo/Capture.h"
#include "state/DeviceBuilder.h"
#include "state/Mount.h"
#include "state/NexthopGroupSize.h"
#include "support/Expect.h"
#include "support/Families.h"

namespace {

using namespace support;
using Routing::NexthopGroup::NexthopGroupConfigEntry;
using Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo;

struct NexthopGroupTest : testing::Test {
  state::DeviceBuilder tables;
  state::DeviceState& state = tables.state;

  Lumo::Ptr<Rova::NexthopGroupHelper> helper() const {
    return Rova::nexthopGroupHelperFactory(state.nhgConfig, state.nhEntryStatus, state.nhgHwStatus,
                                           state.routingHardwareStatus, {}, "");
  }
  /// A programmed entry of a group of the default VRF; `tunnel` 0 for an entry without one.
  void via(std::uint32_t group, std::uint16_t entry, std::uint64_t tunnel) {
    auto& status = state.nhgHwStatus->vrfStatus;
    const L3::VrfName vrf(L3::defaultVrfName);
    if (!status.find(vrf)) status.insertOrAssign(vrf, {});
    auto& groups = status.find(vrf)->nexthopGroupAdj;
    if (!groups.find(group)) groups.insertOrAssign(group, {});
    Routing::Hardware::NexthopGroupVia via;
    via.vlanId = 1;
    via.tunnelId = tunnel;
    groups.find(group)->via.insertOrAssign(entry, via);
  }
};

TEST_F(NexthopGroupTest, CountsTheUsersOfEachTunnelOfTheWholeVrf) {
  via(1, 0, 77);
  via(2, 3, 77);
  via(2, 4, 78);
  via(2, 5, 0);
  const auto groups = helper();
  groups->processNexthopVias();
  EXPECT_EQ(groups->tunnelIdMap(77), 2u);
  EXPECT_EQ(groups->tunnelIdMap(78), 1u);
  EXPECT_EQ(groups->tunnelIdMaps(), 2u);
  const auto elsewhere = helper();
  elsewhere->vrfNameIs(L3::VrfName("blue"));
  elsewhere->processNexthopVias();
  EXPECT_EQ(elsewhere->tunnelIdMaps(), 0u);
}

TEST_F(NexthopGroupTest, ANullGroupIsRefused) {
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { helper()->sortedNhgNameIs({}); }),
            "null _sortedNhgName parameter to mutator for "
            "Rova::NexthopGroupHelper::sortedNhgName not allowed\"");
}

TEST_F(NexthopGroupTest, CountersAreDifferencesInSixtyFourBits) {
  tables.counterKeys->insert({{7, 0}, 1, 100});
  tables.counterKeys->insert({{7, 1}, 1, 101});
  tables.counters->insert({Gaugex::CounterIndex(100), 10, 1000});
  tables.counters->insert({Gaugex::CounterIndex(101), 5, 50});
  tables.counterSnapshots->insert({Gaugex::CounterIndex(100), 4, 400});
  tables.counterSnapshots->insert({Gaugex::CounterIndex(101), 6, 50});
  const auto counters = Rova::nexthopGroupCounterHelperFactory();
  counters->mountCounterVantaes(state.entityManager);
  ASSERT_TRUE(counters->counterKeyTable() && counters->counterTable() && counters->snapshotTable());
  EXPECT_FALSE(counters->counterEnabled());
  EXPECT_EQ(counters->getCounters(7, 0), Rova::CounterEntry(6, 600));
  EXPECT_EQ(counters->getCounters(7, 1), Rova::CounterEntry(~std::uint64_t{0}, 0));
  EXPECT_TRUE(!counters->getCounters(7, 2)) << "an entry without a counter";
}

TEST_F(NexthopGroupTest, WhatIsNotAtAPathMountsNothing) {
  const auto manager = Lumo::newEntity<Merrow::EntityManager>();
  manager->entityIs(Gaugex::CounterTable::path, state.counterKeyTable); // of another type
  const auto counters = Rova::nexthopGroupCounterHelperFactory();
  counters->mountCounterVantaes(manager);
  EXPECT_FALSE(counters->counterKeyTable());
  EXPECT_FALSE(counters->counterTable());
  LumoVanta::Mount mount(state.entityManager);
  mount.handleInitialized();
  EXPECT_FALSE(mount.getEntity(Gaugex::CounterTable::path)) << "not mounted";
}

/// With its handler set, a damaged table of identifiers detaches: the groups from there on have
/// none.
TEST_F(NexthopGroupTest, GroupsBehindADamagedIdentifierAreLeftOut) {
  using Table =
      Vanta::MemoryTable<NexthopGroup::NexthopGroupEntryKey, NexthopGroup::NexthopGroupEntry>;
  auto table = std::make_unique<Table>("nexthopGroupEntry");
  for (const char* const name : {"a", "b", "c"}) {
    const Lumo::Name groupName(name);
    state.nhgConfig->nexthopGroup.insertOrAssign(
        groupName, Lumo::newEntity<NexthopGroupConfigEntry>(groupName));
    table->insert({NexthopGroup::NexthopGroupEntryKey(groupName), 7});
  }
  table->corruptAt(2);
  const auto identifiers = Lumo::newEntity<NexthopGroup::EntryStatus>(std::move(table));
  identifiers->nexthopGroupEntry.corruptionHandlerIs([](auto&, const std::string&) {});
  identifiers->nexthopGroupEntry.detachCallbackIs([](auto&) {});
  const auto groups = Rova::nexthopGroupHelperFactory(
      state.nhgConfig, identifiers, state.nhgHwStatus, state.routingHardwareStatus, {}, "");
  const Sink sink;
  groups->render(static_cast<std::uint32_t>(sink.fd()), 1);
  EXPECT_EQ(sink.text(), "a\n  Unprogrammed nexthop group\n  Id                7\n"
                         "  Type              invalid\n"
                         "  Size              0  (auto size enabled, programmed size 0)\n\n");
}

TEST(CounterInterfaceTest, TheBaseStopsTheProcess) {
  Rova::NexthopGroupCliCounterInterface counters;
  EXPECT_DEATH(counters.getCounters({}),
               assertion("0 && \"Need to implement getCounters in a derived class\""));
}

/// Values of the published algorithm, worked out apart from this code.
TEST(CounterIndexTest, HashesItsBytesOneAtATime) {
  EXPECT_EQ(Rova::CounterIndex().hash(), 0u);
  EXPECT_EQ(Rova::CounterIndex(1, Dunlin::ChipSet(2, 3)).hash(), 0xc0b3be15u);
  EXPECT_EQ(Rova::CounterIndex(0x123456789abcdef0, {}).hash(), 0xc7f263eu);
}

TEST(NexthopGroupSizeTest, FollowsTheConfigurationThenTheDestinations) {
  const auto sizeOf = [](std::uint32_t size, std::vector<std::uint16_t> entries) {
    const auto group = Lumo::newEntity<NexthopGroupConfigEntry>("g");
    group->size = size;
    for (const auto entry : entries) group->destinationIp.set(entry, addr("10.0.0.1"));
    return Rova::getNhgSize(group, 8);
  };
  EXPECT_EQ(sizeOf(64, {0}), 64u) << "a configured size is not cut";
  EXPECT_EQ(sizeOf(0, {}), 0u);
  EXPECT_EQ(sizeOf(0, {0, 5}), 6u);
  EXPECT_EQ(sizeOf(0, {9}), 8u);
}

} // namespace
