// What a snapshot fills of configured addresses, route distinguishers and the inputs of routing.
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

TEST(ConfigurationSnapshot, FillsIpAddresses) {
  const auto device = rich();
  const auto& config = device.ipConfig->ipIntfConfig;
  const auto* const ethernet = config.find(Kesh::IntfId("Ethernet1"));
  ASSERT_TRUE(ethernet);
  EXPECT_EQ(ethernet->intfId, Kesh::IntfId("Ethernet1"));
  EXPECT_EQ(ethernet->addrWithMask.stringValue(), "10.1.0.3/24");
  ASSERT_EQ(ethernet->secondaryWithMask.size(), 2u);
  EXPECT_EQ(ethernet->secondaryWithMask.begin()->first.stringValue(), "10.8.0.3/24");
  EXPECT_EQ(ethernet->virtualAddrWithMask, Kesh::IpAddrWithMask());
  ASSERT_TRUE(ethernet->l3Config);
  EXPECT_EQ(ethernet->l3Config->vrf, L3::VrfName("default"));
  EXPECT_FALSE(config.find(Kesh::IntfId("Ethernet2/1"))->l3Config);
  const auto* const vlan = config.find(Kesh::IntfId("Vlan10"));
  EXPECT_EQ(vlan->virtualAddrWithMask.stringValue(), "10.10.0.1/24");
  EXPECT_TRUE(vlan->virtualSecondaryWithMask.find(*Kesh::IpAddrWithMask::parse("10.11.0.1/25")));
}

TEST(ConfigurationSnapshot, FillsIp6Addresses) {
  const auto device = rich();
  const auto* const ethernet = device.ip6Config->intf.find(Kesh::IntfId("Ethernet1"));
  ASSERT_TRUE(ethernet);
  EXPECT_EQ(ethernet->intfId, Kesh::IntfId("Ethernet1"));
  EXPECT_EQ(ethernet->l3Config->vrf, L3::VrfName("red"));
  EXPECT_EQ(ethernet->addr.size(), 2u);
  EXPECT_TRUE(ethernet->addr.find(*Kesh::Ip6AddrWithMask::parse("fe80::1/64")));
}

TEST(ConfigurationSnapshot, FillsRouteDistinguishers) {
  const auto device = rich();
  const auto& dir = *device.routeDistinguisherInputDir;
  EXPECT_EQ(dir.entities().size(), 3u);
  const auto bgp = Lumo::dynamicPtrCast<Ip::RouteDistinguisherInput>(dir.entity("bgp"));
  ASSERT_TRUE(bgp);
  EXPECT_EQ(*bgp->routeDistinguisher.find("red"), *Kesh::RouteDistinguisher::parse("65000:1"));
  EXPECT_EQ(bgp->routeDistinguisher.size(), 2u);
}

TEST(ConfigurationSnapshot, FillsTheInputsOfRouting) {
  const auto device = rich();
  const auto& vrf = device.vrfs[0];
  EXPECT_EQ((*vrf.routeInput.find("bgp"))->route.size(), 0u);
  const auto& routes = (*vrf.routeInput.find("config"))->route;
  const Kesh::IpGenPrefix prefix(Lumo::String("10.0.0.0/8"));
  ASSERT_EQ(routes.size(), 2u);
  EXPECT_EQ((*routes.find({prefix, 1}))->tag, 7u);
  EXPECT_TRUE((*routes.find({prefix, 9}))->dynamic);
  const auto& routes6 = (*vrf.route6Input.find("config"))->route;
  const Kesh::IpGenPrefix prefix6(Lumo::String("2001:db8::/32"));
  EXPECT_EQ((*routes6.find({prefix6, 1}))->routeType, Routing::RouteType::drop);
  EXPECT_TRUE(device.vrf("red")->routeInput.empty());
}

// Both say that the interface is in the VRF of the empty name.
TEST(ConfigurationSnapshot, LeavesOutAnEmptyVrf) {
  state::DeviceBuilder builder;
  const Kesh::IntfId id("Vlan1");
  builder.state.ipConfig->ipIntfConfig.insertOrAssign(
      id, {id, {}, {}, {}, {}, Lumo::newEntity<L3::IntfConfig>(L3::VrfName())});
  const auto text = saveText(builder.state);
  EXPECT_NE(text.find(R"("Vlan1": {})"), text.npos) << text;
  EXPECT_EQ(saveText(loadText(text, "saved")), text);
}

TEST(ConfigurationSnapshot, LeavesOutWhatIsNoRouteDistinguisherInput) {
  state::DeviceBuilder builder;
  auto& dir = *builder.state.routeDistinguisherInputDir;
  dir.entityIs("bgp", Lumo::newEntity<Ip::RouteDistinguisherInput>());
  dir.entityIs("evpn", Lumo::newEntity<Lumo::Dir>());
  dir.entityIs("gone", {});
  const auto loaded = loadText(saveText(builder.state), "saved");
  EXPECT_EQ(loaded.routeDistinguisherInputDir->entities().size(), 1u);
  EXPECT_TRUE(loaded.routeDistinguisherInputDir->hasEntry("bgp"));
}

} // namespace
