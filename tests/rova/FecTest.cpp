// Captured FECs: how records become entities, and what is asked of them.
#include "support/Device.h"
#include "support/Expect.h"
#include "support/FecTables.h"

#include "rova/route/FecOperations.h"

#include <map>

namespace {

using namespace support;
using Rova::CachedVia;
using Tunnel::TunnelTable::TunnelId;
using Lines = std::vector<std::string>;

/// A via that the fields given differ in from the default one.
struct Fields {
  const char* hop = "";
  const char* interface = "";
  bool backup = false;
  std::uint32_t label = Kesh::MplsLabel::null;
  const char* weight = "";
  std::uint16_t index = 0;
};

CachedVia cachedVia(const Fields& fields) {
  CachedVia via;
  if (*fields.hop) via.hopIs(addr(fields.hop));
  via.intfIdIs(intf(fields.interface));
  via.isBackupIs(fields.backup);
  via.viaLabelIs(Kesh::MplsLabel(fields.label));
  via.viaWeightIs(fields.weight);
  via.viaIndexIs(fields.index);
  return via;
}

TEST(CachedViaTest, OrdersByBackupInterfaceHopLabelWeightAndIndex) {
  const Fields ascending[] = {
      {.hop = "10.0.0.2"},
      {.hop = "10.0.0.9", .interface = "Ethernet1"},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .label = 1},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .label = 2, .weight = "10"},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .label = 2, .weight = "9"},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .label = 2, .weight = "9", .index = 1},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .label = 2, .weight = "9", .index = 300},
      {.hop = "10.0.0.1", .interface = "Ethernet2"},
      {.hop = "10.0.0.2", .interface = "Ethernet2"},
      {.hop = "2001:db8::1", .interface = "Ethernet2"},
      {.hop = "10.0.0.1", .interface = "Ethernet10"},
      {.hop = "10.0.0.1", .interface = "Ethernet1", .backup = true},
      {.hop = "10.0.0.1", .interface = "Ethernet2", .backup = true},
  };
  std::vector<CachedVia> vias;
  for (const Fields& fields : ascending) vias.push_back(cachedVia(fields));
  expectAscending(vias);
  EXPECT_TRUE(!CachedVia());
  EXPECT_FALSE(!cachedVia({.index = 1}));
}

TEST(CachedViaTest, TunnelsAndFecsStandInTheInterfacesPlace) {
  CachedVia via = cachedVia({.interface = "Ethernet1"});
  EXPECT_TRUE(via.tunnelId().isNull());
  EXPECT_TRUE(via.fecId().isNull());
  via.tunnelIdIs(TunnelId());
  EXPECT_EQ(via.intfId(), intf("Ethernet1"));
  via.fecIdIs(FecId());
  via.fecIdIs(FecId(0x0f01000000000000)); // has no form as an interface
  EXPECT_EQ(via.intfId(), intf("Ethernet1"));
  via.tunnelIdIs(TunnelId(0x700000000003));
  EXPECT_EQ(via.intfId(), intf("DynamicTunnel:7.3"));
  EXPECT_EQ(via.tunnelId(), TunnelId(0x700000000003));
  via.fecIdIs(FecId(AdjType::srTePolicy, 4));
  EXPECT_EQ(via.fecId(), FecId(AdjType::srTePolicy, 4));
  EXPECT_TRUE(via.tunnelId().isNull());
  EXPECT_EQ(cachedVia({.interface = "Tunnel65541"}).tunnelId().value(), 0x900000000005u);
}

TEST(PredicateTest, DynamicTunnelsAreThoseOfOtherKindsThanSixAndNine) {
  const struct {
    const char* interface;
    bool dynamic;
  } cases[] = {{"", false},
               {"Ethernet1", false},
               {"Tunnel5", false},
               {"Fec:0.1", false},
               {"DynamicTunnel:6.1", false},
               {"DynamicTunnel:9.1", false},
               {"DynamicTunnel:7.1", true},
               {"DynamicTunnel:1.1", true}};
  for (const auto& [interface, dynamic] : cases) {
    EXPECT_EQ(Rova::isValidDynamicTunnel(cachedVia({.interface = interface})), dynamic)
        << interface;
  }
}

Lumo::Ptr<Rova::CachedFec> fecWith(FecId id, std::initializer_list<Fields> vias) {
  const auto fec = Rova::cachedFecFactory(id);
  for (const Fields& fields : vias) fec->viaIs(cachedVia(fields), true);
  return fec;
}

TEST(PredicateTest, ANexthopGroupFecHasTheGroupInItsFirstVia) {
  const FecId id(1);
  EXPECT_FALSE(Rova::isNexthopGroupFec(nullptr));
  EXPECT_FALSE(Rova::isNexthopGroupFec(fecWith(id, {})));
  EXPECT_TRUE(Rova::isNexthopGroupFec(fecWith(id, {{.interface = "NexthopGroup:5"}})));
  EXPECT_FALSE(Rova::isNexthopGroupFec(
      fecWith(id, {{.interface = "NexthopGroup:5"}, {.interface = "Ethernet1"}})))
      << "Ethernet1 comes first";
  EXPECT_TRUE(Rova::isNexthopGroupFec(
      fecWith(id, {{.interface = "NexthopGroup:5"}, {.interface = "Ethernet1", .backup = true}})));
  EXPECT_EQ(Rova::nexthopGroupIdFromIntfId(intf("NexthopGroup:5")), 5u);
  EXPECT_EQ(Rova::nexthopGroupIdFromIntfId(intf("Ethernet5")), 0u);
}

