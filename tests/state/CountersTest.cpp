// The counter tables of a built device: where clients find them, and what stands for "none".
#include "state/ChipSet.h"
#include "state/DeviceBuilder.h"

#include <gtest/gtest.h>

namespace {

using Gaugex::CounterIndex;
using Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo;
using Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable;

TEST(Counters, StandAtTheirPaths) {
  const state::DeviceState device = state::DeviceBuilder().state;
  const auto at = [&](const char* path) { return device.entityManager->getEntity(path); };
  EXPECT_EQ(at("tunnel/nexthop/counterkeyinfo"), device.counterKeyTable);
  EXPECT_EQ(at("gaugex/counterTable/17/4294967295"), device.counterTable);
  EXPECT_EQ(at("gaugex/snapshotCounterTable/17/4294967295"), device.snapshotTable);
  EXPECT_FALSE(at("gaugex/counterTable/17/4294967294"));
  EXPECT_TRUE(Lumo::dynamicPtrCast<NexthopGroupEntryToCounterKeyTable>(
      at("tunnel/nexthop/counterkeyinfo")));
  EXPECT_FALSE(Lumo::dynamicPtrCast<Gaugex::CounterTable>(at("tunnel/nexthop/counterkeyinfo")));
}

TEST(Counters, AreReadByTheirKeys) {
  state::DeviceBuilder builder;
  builder.counterKeys->insert({{7, 1}, 2, 17});
  builder.counters->insert({CounterIndex(17), 5, 600});
  bool found = false;
  const auto info = *builder.state.counterKeyTable->counterKeyInfo.safeLookup({7, 1}, found, 0);
  EXPECT_EQ(info.counterIndex, 17u);
  const CounterIndex index(info.counterIndex);
  EXPECT_EQ(builder.state.counterTable->counter.safeLookup(index, found, 0)->bytes, 600u);
  EXPECT_EQ(builder.state.snapshotTable->counter.safeLookup(index, found, 0)->bytes, 0u);
  EXPECT_FALSE(found);
  EXPECT_EQ(*builder.state.counterKeyTable->counterKeyInfo.safeLookup({1, 7}, found, 0),
            NexthopGroupEntryCounterKeyInfo());
}

TEST(CounterKeyInfo, IsTheDefaultByItsHalvesWhateverItsKey) {
  const NexthopGroupEntryCounterKeyInfo none;
  EXPECT_EQ(none.firstHalf, 0xffffffffu);
  EXPECT_EQ(none, (NexthopGroupEntryCounterKeyInfo{{7, 1}, 0xffffffff, 0}));
  EXPECT_NE(none, (NexthopGroupEntryCounterKeyInfo{{}, 0xffffffff, 1}));
  EXPECT_NE(none, (NexthopGroupEntryCounterKeyInfo{{}, 0, 0}));
}

TEST(CounterKey, OrdersByGroupThenEntry) {
  using Key = Routing::NexthopGroup::NexthopGroupEntryCounterKey;
  EXPECT_LT((Key{1, 9}), (Key{2, 0}));
  EXPECT_LT((Key{2, 0}), (Key{2, 1}));
}

TEST(ChipSet, IsTheSetOfItsBits) {
  EXPECT_EQ(Dunlin::ChipSet(), Dunlin::ChipSet(0, 0));
  EXPECT_NE(Dunlin::ChipSet(5), Dunlin::ChipSet(0, 5));
  EXPECT_EQ(Dunlin::ChipSet(5), Dunlin::ChipSet(5));
  EXPECT_NE(Dunlin::ChipSet(5), Dunlin::ChipSet(4));
  EXPECT_NE(Dunlin::ChipSet(1).hash(), Dunlin::ChipSet(std::uint64_t{1} << 63).hash());
}

} // namespace
