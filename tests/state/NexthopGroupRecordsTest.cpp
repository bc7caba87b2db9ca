// The records of nexthop groups: names of their kinds, defaults, and what a default stands for.
#include "state/NexthopGroupConfig.h"
#include "state/NexthopGroupHardware.h"

#include <gtest/gtest.h>

namespace {

using Routing::GreKeyType;
using Routing::Hardware::NexthopGroupVia;
using Routing::NexthopGroup::EntryCounterType;
using Routing::NexthopGroup::NexthopGroupType;

TEST(NexthopGroupNames, AreOnesOwnForEachNumber) {
  const char* const names[] = {"invalid",     "ipInIp",      "gre",   "mpls", "ip",
                               "mplsOverGre", "mplsOverUdp", "vxlan", "8"};
  for (std::uint32_t number = 0; number < std::size(names); ++number) {
    EXPECT_EQ(stringValue(static_cast<NexthopGroupType>(number)), names[number]);
  }
  EXPECT_EQ(stringValue(EntryCounterType{0}), "perTunnel");
  EXPECT_EQ(stringValue(EntryCounterType{1}), "perEntry");
  EXPECT_EQ(stringValue(static_cast<EntryCounterType>(4294967295)), "4294967295");
  EXPECT_EQ(Routing::stringValue(GreKeyType{1}), "ingressInterface");
  EXPECT_EQ(Routing::stringValue(static_cast<GreKeyType>(2)), "2");
}

TEST(SparseArray, HasNoMemberForADefaultElement) {
  state::SparseArray<int> array;
  array.set(9, 90);
  array.set(5, 50);
  array.set(7, 0);
  array.set(9, 0);
  ASSERT_EQ(array.members().size(), 1u);
  EXPECT_EQ(array.members().begin()->first, 5);
  EXPECT_EQ(array[9], 0);
}

TEST(NexthopGroupVia, WithAnyFieldSetIsNoDefaultVia) {
  void (*const changes[])(NexthopGroupVia&) = {
      [](auto& via) { via.route = Kesh::Prefix(); },
      [](auto& via) { via.hop = Kesh::IpAddr(); },
      [](auto& via) { via.l3Intf = Kesh::IntfId("Vlan1"); },
      [](auto& via) { via.vlanId = 1; },
      [](auto& via) { via.l2Intf = Kesh::IntfId("Vlan1"); },
      [](auto& via) { via.macAddr = *Kesh::EthAddr::parse("00:00:00:00:00:01"); },
      [](auto& via) { via.tunnelId = 1; },
      [](auto& via) { via.fecId = Vanta::Fib::FecId(1); }};
  EXPECT_TRUE(!NexthopGroupVia());
  for (const auto& change : changes) {
    NexthopGroupVia via;
    change(via);
    EXPECT_FALSE(!via) << "change " << &change - changes;
  }
}

// The display compares these two words directly.
TEST(NexthopGroupVia, HasNoInterfaceInItsTwoWords) {
  EXPECT_EQ(NexthopGroupVia().l3Intf.value(), 0x00000000ffffffffu);
}

} // namespace
