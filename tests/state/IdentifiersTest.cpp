// Identifiers and their limits.
#include "state/ChipSet.h"
#include "state/DeviceState.h"
#include "support/Expect.h"

#include <array>
#include <functional>
#include <map>

namespace {

using namespace support;
using Lumo::RangeException;
using Tunnel::TunnelTable::TunnelId;
using Tunnel::TunnelTable::tunnelIdOfIntf;
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

// A number of a record that no table has a word for still shows as something.
TEST(TunnelIdTest, EveryKindHasAWord) {
  const std::map<std::uint64_t, std::string> words = {
      {1, "direct"}, {2, "BGP-LU"},          {3, "LDP"}, {5, "static"}, {6, "EVPN VXLAN"},
      {7, "SR"},     {9, "static interface"}};
  for (std::uint64_t kind = 0; kind < 16; ++kind) {
    const auto word = words.find(kind);
    EXPECT_EQ(TunnelId(kind << 44 | 1).typeCliStr(), word == words.end() ? "tunnel" : word->second);
  }
}

TEST(EncapIdTest, EveryKindHasAWordOfDisplaysAndOneOfConfiguration) {
  const std::array<std::string, 2> words[] = {
      {"GRE", "gre"}, {"IPsec VTI", "ipsec"}, {"IPsec GRE", "ipsec gre"}, {"MPLS", "mpls"}};
  for (std::uint32_t kind = 0; kind < 16; ++kind) {
    const Tunnel::TunnelTable::EncapId id(kind << 28 | 5);
    for (const bool configured : {false, true}) {
      EXPECT_EQ(id.typeCliStr(configured), kind < 4 ? words[kind][configured] : "encapsulation");
    }
  }
}

TEST(ChipSetTest, ComesBackFromItsTextAndFromNoOther) {
  using Dunlin::ChipSet;
  const ChipSet sets[] = {ChipSet(), ChipSet(1), ChipSet(0, 1),
                          ChipSet(~std::uint64_t{0}, std::uint64_t{1} << 63)};
  for (const ChipSet& set : sets) EXPECT_EQ(ChipSet::parse(set.stringValue().view()), set);
  EXPECT_EQ(ChipSet(0xab, 1).stringValue().str(), "000000000000000100000000000000ab");
  const std::string zeros(32, '0');
  for (const std::string& text :
       {std::string(), zeros.substr(1), zeros + "0", "-" + zeros.substr(1), "0x" + zeros.substr(2),
        zeros.substr(1) + "g", zeros.substr(1) + " ", "g" + zeros.substr(1),
        zeros.substr(16) + " " + zeros.substr(17)}) {
    EXPECT_FALSE(ChipSet::parse(text)) << text;
  }
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
  table.entries.insertOrAssign(id, {});
  EXPECT_TRUE(table.entry(id).isSet());
}

TEST(RangeTest, ValuesOutsideRaiseAndTheLastInsideDoesNot) {
  using Vanta::Fib::ViaIndex;
  const auto name = [](std::size_t bytes) { L3::VrfName(Lumo::String(std::string(bytes, 'v'))); };
  const struct {
    const char* what;
    std::function<void()> inside, outside;
    const char* message;
  } cases[] = {
      {"via index", [] { ViaIndex(511); }, [] { ViaIndex(512); },
       "ViaIndex::value < ViaIndex::min or > ViaIndex::max not allowed"},
      {"weight", [] { SrTePolicy::Weight(1); }, [] { SrTePolicy::Weight(0); },
       "Weight::value < Weight::min or > Weight::max not allowed"},
      {"VRF name", [=] { name(100); }, [=] { name(101); },
       "VrfName::bytes > VrfName::maxLength not allowed"},
      {"tunnel", [] { TunnelId(0xffffffffffff); }, [] { TunnelId(std::uint64_t{1} << 48); },
       "TunnelId::value < TunnelId::minValue or > TunnelId::maxValue not allowed"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(messageOf<RangeException>(one.inside), "none") << one.what;
    EXPECT_EQ(messageOf<RangeException>(one.outside), one.message) << one.what;
  }
  EXPECT_EQ(ViaIndex::fromRecord(600).value(), 600u);
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
