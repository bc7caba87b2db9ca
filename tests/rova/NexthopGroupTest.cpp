// What the objects of nexthop groups do beside rendering, which the scenarios show.
#include "rova/CliSupport.h"
#include "scrivo/Capture.h"
#include "state/DeviceBuilder.h"
#include "state/Mount.h"
#include "support/Expect.h"
#include "support/Families.h"

namespace {

using namespace support;
using Routing::NexthopGroup::NexthopGroupConfigEntry;

struct NexthopGroupTest : testing::Test {
  state::DeviceBuilder tables;
  state::DeviceState& state = tables.state;

  Lumo::Ptr<Rova::NexthopGroupHelper> helper() const {
    return Rova::nexthopGroupHelperFactory(state.nhgConfig, state.nhEntryStatus, state.nhgHwStatus,
                                           state.routingHardwareStatus, {}, "");
  }
};

TEST_F(NexthopGroupTest, ANullGroupIsRefused) {
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { helper()->sortedNhgNameIs({}); }),
            "null _sortedNhgName parameter to mutator for "
            "Rova::NexthopGroupHelper::sortedNhgName not allowed\"");
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

/// An index has 16 bits, whatever a damaged size says.
TEST_F(NexthopGroupTest, AGroupHasNoMoreEntriesThanIndexes) {
  const auto group = Lumo::newEntity<NexthopGroupConfigEntry>("a");
  group->size = 0xffffffff;
  state.nhgConfig->nexthopGroup.insertOrAssign("a", group);
  tables.nexthopGroups->insert({NexthopGroup::NexthopGroupEntryKey("a"), 7});
  const Sink text, model;
  helper()->render(static_cast<std::uint32_t>(text.fd()), 1);
  EXPECT_TRUE(text.text().ends_with("\n    65535  (drop)\n"));
  helper()->render(static_cast<std::uint32_t>(model.fd()), 2);
  EXPECT_NE(model.text().find("\"65535\":"), std::string::npos);
  EXPECT_EQ(model.text().find("\"65536\":"), std::string::npos);
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

} // namespace
