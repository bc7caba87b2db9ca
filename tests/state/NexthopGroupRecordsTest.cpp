// The records of nexthop groups: names of their kinds, defaults, and what a default stands for.
#include "state/NexthopGroupConfig.h"
#include "state/NexthopGroupHardware.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

namespace {

using Routing::GreKeyType;
using Routing::Hardware::NexthopGroupVia;
using Routing::NexthopGroup::EntryCounterType;
using Routing::NexthopGroup::NexthopGroupConfigEntry;
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

TEST(NexthopGroupConfigEntry, ReadsIndexesBeyondItsArraysAsDefaults) {
  const auto entry = Lumo::newEntity<NexthopGroupConfigEntry>("edge");
  entry->destinationIp.set(3, Kesh::IpAddr::fromHost(7));
  EXPECT_EQ(entry->destinationIp[3].v4Addr().host(), 7u);
  EXPECT_EQ(entry->destinationIp[2].af(), Kesh::AddressFamily::unset);
  EXPECT_EQ(entry->destinationIp[65535].af(), Kesh::AddressFamily::unset);
  EXPECT_EQ(entry->mplsLabelStack[0].stackSize(), 0);
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

struct Change {
  const char* field;
  std::function<void(NexthopGroupVia&)> make;
};
void PrintTo(const Change& change, std::ostream* out) { *out << change.field; }

class ChangedVia : public testing::TestWithParam<Change> {};

TEST_P(ChangedVia, IsNoDefaultVia) {
  NexthopGroupVia via;
  EXPECT_TRUE(!via);
  GetParam().make(via);
  EXPECT_FALSE(!via);
  EXPECT_FALSE(via == NexthopGroupVia());
}

INSTANTIATE_TEST_SUITE_P(
    NexthopGroupVia, ChangedVia,
    testing::Values(Change{"route", [](auto& via) { via.route = Kesh::Prefix(); }},
                    Change{"hop", [](auto& via) { via.hop = Kesh::IpAddr(); }},
                    Change{"l3Intf", [](auto& via) { via.l3Intf = Kesh::IntfId("Vlan1"); }},
                    Change{"vlanId", [](auto& via) { via.vlanId = 1; }},
                    Change{"l2Intf", [](auto& via) { via.l2Intf = Kesh::IntfId("Vlan1"); }},
                    Change{"macAddr",
                           [](auto& via) {
                             via.macAddr = *Kesh::EthAddr::parse("00:00:00:00:00:01");
                           }},
                    Change{"tunnelId", [](auto& via) { via.tunnelId = 1; }},
                    Change{"fecId", [](auto& via) { via.fecId = Vanta::Fib::FecId(1); }}));

// The display compares these two words directly.
TEST(NexthopGroupVia, HasNoInterfaceInItsTwoWords) {
  EXPECT_EQ(NexthopGroupVia().l3Intf.value(), 0x00000000ffffffffu);
}

} // namespace
