// Records of the shared tables, and the builder of a device's tables.
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

TYPED_TEST(RouteTest, ADefaultRecordIsNoRoute) {
  const TypeParam route;
  EXPECT_EQ(route.preferenceAndSrcVrf, 0xffffff01u);
  EXPECT_EQ(route.preference(), 1);
  EXPECT_EQ(route.srcVrfId(), VrfId(0xffffff));
  EXPECT_TRUE(route.fecId.isNull());
  EXPECT_EQ(route.metric, 0u);
  EXPECT_EQ(static_cast<std::uint32_t>(route.routeType), 0u);
}

TYPED_TEST(RouteTest, PreferenceAndSourceVrfShareAWord) {
  TypeParam route;
  route.preferenceIs(255);
  EXPECT_EQ(route.preferenceAndSrcVrf, 0xffffffffu);
  route.srcVrfIdIs(VrfId(0x123456));
  EXPECT_EQ(route.preferenceAndSrcVrf, 0x123456ffu);
  EXPECT_EQ(route.preference(), 255);
  EXPECT_EQ(route.srcVrfId(), VrfId(0x123456));
  route.preferenceIs(0);
  EXPECT_EQ(route.srcVrfId(), VrfId(0x123456));
}

TYPED_TEST(RouteTest, EqualityIsOfWholeRecords) {
  const TypeParam same;
  TypeParam other = same;
  EXPECT_EQ(other, same);
  other.metric = 1;
  EXPECT_FALSE(other == same);
  other = same;
  other.preferenceIs(2);
  EXPECT_FALSE(other == same);
  other = same;
  other.fecId = Vanta::Fib::FecId(1);
  EXPECT_FALSE(other == same);
  other = same;
  other.key = decltype(other.key)::nullPrefix();
  EXPECT_FALSE(other == same);
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

TEST(DeviceBuilderTest, StartsWithEveryHandleAndTheDefaultVrf) {
  const state::DeviceBuilder device;
  const auto& state = device.state;
  EXPECT_TRUE(state.forwardingStatus && state.forwarding6Status && state.unprogrammedRouteStatus &&
              state.unprogrammedRoute6Status && state.vrfIdMap && state.allIntfConfig &&
              state.ipStatus && state.ip6Status && state.arpVanta && state.nhEntryStatus &&
              state.routingHardwareStatus && state.routing6HardwareStatus && state.tunnelFib &&
              state.evpnVxlanTunnelTable && state.tunnelTableDir && state.srTePolicyStatus &&
              state.policyForwardingStatus);
  ASSERT_EQ(state.vrfs.size(), 1u);
  const auto* const vrf = state.vrf("default");
  ASSERT_NE(vrf, nullptr);
  EXPECT_EQ(vrf->id, VrfId(0));
  EXPECT_TRUE(vrf->routingConfig && vrf->routing6Config && vrf->routingStatus &&
              vrf->routing6Status && vrf->kernelUnprogrammedRoute);
  EXPECT_EQ(state.vrf("red"), nullptr);
}

TEST(DeviceBuilderTest, AVrfIsAddedOnce) {
  state::DeviceBuilder device;
  auto* const defaultRoutes = device.defaultVrf().routes;
  for (std::uint32_t i = 1; i <= 40; ++i) device.vrf(Lumo::String(std::to_string(i)), VrfId(i));
  auto& red = device.vrf("7", VrfId(7));
  EXPECT_EQ(device.state.vrfs.size(), 41u);
  EXPECT_EQ(device.defaultVrf().routes, defaultRoutes) << "tables stay where they are";
  Vanta::Fib::Route route;
  route.key = Kesh::pfx(0x0a000000, 8);
  red.routes->insert(route);
  EXPECT_EQ(device.state.vrf("7")->routingStatus->route.members(), 1u);
  EXPECT_EQ(device.state.vrf("8")->routingStatus->route.members(), 0u);
  bool found = false;
  EXPECT_EQ(device.state.vrfIdMap->vrfEntry.safeLookup(VrfId(7), found, 0)->name.str(), "7");
  EXPECT_TRUE(found);
  device.state.vrfIdMap->vrfEntry.safeLookup(VrfId(41), found, 0);
  EXPECT_FALSE(found);
}

TEST(DeviceBuilderTest, CountsUnprogrammedRoutesPerVrf) {
  state::DeviceBuilder device;
  device.hardwareUnprogrammed(Kesh::pfx(0x0a000000, 8), VrfId(0));
  device.hardwareUnprogrammed(Kesh::pfx(0x0b000000, 8), VrfId(0));
  device.hardwareUnprogrammed(Kesh::pfx(0x0a000000, 8), VrfId(3));
  const auto& status = *device.state.unprogrammedRouteStatus;
  const auto count = [&](std::uint32_t vrf) {
    bool found = false;
    return status.unprogrammedRouteCount.safeLookup(VrfId(vrf), found, 0)->count;
  };
  EXPECT_EQ(count(0), 2u);
  EXPECT_EQ(count(3), 1u);
  EXPECT_EQ(count(1), 0u);
  bool found = false;
  status.unprogrammedRoute.safeLookup({Kesh::pfx(0x0b000000, 8), VrfId(3)}, found, 0);
  EXPECT_FALSE(found);
  status.unprogrammedRoute.safeLookup({Kesh::pfx(0x0a000000, 8), VrfId(3)}, found, 0);
  EXPECT_TRUE(found);
  EXPECT_EQ(device.state.unprogrammedRoute6Status->unprogrammedRoute.members(), 0u);
}

TEST(AllIntfConfigDirTest, GivesNullForAnInterfaceWithoutConfiguration) {
  Interface::AllIntfConfigDir dir;
  const Kesh::IntfId id(Lumo::String("Ethernet1"));
  EXPECT_FALSE(dir.intfConfig(id));
  dir.configs.insertOrAssign(id, Lumo::newEntity<Interface::IntfConfig>(id, "uplink"));
  EXPECT_EQ(dir.intfConfig(id)->description.str(), "uplink");
}

} // namespace
