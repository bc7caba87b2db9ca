// Whether addresses, next hops and route distinguishers may be configured.
#include "support/Expect.h"
#include "support/Families.h"

#include <vector>

namespace {

using namespace support;
using Rova::AddrMatchType;
using Texts = std::vector<const char*>;

constexpr auto none = AddrMatchType::allowNoMatch;
constexpr auto exact = AddrMatchType::allowExactMatch;
constexpr auto address = AddrMatchType::allowAddressMatch;
constexpr const char* noL3Config = nullptr;

Lumo::Ptr<const L3::IntfConfig> l3ConfigOf(const char* vrf) {
  if (vrf == noL3Config) return {};
  return Lumo::newEntity<L3::IntfConfig>(L3::VrfName(vrf));
}

/// An interface and its addresses; an empty text is none.
struct Ip4Interface {
  const char* name;
  const char* primary = "";
  Texts secondaries = {};
  const char* virtualPrimary = "";
  Texts virtualSecondaries = {};
  const char* vrf = "default";
};

Lumo::Ptr<Ip::Config> configOf(const std::vector<Ip4Interface>& interfaces) {
  const auto config = Lumo::newEntity<Ip::Config>();
  const auto parse = [](const char* text) {
    return *text ? parsed<Kesh::IpAddrWithMask>(text) : Kesh::IpAddrWithMask();
  };
  for (const auto& from : interfaces) {
    Ip::IpIntfConfig to;
    to.intfId = intf(from.name);
    to.addrWithMask = parse(from.primary);
    to.virtualAddrWithMask = parse(from.virtualPrimary);
    for (const auto* text : from.secondaries)
      to.secondaryWithMask.insertOrAssign(parse(text), true);
    for (const auto* text : from.virtualSecondaries) {
      to.virtualSecondaryWithMask.insertOrAssign(parse(text), true);
    }
    to.l3Config = l3ConfigOf(from.vrf);
    config->ipIntfConfig.insertOrAssign(to.intfId, to);
  }
  return config;
}

struct Ip6Interface {
  const char* name;
  Texts addresses;
  const char* vrf = "default";
};

Lumo::Ptr<Ip6::Config> configOf(const std::vector<Ip6Interface>& interfaces) {
  const auto config = Lumo::newEntity<Ip6::Config>();
  for (const auto& from : interfaces) {
    Ip6::IntfConfig to;
    to.intfId = intf(from.name);
    for (const auto* text : from.addresses) {
      to.addr.insertOrAssign(parsed<Kesh::Ip6AddrWithMask>(text), {});
    }
    to.l3Config = l3ConfigOf(from.vrf);
    config->intf.insertOrAssign(to.intfId, to);
  }
  return config;
}

std::string verdictOf(const Rova::AddressQueryResult& result) {
  if (result.acceptable()) return result.msg().str();
  return result.msg().empty() ? "refused without a message" : result.msg().str();
}

struct Ip4Case {
  const char* about;
  std::vector<Ip4Interface> interfaces;
  const char* interface; ///< the one to get the address
  const char* wanted;
  std::string refusal = ""; ///< empty: acceptable
  AddrMatchType primaryMatch = none;
  AddrMatchType secondaryMatch = none;
};

std::string assigned(const std::string& what, const char* interface) {
  return "Address " + what + " is already assigned to interface " + interface;
}
std::string overlaps(const std::string& what, const std::string& existing, const char* interface) {
  return what + " overlaps with existing subnet " + existing + " of interface " + interface;
}

const Ip4Case ip4Cases[] = {
    {"no interface", {}, "Ethernet1", "10.0.0.1/24"},
    {"address zero has no walk", {{"Ethernet2", "0.0.0.0/8"}}, "Ethernet1", "0.0.0.0/0"},
    {"apart", {{"Ethernet2", "10.0.1.1/24"}}, "Ethernet1", "10.0.0.1/24"},
    {"another's primary",
     {{"Ethernet2", "10.0.0.1/32"}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet2"),
     address,
     address},
    {"another's secondary",
     {{"Ethernet2", "11.0.0.1/24", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet2"),
     address,
     address},
    {"another VRF", {{"Ethernet2", "10.0.0.1/24", {}, "", {}, "red"}}, "Ethernet1", "10.0.0.1/24"},
    {"not configured is default, not the VRF without a name",
     {{"Ethernet2", "10.0.0.1/24", {}, "", {}, noL3Config}},
     "Ethernet1",
     "10.0.0.1/24"},
    {"both without a layer 3 configuration",
     {{"Ethernet1", "", {}, "", {}, noL3Config},
      {"Ethernet2", "10.0.0.1/24", {}, "", {}, noL3Config}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet2")},
    {"configured in red",
     {{"Ethernet1", "", {}, "", {}, "red"}, {"Ethernet2", "10.0.0.1/24", {}, "", {}, "red"}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet2")},
    {"inside another's subnet",
     {{"Ethernet2", "10.0.0.9/8"}},
     "Ethernet1",
     "10.1.2.3/24",
     overlaps("Subnet 10.1.2.0", "10.0.0.0", "Ethernet2")},
    {"around another's subnet",
     {{"Ethernet2", "10.1.2.3/24"}},
     "Ethernet1",
     "10.0.0.9/8",
     overlaps("Subnet 10.0.0.0", "10.1.2.0", "Ethernet2")},
    {"a host in another's subnet",
     {{"Ethernet2", "10.0.0.9/24"}},
     "Ethernet1",
     "10.0.0.1/32",
     overlaps("Address 10.0.0.1", "10.0.0.0", "Ethernet2")},
    {"a secondary's subnet",
     {{"Ethernet2", "11.0.0.1/24", {"12.0.0.1/24", "10.0.0.9/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     overlaps("Subnet 10.0.0.0", "10.0.0.0", "Ethernet2")},
    {"length 0 overlaps all and stays unmasked",
     {{"Ethernet2", "10.0.0.9/24"}},
     "Ethernet1",
     "192.0.2.1/0",
     overlaps("Subnet 192.0.2.1", "10.0.0.0", "Ethernet2")},
    {"a subnet of length 0",
     {{"Ethernet2", "192.0.2.1/0"}},
     "Ethernet1",
     "10.0.0.9/24",
     overlaps("Subnet 10.0.0.0", "192.0.2.1", "Ethernet2")},
    {"the same interface never overlaps",
     {{"Ethernet1", "10.0.0.9/8", {"10.0.1.1/8"}}},
     "Ethernet1",
     "10.0.0.1/24"},
    {"its own primary",
     {{"Ethernet1", "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet1"),
     none,
     address},
    {"its own primary, exact",
     {{"Ethernet1", "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/24",
     "",
     exact},
    {"its own primary, exact, other mask",
     {{"Ethernet1", "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/25",
     assigned("10.0.0.1", "Ethernet1"),
     exact},
    {"its own primary, any mask",
     {{"Ethernet1", "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/25",
     "",
     address},
    {"its own secondary",
     {{"Ethernet1", "", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet1"),
     address,
     none},
    {"its own secondary, exact",
     {{"Ethernet1", "", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     "",
     none,
     exact},
    {"its own secondary, exact, other mask",
     {{"Ethernet1", "", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/25",
     assigned("10.0.0.1", "Ethernet1"),
     none,
     exact},
    {"its own secondary, any mask",
     {{"Ethernet1", "", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/25",
     "",
     none,
     address},
    {"a virtual primary",
     {{"Ethernet1", "", {}, "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/25",
     "",
     address,
     none},
    {"another's virtual primary overlaps",
     {{"Ethernet2", "", {}, "10.0.0.9/24"}},
     "Ethernet1",
     "10.0.0.1/24",
     overlaps("Subnet 10.0.0.0", "10.0.0.0", "Ethernet2")},
    {"behind a primary the virtual one does not count",
     {{"Ethernet2", "11.0.0.1/24", {}, "10.0.0.1/24"}},
     "Ethernet1",
     "10.0.0.1/24"},
    {"a virtual secondary",
     {{"Ethernet1", "", {}, "11.0.0.1/24", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     "",
     none,
     exact},
    {"another's virtual secondary",
     {{"Ethernet2", "", {}, "", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Ethernet2")},
    {"the primary's overlap ends the test",
     {{"Ethernet2", "10.0.0.9/24", {"10.0.0.1/24"}}},
     "Ethernet1",
     "10.0.0.1/24",
     overlaps("Subnet 10.0.0.0", "10.0.0.0", "Ethernet2")},
    {"management subnets may overlap",
     {{"Management2", "10.0.0.9/24", {"10.0.0.8/24"}}},
     "Management1",
     "10.0.0.1/24"},
    {"management addresses may not be equal",
     {{"Management2", "10.0.0.1/24"}},
     "Management1",
     "10.0.0.1/24",
     assigned("10.0.0.1", "Management2")},
    {"management against another",
     {{"Ethernet2", "10.0.0.9/24"}},
     "Management1",
     "10.0.0.1/24",
     overlaps("Subnet 10.0.0.0", "10.0.0.0", "Ethernet2")},
    {"another against management",
     {{"Management2", "10.0.0.9/24"}},
     "Ethernet1",
     "10.0.0.1/24",
     overlaps("Subnet 10.0.0.0", "10.0.0.0", "Management2")},
};

TEST(AddressAssignmentTest, Ip4) {
  for (const auto& c : ip4Cases) {
    const auto query = Rova::addressQueryParamsFactory(
        configOf(c.interfaces), c.interface, "Management", c.primaryMatch, c.secondaryMatch,
        parsed<Kesh::IpAddrWithMask>(c.wanted));
    const auto result = Rova::AddressAssignmentChecker().check(query);
    EXPECT_EQ(verdictOf(result), c.refusal) << c.about;
    EXPECT_EQ(result.acceptable(), c.refusal.empty()) << c.about;
  }
}

TEST(AddressAssignmentTest, Ip4WithoutAConfiguration) {
  for (const auto* wanted : {"10.0.0.1/24", "0.0.0.0/0"}) {
    const auto result = Rova::AddressAssignmentChecker().check(Rova::addressQueryParamsFactory(
        {}, "Ethernet1", "", none, none, parsed<Kesh::IpAddrWithMask>(wanted)));
    EXPECT_FALSE(result.acceptable());
    EXPECT_EQ(result.msg().str(), "No interfaces");
  }
}

struct Ip6Case {
  const char* about;
  std::vector<Ip6Interface> interfaces;
  const char* interface;
  const char* wanted;
  std::string refusal = "";
};

const Ip6Case ip6Cases[] = {
    {"no interface", {}, "Ethernet1", "2001:db8::1/64"},
    {"link-local",
     {},
     "Ethernet1",
     "fe80::1/64",
     "'link-local' keyword must be used to configure a link local address."},
    {"unspecified is an address",
     {{"Ethernet2", {"::1/64"}}},
     "Ethernet1",
     "::/64",
     overlaps("Subnet ::/64", "::/64", "Ethernet2")},
    {"another's, whatever the mask",
     {{"Ethernet2", {"2001:db8::1/128"}}},
     "Ethernet1",
     "2001:db8::1/64",
     assigned("2001:db8::1", "Ethernet2")},
    {"another VRF", {{"Ethernet2", {"2001:db8::1/64"}, "red"}}, "Ethernet1", "2001:db8::1/64"},
    {"not configured is default",
     {{"Ethernet2", {"2001:db8::1/64"}, noL3Config}},
     "Ethernet1",
     "2001:db8::1/64"},
    {"both without a layer 3 configuration",
     {{"Ethernet1", {}, noL3Config}, {"Ethernet2", {"2001:db8::1/64"}, noL3Config}},
     "Ethernet1",
     "2001:db8::1/64",
     assigned("2001:db8::1", "Ethernet2")},
    {"another's subnet",
     {{"Ethernet2", {"2001:db8:1::9/48", "2001:db8::9/32"}}},
     "Ethernet1",
     "2001:db8:2::1/64",
     overlaps("Subnet 2001:db8:2::/64", "2001:db8::/32", "Ethernet2")},
    {"a host is a subnet too",
     {{"Ethernet2", {"2001:db8::9/64"}}},
     "Ethernet1",
     "2001:db8::1/128",
     overlaps("Subnet 2001:db8::1/128", "2001:db8::/64", "Ethernet2")},
    {"length 0 overlaps all",
     {{"Ethernet2", {"2001:db8::9/64"}}},
     "Ethernet1",
     "2001:db8::1/0",
     overlaps("Subnet ::/0", "2001:db8::/64", "Ethernet2")},
    {"an overlap ahead of the equal address",
     {{"Ethernet2", {"2001:db8::1/64", "2001:db8::2/64"}}},
     "Ethernet1",
     "2001:db8::2/64",
     overlaps("Subnet 2001:db8::/64", "2001:db8::/64", "Ethernet2")},
    {"another's link-local is skipped",
     {{"Ethernet2", {"fe80::1/0"}}},
     "Ethernet1",
     "2001:db8::1/64"},
    {"its own, as it is", {{"Ethernet1", {"2001:db8::1/64"}}}, "Ethernet1", "2001:db8::1/64"},
    {"its own, other mask",
     {{"Ethernet1", {"2001:db8::9/64", "2001:db8::1/48"}}},
     "Ethernet1",
     "2001:db8::1/64",
     "Address 2001:db8::1/48 is already assigned to this interface"},
    {"itself never overlaps",
     {{"Ethernet1", {"2001:db8::9/64", "2001:db8::8/48"}}},
     "Ethernet1",
     "2001:db8::1/64"},
    {"management subnets may overlap",
     {{"Management2", {"2001:db8::9/64"}}},
     "Management1",
     "2001:db8::1/64"},
    {"management addresses may not be equal",
     {{"Management2", {"2001:db8::1/48"}}},
     "Management1",
     "2001:db8::1/64",
     assigned("2001:db8::1", "Management2")},
    {"another against management",
     {{"Management2", {"2001:db8::9/64"}}},
     "Ethernet1",
     "2001:db8::1/64",
     overlaps("Subnet 2001:db8::/64", "2001:db8::/64", "Management2")},
};

TEST(AddressAssignmentTest, Ip6) {
  for (const auto& c : ip6Cases) {
    const auto query = Rova::address6QueryParamsFactory(
        configOf(c.interfaces), c.interface, "Management", parsed<Kesh::Ip6AddrWithMask>(c.wanted));
    const auto result = Rova::Address6AssignmentChecker().check(query);
    EXPECT_EQ(verdictOf(result), c.refusal) << c.about;
    EXPECT_EQ(result.acceptable(), c.refusal.empty()) << c.about;
  }
}

struct HopCase {
  const char* about;
  const char* hop;
  const char* vrf;
  bool isOwn;
};

TEST(InvalidNextHopTest, Ip4) {
  const auto config =
      configOf({{"Ethernet1", "10.0.0.1/24", {"10.0.1.1/24", "10.0.2.1/24"}, "", {}},
                {"Ethernet2", "10.0.3.1/24", {}, "10.0.4.1/24", {"10.0.5.1/24"}, "red"},
                {"Ethernet3", "", {}, "10.0.6.1/24", {}, noL3Config}});
  const HopCase cases[] = {
      {"a primary address", "10.0.0.1", "default", true},
      {"a secondary address", "10.0.2.1", "default", true},
      {"only in the same subnet", "10.0.0.2", "default", false},
      {"in another VRF", "10.0.0.1", "red", false},
      {"a VRF of its own", "10.0.3.1", "red", true},
      {"a virtual primary address", "10.0.4.1", "red", false},
      {"a virtual secondary address", "10.0.5.1", "red", false},
      {"an interface without a primary address", "0.0.0.0", "", true},
      {"all have a primary address", "0.0.0.0", "default", false},
      {"a VRF without interfaces", "10.0.0.1", "blue", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Rova::InvalidNextHopChecker().check(config, parsed<Kesh::IpAddr>(c.hop),
                                                  L3::VrfName(c.vrf)),
              c.isOwn)
        << c.about;
  }
  EXPECT_FALSE(Rova::InvalidNextHopChecker().check(Lumo::newEntity<Ip::Config>(), {},
                                                   L3::VrfName("default")));
}

TEST(InvalidNextHopTest, Ip6) {
  const auto config = configOf({{"Ethernet1", {"2001:db8::1/64", "fe80::1/64"}},
                                {"Ethernet2", {"2001:db8:1::1/64"}, noL3Config}});
  const HopCase cases[] = {
      {"an address", "2001:db8::1", "default", true},
      {"a link-local address", "fe80::1", "default", true},
      {"only in the same subnet", "2001:db8::2", "default", false},
      {"in another VRF", "2001:db8::1", "red", false},
      {"no layer 3 configuration is not default", "2001:db8:1::1", "default", false},
      {"no layer 3 configuration is the VRF without a name", "2001:db8:1::1", "", true},
      {"unspecified", "::", "default", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Rova::InvalidNextHop6Checker().check(config, parsed<Kesh::Ip6Addr>(c.hop),
                                                   L3::VrfName(c.vrf)),
              c.isOwn)
        << c.about;
  }
}

struct RdAssignmentTest : testing::Test {
  Lumo::Ptr<Lumo::Dir> inputs = Lumo::newEntity<Lumo::Dir>();
  const Kesh::RouteDistinguisher wanted = parsed<Kesh::RouteDistinguisher>("65000:1");

  void publish(const char* agent, const char* vrf, const char* distinguisher) {
    auto input = Lumo::dynamicPtrCast<Ip::RouteDistinguisherInput>(inputs->entity(agent));
    if (!input) input = Lumo::newEntity<Ip::RouteDistinguisherInput>();
    input->routeDistinguisher.insertOrAssign(L3::VrfName(vrf),
                                             parsed<Kesh::RouteDistinguisher>(distinguisher));
    inputs->entityIs(agent, input);
  }
  Rova::RdAssignmentChecker checker() const { return {inputs, "red", wanted}; }
};

TEST_F(RdAssignmentTest, BelongsToOneVrfWhicheverAgentsPublishIt) {
  EXPECT_TRUE(checker().acceptable()) << "an empty directory";
  publish("bgp", "red", "65000:1");
  publish("bgp", "blue", "65000:2");
  publish("evpn", "red", "65000:1");
  EXPECT_TRUE(checker().acceptable());
  EXPECT_EQ(checker().errorMessage().str(), "");
  publish("evpn", "green", "65000:1");
  EXPECT_FALSE(checker().acceptable());
  EXPECT_EQ(checker().errorMessage().str(), "RD 65000:1 already in use by VRF green");
}

TEST_F(RdAssignmentTest, ChecksAgainAndKeepsAnOldMessage) {
  auto checker = this->checker();
  publish("bgp", "green", "65000:1");
  checker.handleInitialized();
  EXPECT_FALSE(checker.acceptable());
  inputs->entityDel("bgp");
  checker.handleInitialized();
  EXPECT_TRUE(checker.acceptable());
  EXPECT_EQ(checker.errorMessage().str(), "RD 65000:1 already in use by VRF green");
}

TEST_F(RdAssignmentTest, AnEntryOfAnotherTypeStopsTheProcess) {
  inputs->entityIs("bgp", nullptr);
  EXPECT_DEATH(checker(), assertion("__null != routeDistinguisherInput"));
  inputs->entityIs("bgp", Lumo::newEntity<Lumo::Dir>());
  EXPECT_DEATH(checker(), assertion("__null != routeDistinguisherInput"));
}

} // namespace
