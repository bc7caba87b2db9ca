// The order of tunnel vias and the walk that puts FECs' vias in their place.
#include "rova/fec/TunnelRows.h"
#include "rova/fec/Tunnels.h"
#include "support/Device.h"
#include "support/Expect.h"
#include "support/FecTables.h"

namespace {

using namespace support;
using Rova::SortedTunVia;
using Tunnel::TunnelFib::TunnelFib;
using Tunnel::TunnelTable::EncapId;
using Tunnel::TunnelTable::TunnelId;

EncapId encap(std::uint32_t kind, std::uint32_t number) { return EncapId(kind << 28 | number); }

Kesh::MplsLabelOperation stack(std::initializer_list<std::uint32_t> labels) {
  Kesh::MplsLabelOperation operation;
  operation.operationIs(Kesh::LabelAction::push);
  for (const auto label : labels) operation.labelAppend(Kesh::MplsLabel(label));
  return operation;
}

/// Encapsulations whose meaning goes against their numbers: the higher one sorts first.
Lumo::Ptr<TunnelFib> encaps() {
  const auto fib = Lumo::newEntity<TunnelFib>();
  fib->greEncaps.insertOrAssign(encap(0, 1), {{addr("10.0.0.2"), addr("10.0.1.1")}, 5});
  fib->greEncaps.insertOrAssign(encap(0, 2), {{addr("10.0.0.1"), addr("10.0.1.1")}, 9});
  fib->ipsecVtiEncaps.insertOrAssign(encap(1, 1), {{addr("10.0.0.1"), addr("10.0.1.1")}, 8});
  fib->ipsecVtiEncaps.insertOrAssign(encap(1, 2), {{addr("10.0.0.1"), addr("10.0.1.1")}, 7});
  fib->ipsecGreEncaps.insertOrAssign(encap(2, 1), {{{addr("10.0.0.1"), addr("10.0.1.1")}, 2}, 1});
  fib->ipsecGreEncaps.insertOrAssign(encap(2, 2), {{{addr("10.0.0.1"), addr("10.0.1.1")}, 1}, 2});
  fib->ipsecGreEncaps.insertOrAssign(encap(2, 3), {{{addr("10.0.0.1"), addr("10.0.1.1")}, 1}, 1});
  fib->labelStacks.insertOrAssign(encap(3, 1), stack({200, 300}));
  fib->labelStacks.insertOrAssign(encap(3, 2), stack({100, 300}));
  fib->labelStacks.insertOrAssign(encap(3, 3), stack({100, 300}));
  return fib;
}

TEST(SortedTunViaTest, OrdersByHopInterfaceKindAndMeaning) {
  const auto fib = encaps();
  const auto at = [&](const char* hop, const char* name, EncapId id) {
    return SortedTunVia(addr(hop), intf(name), id, fib);
  };
  const SortedTunVia ascending[] = {
      at("10.1.0.1", "Ethernet2", encap(3, 1)), at("10.1.0.2", "Ethernet1", encap(3, 1)),
      at("10.1.0.2", "Ethernet2", encap(0, 2)), at("10.1.0.2", "Ethernet2", encap(0, 1)),
      at("10.1.0.2", "Ethernet2", encap(1, 2)), at("10.1.0.2", "Ethernet2", encap(1, 1)),
      at("10.1.0.2", "Ethernet2", encap(2, 3)), at("10.1.0.2", "Ethernet2", encap(2, 2)),
      at("10.1.0.2", "Ethernet2", encap(2, 1)), at("10.1.0.2", "Ethernet2", encap(3, 2)),
      at("10.1.0.2", "Ethernet2", encap(3, 1)),
  };
  expectAscending(ascending);
}

TEST(SortedTunViaTest, TheSameLabelsUnderTwoNumbersAreOneVia) {
  const auto fib = encaps();
  const TunnelId id(TunnelId::convertToTunnelValue(3, 1));
  const auto via = [](EncapId encapId) {
    return Tunnel::TunnelTable::TunnelVia{{addr("10.1.0.1"), intf("Ethernet1")}, encapId};
  };
  fib->entries.insertOrAssign(id, {id, {via(encap(3, 2)), via(encap(3, 3)), via(encap(3, 1))}, {}});
  const Rova::SortedTunViaSet set(id, fib);
  EXPECT_EQ(set.vias(), 2u);
  EXPECT_EQ(set, Rova::SortedTunViaSet(id, fib));
  EXPECT_TRUE(!Rova::SortedTunViaSet(TunnelId(), {}));
}

TEST(SortedTunViaTest, AKindWithoutATableStopsTheProcess) {
  const SortedTunVia a(addr("10.1.0.1"), intf("Ethernet1"), encap(4, 1), encaps());
  EXPECT_DEATH(static_cast<void>(a < a), assertion("false && \"encap type not implemented\""));
  EXPECT_DEATH(static_cast<void>(a == a), assertion("false && \"encap type not implemented\""));
}

// A via on its own is compared with nothing, so its kind does not matter.
TEST(SortedTunViaTest, TheViaOfAWalkIsDeletedByItsPlace) {
  Rova::SortedTunViaSet set(TunnelId(), encaps());
  set.viaIs(SortedTunVia(addr("10.1.0.1"), intf("Ethernet1"), encap(4, 1), encaps()), true);
  set.viaDel(set.viaMap().cursor());
  EXPECT_EQ(set.vias(), 0u);
  set.viaIs(SortedTunVia(addr("10.1.0.1"), intf("Ethernet1"), encap(4, 1), encaps()), true);
  set.viaDelAll();
  EXPECT_EQ(set.vias(), 0u);
}

TEST(StaticInterfaceTunnelTest, MplsOnAnInterfaceStopsTheProcess) {
  const auto fib = encaps();
  const TunnelId id(TunnelId::convertToTunnelValue(9, 4));
  fib->entries.insertOrAssign(id, {id, {{{addr("10.1.0.1"), {}}, encap(3, 1)}}, {}});
  FecTables tables;
  tables.tunnelFib = fib;
  Tunnel::CliSupport::CachedStaticIntfTunnelInfo info;
  EXPECT_DEATH(Rova::lookupStaticIntfTunnelEncap(tables.forwarding(), id, info),
               assertion("0 && \"mpls not supported on static interface tunnels\""));
}

TEST(StaticInterfaceTunnelTest, TellsEndsWordsAndKey) {
  const auto fib = encaps();
  const TunnelId id(9ull << 44 | 1ull << 43 | 4);
  fib->entries.insertOrAssign(id, {id, {{{addr("10.1.0.1"), {}}, encap(2, 1)}}, {}});
  FecTables tables;
  Tunnel::CliSupport::CachedStaticIntfTunnelInfo info, expected;
  Rova::lookupStaticIntfTunnelEncap(tables.forwarding(), id, info);
  tables.tunnelFib = fib;
  Rova::lookupStaticIntfTunnelEncap(tables.forwarding(), TunnelId(9ull << 44 | 5), info);
  EXPECT_EQ(info, expected) << "a tunnel without entry changes nothing";
  expected = {"static interface", 4, "IPsec GRE", "ipsec gre", "10.0.1.1", "10.0.0.1", 1, 2, 0, 0};
  Rova::lookupStaticIntfTunnelEncap(tables.forwarding(), id, info);
  EXPECT_EQ(info, expected);
}

// 65536 vias count as 0 in 16 bits, which must not be divided by.
TEST(TunnelRowsTest, ATunnelOfMoreViasThanTheirCountHoldsGivesEachTheLeastWeight) {
  const auto fib = encaps();
  const TunnelId id(TunnelId::convertToTunnelValue(1, 1));
  Tunnel::TunnelFib::TunnelFibEntry entry{id, {}, {}};
  for (const char* hop : {"10.1.0.1", "10.1.0.2"}) {
    entry.tunnelVia.insert(entry.tunnelVia.end(), 32768,
                           {{addr(hop), intf("Ethernet1")}, encap(0, 1)});
  }
  fib->entries.insertOrAssign(id, entry);
  FecTables tables;
  tables.tunnelFib = fib;
  const auto fec = Rova::cachedFecFactory(Vanta::Fib::FecId(1));
  Rova::CachedVia via;
  via.tunnelIdIs(id);
  via.viaWeightIs("600");
  fec->viaIs(via, true);
  fec->weightIs(600);
  Rova::updateTunSortedVia(*fec, tables.forwarding());
  EXPECT_EQ(fec->viaWeight(0), "1");
  EXPECT_EQ(fec->numEntries(), 2);
}

TEST(FecBehindTunnelViaTest, MapsTheTunnelFormsBack) {
  using Vanta::Fib::FecId;
  const auto behind = [](unsigned type, std::uint64_t number) {
    const FecId named(static_cast<AdjType>(type), number);
    return Rova::fecBehindTunnelVia(FecId::fecIdToHierarchicalIntfId(named));
  };
  EXPECT_EQ(behind(16, 7), FecId(AdjType::fib, 7));
  EXPECT_EQ(behind(17, 7), FecId(AdjType::fib6, 7));
  EXPECT_EQ(behind(1, 7), FecId(AdjType::fib6, 7));
  EXPECT_EQ(behind(15, 7), FecId(AdjType::srTePolicy, 7));
  for (const unsigned type : {16u, 17u, 0u}) EXPECT_TRUE(behind(type, 0).isNull()) << type;
  for (const unsigned type : {20u, 255u}) EXPECT_TRUE(behind(type, 7).isNull()) << type;
  EXPECT_TRUE(Rova::fecBehindTunnelVia(intf("Ethernet1")).isNull());
}

} // namespace