TEST(PredicateTest, AnSrTePolicyFecIsOneOrLeadsToOne) {
  const FecId plain(AdjType::fib, 1), policy(AdjType::srTePolicy, 1);
  EXPECT_TRUE(Rova::isSrTePolicyFec(fecWith(policy, {})));
  EXPECT_FALSE(Rova::isSrTePolicyFec(fecWith(plain, {{.interface = "Ethernet1"}})));
  EXPECT_TRUE(Rova::isSrTePolicyFec(fecWith(plain, {{.interface = "Fec:15.7"}})));
  EXPECT_TRUE(Rova::isSrTePolicyFec(
      fecWith(plain, {{.interface = "Ethernet1"}, {.interface = "Fec:15.7"}})));
  EXPECT_FALSE(Rova::isSrTePolicyFec(
      fecWith(plain, {{.interface = "Fec:0.7"}, {.interface = "Fec:200.7"}})));
  EXPECT_DEATH(Rova::isSrTePolicyFec(fecWith(FecId(std::uint64_t{20} << 56), {})),
               assertion("(value_ >> Fib::adjTypePos()) < Fib::adjTypeMax()"));
}

/// Capture of either kind of record.
template <class Family>
struct CaptureTest : testing::Test {
  static constexpr const char* hop = Texts<Family>::hop;
  static constexpr bool ip6 = std::is_same_v<Family, Rova::Ip6Family>;
  static constexpr AdjType adjType = ip6 ? AdjType::fib6 : AdjType::fib;

  FecId newId() const { return {adjType, 77}; }

  Lumo::Ptr<Rova::CachedFec> capture(const std::vector<Via>& vias,
                                     std::uint32_t backupViaIndex = 0) {
    device.fecIs(newId(), vias, backupViaIndex);
    tables = FecTables(device.state); // nothing is captured yet
    Rova::copyAdjacency(tables.forwarding(), newId());
    return tables.captured(newId());
  }
  /// Each via as "interface weight", "backup" behind a backup one.
  static Lines linesOf(const Lumo::Ptr<Rova::CachedFec>& fec) {
    Lines lines;
    for (const auto& [via, present] : fec->viaMap()) {
      lines.push_back(via.intfId().stringValue().str() + " " + via.viaWeight().str() +
                      (via.isBackup() ? "backup" : ""));
      EXPECT_TRUE(present);
    }
    return lines;
  }

  Device device;
  FecTables tables{device.state};
};
TYPED_TEST_SUITE(CaptureTest, Families, FamilyNames);

TYPED_TEST(CaptureTest, WeightsAreTextsWhereTheyDiffer) {
  const struct {
    std::vector<std::uint32_t> weights;
    std::uint32_t backupViaIndex, sum;
    bool unequal;
    Lines lines;
  } cases[] = {
      {{1, 1, 1}, 0, 3, false, {"Ethernet1 ", "Ethernet2 ", "Ethernet3 "}},
      {{1, 2, 1}, 0, 4, true, {"Ethernet1 1", "Ethernet2 2", "Ethernet3 1"}},
      {{5, 6, 7}, 2, 0, false, {"Ethernet1 ", "Ethernet2 ", "Ethernet3 backup"}},
      {{1, 1}, 2, 2, false, {"Ethernet1 ", "Ethernet2 "}}, // no backup: the index is past the vias
      {{1, 1}, 600, 2, false, {"Ethernet1 ", "Ethernet2 "}},
      {{}, 0, 0, false, {}},
  };
  for (const auto& one : cases) {
    std::vector<Via> vias;
    for (const std::uint32_t weight : one.weights) {
      const std::string name = "Ethernet" + std::to_string(vias.size() + 1);
      vias.push_back(via(this->hop, name.c_str(), {.weight = weight}));
    }
    const auto fec = this->capture(vias, one.backupViaIndex);
    EXPECT_EQ(this->linesOf(fec), one.lines);
    EXPECT_EQ(fec->weight(), one.sum);
    EXPECT_EQ(fec->backupViaIndex().value(), one.backupViaIndex);
    EXPECT_EQ(fec->hasBackup(), one.backupViaIndex != 0 && one.backupViaIndex < vias.size());
    if (!fec->hasBackup()) {
      EXPECT_EQ(fec->isUnequalCost(), one.unequal);
    }
  }
}

