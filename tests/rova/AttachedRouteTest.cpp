// Routes made up for neighbours, and what a handler asks of a sorter by prefix.
#include "support/Device.h"
#include "support/Expect.h"

#include "rova/core/DirectlyConnected.h"

namespace {

using namespace support;

template <class Family>
struct AttachedRouteTest : testing::Test {
  Device device;
};
TYPED_TEST_SUITE(AttachedRouteTest, Families, FamilyNames);

TYPED_TEST(AttachedRouteTest, ANeighbourGetsAHostRouteWithAFecOfItsOwn) {
  using T = Texts<TypeParam>;
  const auto sorter = openSorter<TypeParam>(this->device);
  const auto route = sorter->createAttachedRoute(addr(T::hostAddress), intf("Vlan10"));
  EXPECT_EQ(route.key.stringValue().str(), T::host);
  EXPECT_EQ(route.metric, 0u);
  EXPECT_EQ(route.preferenceAndSrcVrf, 0xffffff01u);
  EXPECT_EQ(route.routeType, T::Type::attached);
  EXPECT_EQ(route.fecId.adjType(), AdjType::attached);
  EXPECT_EQ(sorter->sortedRoutes(), 0u) << "it is returned, not stored";
  const auto fec = sorter->fec(route.fecId);
  ASSERT_TRUE(fec);
  EXPECT_EQ(fec->vias(), 1u);
  EXPECT_EQ(fec->weight(), 1u);
  const auto& via = fec->viaMap().begin()->first;
  EXPECT_EQ(via.intfId(), intf("Vlan10"));
  EXPECT_TRUE(via.hop().isAddrZero());
  EXPECT_EQ(via.viaLabel().value(), 0x100000u);
  EXPECT_EQ(via.viaWeight().str(), "");
}

TYPED_TEST(AttachedRouteTest, AKnownNeighbourGetsAFurtherVia) {
  using T = Texts<TypeParam>;
  const auto fec = this->device.fec({via(T::hop, "Ethernet1")});
  this->device.route(T::host, T::Type::staticRoute, fec);
  const auto sorter = openSorter<TypeParam>(this->device);
  EXPECT_EQ(sorter->createAttachedRoute(addr(T::hostAddress), intf("Vlan10")).fecId, fec);
  EXPECT_EQ(sorter->fec(fec)->vias(), 2u);
  const auto first = sorter->createAttachedRoute(addr(T::hop), intf("Vlan10"));
  sorter->sortedRouteIs(first.key, first);
  EXPECT_EQ(sorter->createAttachedRoute(addr(T::hop), intf("Vlan9")), first);
  EXPECT_EQ(sorter->fec(first.fecId)->vias(), 2u);
  EXPECT_EQ(sorter->fec(first.fecId)->weight(), 1u);
}

TYPED_TEST(AttachedRouteTest, ARouteWithoutAFecGetsNoVia) {
  using T = Texts<TypeParam>;
  const auto sorter = openSorter<TypeParam>(this->device);
  typename TypeParam::Route route;
  route.key = prefixOf<TypeParam>(T::host);
  for (const auto fec : {FecId(), FecId(7)}) {
    route.fecId = fec;
    sorter->sortedRouteIs(route.key, route);
    EXPECT_EQ(sorter->createAttachedRoute(addr(T::hostAddress), intf("Vlan10")), route);
    EXPECT_EQ(sorter->fecs(), 0u);
  }
}

TYPED_TEST(AttachedRouteTest, NumbersGoOnInOneClassAndAreApartFromTheOther) {
  using T = Texts<TypeParam>;
  using OtherFamily = std::conditional_t<std::is_same_v<TypeParam, Rova::Ip4Family>,
                                         Rova::Ip6Family, Rova::Ip4Family>;
  const auto numberOf = [](const auto& sorter, const char* address) {
    return sorter->createAttachedRoute(addr(address), intf("Vlan1")).fecId.value();
  };
  const auto first = numberOf(openSorter<TypeParam>(this->device), T::hostAddress);
  EXPECT_GT(first & 0x00ffffffffffffff, 0u);
  const auto sorter = openSorter<TypeParam>(this->device);
  EXPECT_EQ(numberOf(sorter, T::hostAddress), first + 1)
      << "the sorters of a class share the count";
  numberOf(openSorter<OtherFamily>(this->device), Texts<OtherFamily>::hostAddress);
  EXPECT_EQ(numberOf(sorter, T::hostAddress), first + 2) << "the other class counts for itself";
}

template <class RouteType>
struct ProtocolCase {
  RouteType type;
  bool inHardware;
  bool inKernel;
  const char* text;
};

/// The protocol string of a route of that type on a device of its own.
template <class Family>
std::string protocolString(const ProtocolCase<typename Family::RouteType>& wanted, FecId fec,
                           const char* prefix = Texts<Family>::wide) {
  Device device;
  device.route(prefix, wanted.type, fec);
  if (!wanted.inHardware) device.hardwareUnprogrammed<Family>(prefix);
  if (!wanted.inKernel) device.kernelUnprogrammed<Family>(prefix);
  return openSorter<Family>(device)->protocolString(prefixOf<Family>(prefix)).str();
}

template <class Family>
struct ProtocolStringTest : testing::Test {};
TYPED_TEST_SUITE(ProtocolStringTest, Families, FamilyNames);

TYPED_TEST(ProtocolStringTest, MarksWhatIsNotProgrammed) {
  using Type = typename TypeParam::RouteType;
  const ProtocolCase<Type> cases[] = {
      {Type::staticRoute, true, true, " S   "},  {Type::staticRoute, false, true, "*S   "},
      {Type::staticRoute, true, false, " S%  "}, {Type::staticRoute, false, false, "*S%  "},
      {Type::isisLevel1, true, true, " I L1"},   {Type::isisLevel1, false, false, "*I L1%"},
      {Type::unresolved, false, true, "*    "},
  };
  for (const auto& wanted : cases) {
    for (const char* const prefix : {Texts<TypeParam>::wide, Texts<TypeParam>::everything}) {
      EXPECT_EQ(protocolString<TypeParam>(wanted, FecId(7), prefix), wanted.text) << prefix;
    }
  }
  EXPECT_EQ(protocolString<TypeParam>({Type::nexthopGroup, false, false, ""}, FecId()), "     ");
}

TYPED_TEST(ProtocolStringTest, IsBlankForAnUnknownPrefixAndNeedsTheKernelsTable) {
  using T = Texts<TypeParam>;
  Device device;
  device.route(T::wide, T::Type::staticRoute, FecId(7));
  const auto sorter = openSorter<TypeParam>(device, {.withoutKernelStatus = true});
  EXPECT_EQ(sorter->protocolString(prefixOf<TypeParam>(T::other)).str(), "     ");
  EXPECT_DEATH(sorter->protocolString(prefixOf<TypeParam>(T::wide)),
               assertion("kernelUnprogrammedRoute()"));
}

TEST(ViasForPrefixTest, GivesACopyOfTheViasAlone) {
  Device device;
  const auto fec = device.fec({via("10.0.0.1", "Ethernet1", {.weight = 2}),
                               via("10.0.0.2", "Ethernet2"), via("10.0.0.3", "Ethernet3")});
  device.route("10.0.0.0/8", Routing::Fib::RouteType::staticRoute, fec);
  device.route("11.0.0.0/8", Routing::Fib::RouteType::nexthopGroup, FecId());
  const auto sorter = openSorter<Rova::Ip4Family>(device);
  const auto copy = sorter->viasForPrefix(Kesh::pfx(0x0a000000, 8));
  EXPECT_TRUE(copy->viaMap() == sorter->fec(fec)->viaMap());
  EXPECT_EQ(copy->weight(), 0u);
  EXPECT_FALSE(copy == sorter->fec(fec)) << "a caller must not reach the sorter's own";
  EXPECT_FALSE(sorter->viasForPrefix(Kesh::pfx(0x0b000000, 8))) << "without a FEC";
  EXPECT_FALSE(sorter->viasForPrefix(Kesh::pfx(0x0c000000, 8))) << "without a route";
  sorter->fecDel(fec);
  EXPECT_EQ(sorter->viasForPrefix(Kesh::pfx(0x0a000000, 8))->vias(), 0u);
}

TEST(IsDirectlyConnectedTest, ComparesTexts) {
  const struct {
    const char* prefix;
    const char* nexthop;
    bool connected;
  } cases[] = {
      {"10.0.0.0/8", "0.0.0.0", true},
      {"2001:db8::/32", "::", true},
      {"", "::", true},
      {"10.0.0.1/32", "10.0.0.1", true},
      {"10.0.0.1/32", "10.0.0.2", false},
      {"10.0.0.0/31", "10.0.0.0", false},
      {"10.0.0.0/8", "10.0.0.0", false},
      {"2001:db8::1/128", "2001:db8::1", true},
      {"2001:db8::1/128", "2001:DB8::1", false},
      {"2001:db8::/127", "2001:db8::", false},
      {"", "", false},
      {"", "10.0.0.1", false},
      {"::a00:1/128", "10.0.0.1", false},
  };
  for (const auto& [prefix, nexthop, connected] : cases) {
    EXPECT_EQ(Rova::isDirectlyConnected(Kesh::IpGenPrefix(Lumo::String(prefix)), nexthop),
              connected)
        << prefix << " " << nexthop;
  }
}

} // namespace
