// What a snapshot fills of nexthop groups: their configuration, their resolution, their counters.
#include "sources/snapshot/Snapshot.h"
#include "state/DeviceBuilder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using sources::snapshot::loadText;
using sources::snapshot::saveText;

state::DeviceState rich() {
  return sources::snapshot::load(std::filesystem::path(ROVA_SAMPLES) / "rich.json");
}

const Routing::NexthopGroup::NexthopGroupConfigEntry& group(const state::DeviceState& device,
                                                            const char* name) {
  return **device.nhgConfig->nexthopGroup.find(name);
}

TEST(NexthopGroupSnapshot, FillsTheConfiguration) {
  using namespace Routing::NexthopGroup;
  const auto device = rich();
  EXPECT_EQ(device.nhgConfig->nexthopGroup.size(), 5u);
  const auto& edge = group(device, "edge");
  EXPECT_EQ(edge.name, "edge");
  EXPECT_EQ(edge.type, NexthopGroupType::mplsOverGre);
  EXPECT_EQ(edge.size, 4u);
  EXPECT_EQ(edge.ttl, 64u);
  EXPECT_EQ(edge.sourceIntf, Kesh::IntfId("Loopback0"));
  EXPECT_EQ(edge.sourceIp.af(), Kesh::AddressFamily::unset);
  EXPECT_EQ(edge.destinationIp[3].stringValue(), "10.0.0.4");
  EXPECT_EQ(edge.destinationIp[1].af(), Kesh::AddressFamily::unset);
  EXPECT_EQ(edge.addressFamily, Kesh::AddressFamily::ip4);
  EXPECT_EQ(edge.entryCounterType, EntryCounterType::perEntry);
  EXPECT_TRUE(edge.hierarchicalFecsEnabled);
  EXPECT_EQ(group(device, "probe").greKeyType, Routing::GreKeyType::ingressInterface);
  EXPECT_EQ(group(device, "probe").sourceIp.stringValue(), "192.0.2.1");
  EXPECT_EQ(group(device, "strange").type, NexthopGroupType{9});
  EXPECT_EQ(group(device, "new").type, NexthopGroupType::invalid);
}

// The display shows a stack from its last label, which it calls the top.
TEST(NexthopGroupSnapshot, ListsLabelsFromTheTopWhichIsTheLastOfTheStack) {
  const auto device = rich();
  const auto stack = group(device, "edge").mplsLabelStack[0];
  EXPECT_EQ(stack.operation(), Kesh::LabelAction::push);
  ASSERT_EQ(stack.stackSize(), 3);
  EXPECT_EQ(stack.label(Kesh::MplsStackEntryIndex(2)).value(), 16u);
  EXPECT_EQ(stack.label(Kesh::MplsStackEntryIndex(1)).value(), 17u);
  EXPECT_EQ(stack.label(Kesh::MplsStackEntryIndex(0)).value(), 18u);
  EXPECT_EQ(group(device, "edge").mplsLabelStack[1].operation(), Kesh::LabelAction::pop);
}

TEST(NexthopGroupSnapshot, FillsTheHardwareStatus) {
  const auto device = rich();
  const auto* const vrf = device.nhgHwStatus->vrfStatus.find("default");
  ASSERT_TRUE(vrf);
  EXPECT_FALSE(device.nhgHwStatus->vrfStatus.find("blue"));
  const auto* const adj = vrf->nexthopGroupAdj.find(7);
  ASSERT_TRUE(adj);
  EXPECT_EQ(adj->numProgrammedTunnels, 2u);
  EXPECT_EQ(adj->sourceIp.stringValue(), "192.0.2.1");
  ASSERT_EQ(adj->via.size(), 3u);
  const auto& via = *adj->via.find(0);
  EXPECT_EQ(via.route.stringValue(), "10.0.0.0/24");
  EXPECT_EQ(via.hop.stringValue(), "10.1.0.1");
  EXPECT_EQ(via.l3Intf, Kesh::IntfId("Vlan10"));
  EXPECT_EQ(via.vlanId, 10u);
  EXPECT_EQ(via.l2Intf, Kesh::IntfId("Ethernet1"));
  EXPECT_EQ(via.macAddr.stringValue(), "00:1c:73:00:00:01");
  EXPECT_EQ(via.tunnelId, ~std::uint64_t{0});
  EXPECT_EQ(via.fecId, Vanta::Fib::FecId(17));
  EXPECT_TRUE(!*adj->via.find(10));
}

TEST(NexthopGroupSnapshot, FillsTheHardwareCapabilities) {
  const auto device = rich();
  const auto& status = *device.routingHardwareStatus;
  EXPECT_EQ(status.maxNexthopGroupSize, 128u);
  EXPECT_TRUE(status.nexthopGroupEntryCounterSupported);
  EXPECT_TRUE(status.hierarchicalFecSupported());
  const auto fresh = loadText(R"({"rovaSnapshot": 1})", "leaf1");
  EXPECT_FALSE(fresh.routingHardwareStatus->nexthopGroupEntryCounterSupported);
  EXPECT_FALSE(fresh.routingHardwareStatus->hierarchicalFecSupported());
}

TEST(NexthopGroupSnapshot, FillsCounters) {
  const auto device = rich();
  bool found = false;
  const auto info = *device.counterKeyTable->counterKeyInfo.safeLookup({7, 0}, found, 0);
  EXPECT_EQ(info.firstHalf, 1u);
  EXPECT_EQ(info.counterIndex, 17u);
  const auto other = *device.counterKeyTable->counterKeyInfo.safeLookup({7, 3}, found, 0);
  EXPECT_EQ(other.firstHalf, 0xffffffffu);
  EXPECT_EQ(other.counterIndex, ~std::uint64_t{0});
  const Gaugex::CounterIndex index(17);
  const auto counter = *device.counterTable->counter.safeLookup(index, found, 0);
  EXPECT_EQ(counter.packets, 5u);
  EXPECT_EQ(counter.bytes, ~std::uint64_t{0});
  EXPECT_EQ(device.snapshotTable->counter.safeLookup(index, found, 0)->bytes, 240u);
  EXPECT_EQ(device.counterTable->counter.members(), 2u);
  EXPECT_EQ(device.entityManager->getEntity("gaugex/counterTable/17/4294967295"),
            device.counterTable);
}

TEST(NexthopGroupSnapshot, LeavesOutElementsThatAreDefaults) {
  const auto device = loadText(
      R"({"rovaSnapshot": 1, "nhgConfig": {"edge": {"mplsLabelStack": {"0": {}, "1": {"labels": []}}}}})",
      "leaf1");
  EXPECT_NE(saveText(device).find("\"edge\": {}"), std::string::npos);
}

} // namespace