TYPED_TEST(CaptureTest, ViasOfOneInterfaceCollapseOrOrderByWeightAsText) {
  auto fec = this->capture({via(this->hop, "Ethernet1"), via(this->hop, "Ethernet1")});
  EXPECT_EQ(this->linesOf(fec), Lines{"Ethernet1 "});
  EXPECT_EQ(fec->weight(), 2u);
  EXPECT_TRUE(fec->isUnequalCost()) << "equal vias collapse and look unequal";
  fec = this->capture({via(this->hop, "Ethernet1", {.weight = 9, .labelWord = 17}),
                       via(this->hop, "Ethernet1", {.weight = 10, .labelWord = 17})});
  EXPECT_EQ(this->linesOf(fec), (Lines{"Ethernet1 10", "Ethernet1 9"}));
  EXPECT_EQ(fec->viaMap().begin()->first.hop(), addr(this->hop));
  EXPECT_EQ(fec->viaMap().begin()->first.viaLabel().value(), 17u);
}

TYPED_TEST(CaptureTest, AMissingFecHasNoViasAndTheNullOneNoEntity) {
  this->capture({});
  const FecId missing(this->adjType, 1234);
  Rova::copyAdjacency(this->tables.forwarding(), missing);
  EXPECT_EQ(this->tables.captured(missing)->fecId(), missing);
  EXPECT_EQ(this->tables.captured(missing)->vias(), 0u);
  const auto before = this->tables.fec.size();
  EXPECT_EQ(Rova::copyAdjacency(this->tables.forwarding(), FecId()), nullptr);
  EXPECT_EQ(this->tables.fec.size(), before);
}

TYPED_TEST(CaptureTest, AFecIsCapturedOnce) {
  const auto first = this->capture({via(this->hop, "Ethernet1")});
  this->device.fecIs(this->newId(), {via(this->hop, "Ethernet2")});
  Rova::copyAdjacency(this->tables.forwarding(), this->newId());
  EXPECT_TRUE(this->tables.captured(this->newId()) == first);
  EXPECT_EQ(this->linesOf(first), Lines{"Ethernet1 "});
}

TYPED_TEST(CaptureTest, ALabelOutOfRangeRaisesAndLeavesNoEntity) {
  for (const std::uint32_t backupViaIndex : {0u, 1u}) {
    EXPECT_EQ(messageOf<Lumo::RangeException>([&] {
                this->capture({via(this->hop, "Ethernet1"),
                               via(this->hop, "Ethernet2", {.labelWord = 0x800001})},
                              backupViaIndex);
              }),
              "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed");
    EXPECT_FALSE(this->tables.captured(this->newId()));
  }
}

TYPED_TEST(CaptureTest, AViaCountAbove512RaisesAndLeavesNoEntity) {
  using Fec = typename TypeParam::Fec;
  const FecId id(this->adjType, 5);
  for (const std::uint32_t backupViaIndex : {0u, 1u, 512u}) {
    auto record =
        fecRecord<Fec>(id, std::vector<Via>(512, via(this->hop, "Ethernet1")), backupViaIndex);
    record.viaCount = 513;
    EXPECT_EQ(messageOf<Lumo::RangeException>(
                  [&] { Rova::cachedFecIs(this->tables.forwarding(), id, record); }),
              "ViaIndex::value < ViaIndex::min or > ViaIndex::max not allowed")
        << backupViaIndex;
    EXPECT_FALSE(this->tables.captured(id));
  }
}

TYPED_TEST(CaptureTest, OnlyViasOnPoliciesHaveAnIndex) {
  const std::vector<Via> vias = {via(this->hop, "Ethernet1"), via(this->hop, "Fec:15.9"),
                                 via(this->hop, "Fec:0.9"), via(this->hop, "Fec:15.8")};
  std::map<std::string, int> indexes;
  for (const auto& [via, present] : this->capture(vias)->viaMap()) {
    indexes[via.intfId().stringValue().str()] = via.viaIndex();
  }
  EXPECT_EQ(indexes, (std::map<std::string, int>{
                         {"Ethernet1", 0}, {"Fec:15.9", 1}, {"Fec:0.9", 0}, {"Fec:15.8", 3}}));
}

template <class Family>
struct SorterCaptureTest : testing::Test {};
TYPED_TEST_SUITE(SorterCaptureTest, Families, FamilyNames);

TYPED_TEST(SorterCaptureTest, OnlyTheIp4SorterRemembersIp6Fecs) {
  const Device device;
  const auto sorter = openSorter<TypeParam>(device);
  Rova::copyAdjacency(*sorter, FecId(AdjType::fib, 1));
  if constexpr (std::is_same_v<TypeParam, Rova::Ip4Family>) {
    EXPECT_FALSE(sorter->hasV6Nexthop());
    Rova::copyAdjacency(*sorter, FecId(AdjType::fib6, 1));
    EXPECT_TRUE(sorter->hasV6Nexthop());
    Rova::copyAdjacency(*sorter, FecId(AdjType::fib, 2));
    EXPECT_TRUE(sorter->hasV6Nexthop()) << "never cleared";
  } else {
    EXPECT_EQ(Rova::Route6Sorter::lumoType.attribute("hasV6Nexthop"), nullptr);
  }
}

} // namespace
