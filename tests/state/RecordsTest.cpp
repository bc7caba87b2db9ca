// Records of the shared tables.
#include "state/DeviceBuilder.h"
#include "support/Expect.h"

#include <set>

namespace {

using namespace support;
using Vrf::VrfIdMap::VrfId;

template <class Route>
struct RouteTest : testing::Test {};
using RouteTypes = testing::Types<Vanta::Fib::Route, Vanta::Fib6::Route>;
TYPED_TEST_SUITE(RouteTest, RouteTypes);

TYPED_TEST(RouteTest, PreferenceAndSourceVrfShareAWord) {
  TypeParam route;
  EXPECT_EQ(route.preferenceAndSrcVrf, 0xffffff01u);
  route.preferenceIs(255);
  EXPECT_EQ(route.preferenceAndSrcVrf, 0xffffffffu);
  route.srcVrfIdIs(VrfId(0x123456));
  EXPECT_EQ(route.preferenceAndSrcVrf, 0x123456ffu);
  EXPECT_EQ(route.preference(), 255);
  EXPECT_EQ(route.srcVrfId(), VrfId(0x123456));
  route.preferenceIs(0);
  EXPECT_EQ(route.srcVrfId(), VrfId(0x123456));
}

template <class Fec>
struct FecTest : testing::Test {};
using FecTypes = testing::Types<Vanta::Fib::Fec, Vanta::Fib6::Fec>;
TYPED_TEST_SUITE(FecTest, FecTypes);

TYPED_TEST(FecTest, Has512ViasAndNoMore) {
  TypeParam fec(Vanta::Fib::FecId(1));
  for (std::uint32_t i = 0; i < 512; ++i) {
    typename TypeParam::ViaType via;
    via.weight = i;
    fec.viaAppend(via);
  }
  EXPECT_EQ(fec.via(Vanta::Fib::ViaIndex(511)).weight, 511u);
  EXPECT_THROW(fec.viaAppend({}), Lumo::RangeException);
  EXPECT_EQ(fec.viaCount, 512u);
  EXPECT_EQ(fec.serializeLen(), sizeof(TypeParam));
}

TYPED_TEST(FecTest, StoresTheUsedViasAlone) {
  TypeParam fec(Vanta::Fib::FecId(1));
  const auto header = fec.serializeLen();
  fec.viaAppend({});
  fec.viaAppend({});
  EXPECT_EQ(fec.serializeLen(), header + 2 * sizeof(typename TypeParam::ViaType));
  fec.viaCount = 0xffffffff; // a damaged record must not be read past its end
  EXPECT_EQ(fec.serializeLen(), sizeof(TypeParam));
}

TYPED_TEST(FecTest, AViaReadsItsWords) {
  typename TypeParam::ViaType via;
  EXPECT_EQ(via.weight, 1u);
  EXPECT_TRUE(via.mplsLabel().isNull());
  EXPECT_TRUE(via.tunnelId().isNull());
  EXPECT_TRUE(via.fecId().isNull());
  via.intfId = Kesh::IntfId(Lumo::String("DynamicTunnel:7.3"));
  EXPECT_EQ(via.tunnelId().value(), 0x700000000003u);
  via.intfId = Kesh::IntfId(Lumo::String("Fec:15.4"));
  EXPECT_EQ(via.fecId().value(), 0x0f00000000000004u);
  via.labelAndAction = Kesh::MplsLabelAndAction(0x800001);
  EXPECT_THROW(via.mplsLabel(), Lumo::RangeException);
}

template <class RouteType>
struct RouteTypeNameTest : testing::Test {};
using RouteTypeEnums = testing::Types<Routing::Fib::RouteType, Routing6::Fib::RouteType>;
TYPED_TEST_SUITE(RouteTypeNameTest, RouteTypeEnums);

TYPED_TEST(RouteTypeNameTest, NamesAreUniqueAndComeBack) {
  std::set<std::string_view> names;
  for (std::uint32_t number = 0; number < 64; ++number) {
    const auto type = static_cast<TypeParam>(number);
    const auto name = state::routeTypeName(type);
    if (name.empty()) continue;
    EXPECT_TRUE(names.insert(name).second) << name;
    EXPECT_EQ(state::routeTypeFromName<TypeParam>(name), type);
  }
  const bool ip4 = std::is_same_v<TypeParam, Routing::Fib::RouteType>;
  EXPECT_EQ(names.size(), ip4 ? 35u : 21u);
  EXPECT_FALSE(state::routeTypeFromName<TypeParam>("no such type"));
  EXPECT_FALSE(state::routeTypeFromName<TypeParam>(""));
}

} // namespace
