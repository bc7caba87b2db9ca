// The counter tables of a built device: where clients find them, and what stands for "none".
#include "state/DeviceBuilder.h"

#include <gtest/gtest.h>

namespace {

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

TEST(CounterKeyInfo, IsTheDefaultByItsHalvesWhateverItsKey) {
  const NexthopGroupEntryCounterKeyInfo none;
  EXPECT_EQ(none.firstHalf, 0xffffffffu);
  EXPECT_EQ(none, (NexthopGroupEntryCounterKeyInfo{{7, 1}, 0xffffffff, 0}));
  EXPECT_NE(none, (NexthopGroupEntryCounterKeyInfo{{}, 0xffffffff, 1}));
  EXPECT_NE(none, (NexthopGroupEntryCounterKeyInfo{{}, 0, 0}));
}

} // namespace
