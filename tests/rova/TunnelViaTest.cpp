// The order of tunnel vias and the walk that puts FECs' vias in their place.
#include "rova/fec/StaticInterfaceTunnel.h"
#include "rova/fec/TunnelRows.h"
#include "support/Device.h"
#include "support/Expect.h"

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
  Tunnel::CliSupport::CachedStaticIntfTunnelInfo info;
  EXPECT_DEATH(Rova::fillStaticIntfTunnelInfo(fib.ptr(), id, info),
               assertion("0 && \"mpls not supported on static interface tunnels\""));
}

TEST(StaticInterfaceTunnelTest, TellsEndsWordsAndKey) {
  const auto fib = encaps();
  const TunnelId id(9ull << 44 | 1ull << 43 | 4);
  fib->entries.insertOrAssign(id, {id, {{{addr("10.1.0.1"), {}}, encap(2, 1)}}, {}});
  Tunnel::CliSupport::CachedStaticIntfTunnelInfo info, expected;
  Rova::fillStaticIntfTunnelInfo(fib.ptr(), TunnelId(9ull << 44 | 5), info);
  Rova::fillStaticIntfTunnelInfo(nullptr, id, info);
  EXPECT_EQ(info, expected) << "a tunnel without entry changes nothing";
  expected = {"static interface", 4, "IPsec GRE", "ipsec gre", "10.0.1.1", "10.0.0.1", 1, 2, 0, 0};
  Rova::fillStaticIntfTunnelInfo(fib.ptr(), id, info);
  EXPECT_EQ(info, expected);
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
