// Identifiers and their limits.
#include "state/DeviceState.h"
#include "support/Expect.h"

#include <set>

namespace {

using namespace support;
using Lumo::RangeException;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::tunnelIdOfIntf;
using Tunnel::TunnelTable::TunnelKind;
using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

Kesh::IntfId intf(const char* name) { return Kesh::IntfId(Lumo::String(name)); }

TEST(FecIdTest, HasTheTypeInItsTopByte) {
  const FecId id(AdjType::srTePolicy, 0x123456);
  EXPECT_EQ(id.value(), 0x0f00000000123456u);
  EXPECT_EQ(id.adjType(), AdjType::srTePolicy);
  EXPECT_EQ(FecId(AdjType::attached, ~std::uint64_t{0}).value(), 0x04ffffffffffffffu);
  EXPECT_TRUE(FecId().isNull());
  EXPECT_FALSE(FecId(AdjType::fib6, 0).isNull()) << "all 64 bits count";
  EXPECT_EQ(fecIdToNewAdjType(1, FecId(AdjType::tunnelFib6, 7)), FecId(AdjType::fib6, 7));
}

TEST(FecIdTest, TypeOneAloneIsOfTheIp6Table) {
  for (unsigned type = 0; type < 20; ++type) {
    EXPECT_EQ(isV6FecId(FecId(static_cast<AdjType>(type), 1)), type == 1) << type;
  }
}

TEST(FecIdDeathTest, TypesFromTwentyOnStopTheProcess) {
  constexpr auto text = "(value_ >> Fib::adjTypePos()) < Fib::adjTypeMax()";
  EXPECT_EQ(FecId(std::uint64_t{19} << 56).adjType(), static_cast<AdjType>(19));
  EXPECT_DEATH(FecId(std::uint64_t{20} << 56).adjType(), assertion(text));
  EXPECT_DEATH(isV6FecId(FecId(~std::uint64_t{0})), assertion(text));
}

// One-at-a-time, worked out apart from this code over the 8 bytes, lowest first.
TEST(FecIdTest, HashesByJenkins) {
  const struct {
    std::uint64_t value;
    std::uint32_t hash;
  } cases[] = {
      {0, 0}, {1, 0x98adb391}, {0x0100000000000001, 0x1b99b96b}, {0x0f123456789abcde, 0x4d4316b6}};
  for (const auto& [value, hash] : cases) EXPECT_EQ(FecId(value).hash(), hash) << value;
  EXPECT_EQ(TunnelId(1).hash(), 0x98adb391u);
}

TEST(FecIdTest, HasAFormAsAnInterface) {
  const FecId id(AdjType::srTePolicy, 9);
  EXPECT_EQ(FecId::hierarchicalIntfIdToFecId(FecId::fecIdToHierarchicalIntfId(id)), id);
  EXPECT_TRUE(FecId::hierarchicalIntfIdToFecId(intf("Ethernet1")).isNull());
  EXPECT_FALSE(FecId::fecIdToHierarchicalIntfId(FecId()));
}

TEST(TunnelIdTest, Has48Bits) {
  EXPECT_EQ(TunnelId(0xffffffffffff).value(), 0xffffffffffffu);
  for (const std::uint64_t value : {std::uint64_t{1} << 48, ~std::uint64_t{0}}) {
    EXPECT_EQ(messageOf<RangeException>([=] { (void)TunnelId(value); }),
              "TunnelId::value < TunnelId::minValue or > TunnelId::maxValue not allowed");
  }
  EXPECT_EQ(TunnelId(TunnelId::convertToTunnelValue(9, 5)).kind(), TunnelKind::staticInterface);
  EXPECT_EQ(TunnelId(TunnelId::convertToTunnelValue(9, 5)).index(), 5u);
}

TEST(TunnelIdTest, IsReadFromInterfaces) {
  const struct {
    const char* name;
    std::uint64_t value;
  } cases[] = {{"", 0},
               {"Ethernet1", 0},
               {"NexthopGroup:5", 0},
               {"Fec:15.1", 0},
               {"DynamicTunnel:7.3", 0x700000000003},
               {"Tunnel5", 0x900000000005},
               {"Tunnel65541", 0x900000000005}}; // the lower 16 bits of the port
  for (const auto& [name, value] : cases)
    EXPECT_EQ(tunnelIdOfIntf(intf(name)).value(), value) << name;
  const auto broken = Kesh::IntfId::fromValue(0x4001000000000000);
  EXPECT_THROW(tunnelIdOfIntf(broken), RangeException);
}

TEST(EvpnVxlanTunnelTableTest, KnowsItsInterfacesAndEntries) {
  using Tunnel::TunnelTable::EvpnVxlanTunnelTable;
  EXPECT_TRUE(EvpnVxlanTunnelTable::isValidEvpnIntf(intf("DynamicTunnel:6.1")));
  for (const char* const name : {"", "DynamicTunnel:7.1", "Tunnel6", "Ethernet6"}) {
    EXPECT_FALSE(EvpnVxlanTunnelTable::isValidEvpnIntf(intf(name))) << name;
  }
  EvpnVxlanTunnelTable table;
  const TunnelId id(0x600000000001);
  EXPECT_FALSE(table.entry(id).isSet());
  EXPECT_EQ(table.entry(id), Tunnel::TunnelTable::EvpnVxlanTunnelEntry(id));
  Tunnel::TunnelTable::EvpnVxlanTunnelEntry entry(id);
  entry.vtepAddr = *Kesh::IpGenAddr::parse("0.0.0.0");
  table.entries.insertOrAssign(id, entry);
  EXPECT_TRUE(table.entry(id).isSet());
}

TEST(ViaIndexTest, ReachesTo511) {
  using Vanta::Fib::ViaIndex;
  EXPECT_EQ(ViaIndex(511).value(), 511u);
  for (const std::uint32_t value : {512u, 0xffffffffu}) {
    EXPECT_EQ(messageOf<RangeException>([=] { (void)ViaIndex(value); }),
              "ViaIndex::value < ViaIndex::min or > ViaIndex::max not allowed");
  }
  EXPECT_EQ(ViaIndex::fromRecord(600).value(), 600u);
}

TEST(WeightTest, IsNotZero) {
  EXPECT_EQ(SrTePolicy::Weight(1).value(), 1u);
  EXPECT_EQ(SrTePolicy::Weight(0xffffffff).value(), 0xffffffffu);
  EXPECT_EQ(messageOf<RangeException>([] { (void)SrTePolicy::Weight(0); }),
            "Weight::value < Weight::min or > Weight::max not allowed");
}

TEST(VrfNameTest, HasAtMost100Bytes) {
  EXPECT_EQ(L3::VrfName(Lumo::String(std::string(100, 'v'))).stringValue().bytes(), 100u);
  EXPECT_EQ(messageOf<RangeException>([] { L3::VrfName(Lumo::String(std::string(101, 'v'))); }),
            "VrfName::bytes > VrfName::maxLength not allowed");
  EXPECT_TRUE(L3::VrfName(static_cast<const char*>(nullptr)).stringValue().empty());
}

TEST(NexthopGroupEntryKeyTest, Has128Bytes) {
  using NexthopGroup::NexthopGroupEntryKey;
  const std::string longest(128, 'n');
  EXPECT_EQ(NexthopGroupEntryKey(Lumo::String(longest)).nhgName().str(), longest);
  EXPECT_EQ(NexthopGroupEntryKey(Lumo::String(longest + "x")).nhgName().str(), longest);
  NexthopGroupEntryKey reused{Lumo::String(longest)};
  reused.nhgNameIs("a");
  EXPECT_EQ(reused, NexthopGroupEntryKey(Lumo::String("a")));
  EXPECT_EQ(NexthopGroupEntryKey().nhgName().str(), "");
}

} // namespace
