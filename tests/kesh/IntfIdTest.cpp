// Interface identifiers: names, order, and the special ones that stand for something else.
#include "kesh/IntfId.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

using namespace Kesh;

IntfId intf(const std::string& name) { return IntfId(Lumo::String(name)); }

TEST(IntfIdTest, EveryNameComesBack) {
  std::set<std::uint64_t> values;
  for (const char* const name :
       {"Ethernet1", "Ethernet0", "Ethernet1.5", "Ethernet1/1", "Ethernet1/1.5", "Ethernet1/2/3",
        "Ethernet1/2/3.4094", "Ethernet1048574", "Ethernet1/4094/4094.4094", "Loopback0",
        "Management1", "Management1/1", "Port-Channel2000", "Tunnel0", "Tunnel65535", "Vlan4094",
        // names that only look like those of a known family
        "Ethernet", "Ethernet01", "Ethernet1/", "Ethernet1.", "Ethernet1/2/3/4", "Ethernet1.5/1",
        "Ethernet-1", "Ethernet1 ", "ethernet1", "Ethernet1048575", "Ethernet1/4095",
        "Ethernet1.4095", "Ethernet99999999999999999999", "Vlan+1", "Vlan007",
        // names of other systems
        "eth0", "enp0s31f6", "a", "a-name-of-15-by", "wlan0.100", "br-\xc3\xa9t\xc3\xa9",
        // special identifiers
        "DynamicTunnel:7.123", "DynamicTunnel:15.17592186044415", "Fec:15.281474976710655",
        "Fec:1.7", "NexthopGroup:4294967295", "NexthopGroup:4294967296", "Fec:256.1",
        "DynamicTunnel:16.1"}) {
    const auto id = intf(name);
    EXPECT_TRUE(id) << name;
    EXPECT_EQ(id.stringValue().str(), name);
    EXPECT_EQ(intf(name), id);
    EXPECT_EQ(IntfId::fromValue(id.value()), id);
    EXPECT_TRUE(values.insert(id.value()).second) << name << " shares its identifier";
  }
}

TEST(IntfIdTest, TheNullIdentifierIsTheReservedValue) {
  const IntfId null;
  EXPECT_FALSE(null);
  EXPECT_EQ(null, intf(""));
  EXPECT_EQ(null, IntfId::fromValue(0xffffffff));
  EXPECT_EQ(null.value(), 0xffffffffu);
  EXPECT_EQ(null.stringValue().str(), "");
  EXPECT_TRUE(IntfId::fromValue(0)) << "zero is not the null identifier";
  const auto unseen = IntfId::fromValue(std::uint64_t{0x80} << 56 | 0x123456);
  EXPECT_EQ(unseen.stringValue().str().substr(0, 5), "Intf#");
}

TEST(IntfIdTest, OrdersNaturally) {
  const char* const names[] = {"Ethernet1",      "Ethernet1.5",       "Ethernet1.10",
                               "Ethernet1/1",    "Ethernet1/2",       "Ethernet1/10",
                               "Ethernet1/10/1", "Ethernet2",         "Ethernet10",
                               "Loopback0",      "Management1",       "Port-Channel9",
                               "Port-Channel10", "Tunnel1",           "Vlan9",
                               "Vlan100",        "DynamicTunnel:1.5", "Fec:0.1",
                               "NexthopGroup:9", "NexthopGroup:10",   "eth2",
                               "eth10",          "ethernet1"};
  std::vector<IntfId> ascending;
  for (const char* const name : names) ascending.push_back(intf(name));
  support::expectAscending(ascending);
}

TEST(NaturalLessTest, IsATotalOrder) {
  const char* const ascending[] = {"",   "0",  "00",  "1",  "01",  "2",     "10",     "010", "a",
                                   "a0", "a1", "a1b", "a2", "a10", "a10b2", "a10b10", "aa",  "b"};
  // Texts that differ in leading zeros alone compare as numbers first and then as texts, so only
  // what is defined either way is held against the table.
  for (const char* const a : ascending) {
    for (const char* const b : ascending) {
      const int equal = std::string(a) == b;
      EXPECT_EQ(naturalLess(a, b) + naturalLess(b, a) + equal, 1) << a << " " << b;
      for (const char* const c : ascending) {
        if (naturalLess(a, b) && naturalLess(b, c)) {
          EXPECT_TRUE(naturalLess(a, c)) << a << " " << b << " " << c;
        }
      }
    }
  }
  EXPECT_TRUE(naturalLess("a2", "a10"));
  EXPECT_TRUE(naturalLess("a10b2", "a10b10"));
  EXPECT_TRUE(naturalLess("port99999999999999999998", "port99999999999999999999"));
}

TEST(IntfIdTest, TellsTheFamiliesApart) {
  const struct {
    const char* name;
    bool management, tunnel, dynamicTunnel, group, fec;
  } cases[] = {
      {"", false, false, false, false, false},
      {"Ethernet1", false, false, false, false, false},
      {"Management1", true, false, false, false, false},
      {"Tunnel7", false, true, false, false, false},
      {"DynamicTunnel:7.1", false, false, true, false, false},
      {"NexthopGroup:5", false, false, false, true, false},
      {"Fec:15.9", false, false, false, false, true},
      {"eth0", false, false, false, false, false},
  };
  for (const auto& [name, management, tunnel, dynamicTunnel, group, fec] : cases) {
    const auto id = intf(name);
    EXPECT_EQ(MgmtIntfId::isMgmtIntfId(id), management) << name;
    EXPECT_EQ(TunnelIntfId::isTunnelIntfId(id), tunnel) << name;
    EXPECT_EQ(DynamicTunnelIntfId::isDynamicTunnelIntfId(id), dynamicTunnel) << name;
    EXPECT_EQ(NexthopGroupIntfId::isNexthopGroupIntfId(id), group) << name;
    EXPECT_EQ(FecIdIntfId::isFecIdIntfId(id), fec) << name;
  }
}

TEST(SpecialIntfIdTest, GivesBackWhatItStandsFor) {
  EXPECT_EQ(TunnelIntfId::port(intf("Tunnel0")), 0u);
  EXPECT_EQ(TunnelIntfId::port(intf("Tunnel255")), 255u);
  for (const std::uint64_t tunnel : {0x100000000001ull, 0x700000000000ull, 0xffffffffffffull}) {
    EXPECT_EQ(DynamicTunnelIntfId::tunnelId(DynamicTunnelIntfId::tunnelIdToIntfId(tunnel)), tunnel);
  }
  for (const std::uint32_t group : {1u, 0xffffffffu}) {
    EXPECT_EQ(NexthopGroupIntfId::nexthopGroupId(NexthopGroupIntfId::intfId(group)), group);
  }
  EXPECT_EQ(NexthopGroupIntfId::nexthopGroupId(intf("Ethernet1")), 0u);
}

TEST(FecIdIntfIdTest, HasRoomForNumbersOf48Bits) {
  for (const std::uint64_t fec :
       {0x1ull, 0x0f00000000000001ull, 0x0f00ffffffffffffull, 0xff00000000000000ull}) {
    EXPECT_EQ(FecIdIntfId::fecId(FecIdIntfId::intfId(fec)), fec);
  }
  for (const std::uint64_t fec : {0x0ull, 0x0f01000000000000ull, 0x00ffffffffffffffull}) {
    EXPECT_FALSE(FecIdIntfId::intfId(fec)) << fec;
  }
  EXPECT_EQ(FecIdIntfId::fecId(intf("Ethernet1")), 0u);
  EXPECT_EQ(FecIdIntfId::fecId(IntfId()), 0u);
}

} // namespace
