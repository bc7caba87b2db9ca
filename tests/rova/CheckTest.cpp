// Whether addresses, next hops and route distinguishers may be configured.
#include "support/Expect.h"
#include "support/Families.h"

#include <sstream>
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

constexpr const char* usual = "10.0.0.1/24"; ///< what most cases ask for
constexpr const char* usual6 = "2001:db8::1/64";

std::string assigned(const char* interface, const char* what = "10.0.0.1") {
  return std::string("Address ") + what + " is already assigned to interface " + interface;
}
const std::string taken = assigned("eth2"), taken6 = assigned("eth2", "2001:db8::1");

std::string overlaps(const std::string& existing, const std::string& what = "Subnet 10.0.0.0",
                     const char* interface = "eth2") {
  return what + " overlaps with existing subnet " + existing + " of interface " + interface;
}
std::string overlaps6(const std::string& existing, const std::string& what = "2001:db8::/64") {
  return overlaps(existing, "Subnet " + what);
}

/// An address that `interface` is to get.
struct Ip4Case {
  const char* about;
  std::vector<Ip4Interface> interfaces;
  const char* wanted;
  std::string refusal = ""; ///< empty: acceptable
  AddrMatchType primaryMatch = none;
  AddrMatchType secondaryMatch = none;
  const char* interface = "eth1";
};

const Ip4Case ip4Cases[] = {
    {"no interface", {}, usual},
    {"address zero has no walk", {{"eth2", "0.0.0.0/8"}}, "0.0.0.0/0"},
    {"apart", {{"eth2", "10.0.1.1/24"}}, usual},
    {"another's primary", {{"eth2", "10.0.0.1/32"}}, usual, taken, address, address},
    {"another's secondary", {{"eth2", "11.0.0.1/24", {usual}}}, usual, taken, address, address},
    {"another VRF", {{"eth2", usual, {}, "", {}, "red"}}, usual},
    {"not configured is default, not the VRF without a name",
     {{"eth2", usual, {}, "", {}, noL3Config}},
     usual},
    {"both without a layer 3 configuration",
     {{"eth1", "", {}, "", {}, noL3Config}, {"eth2", usual, {}, "", {}, noL3Config}},
     usual,
     taken},
    {"configured in red",
     {{"eth1", "", {}, "", {}, "red"}, {"eth2", usual, {}, "", {}, "red"}},
     usual,
     taken},
    {"inside", {{"eth2", "10.0.0.9/8"}}, "10.1.2.3/24", overlaps("10.0.0.0", "Subnet 10.1.2.0")},
    {"around", {{"eth2", "10.1.2.3/24"}}, "10.0.0.9/8", overlaps("10.1.2.0")},
    {"host", {{"eth2", "10.0.0.9/24"}}, "10.0.0.1/32", overlaps("10.0.0.0", "Address 10.0.0.1")},
    {"a secondary's subnet",
     {{"eth2", "11.0.0.1/24", {"12.0.0.1/24", "10.0.0.9/24"}}},
     usual,
     overlaps("10.0.0.0")},
    {"length 0 overlaps all and stays unmasked",
     {{"eth2", "10.0.0.9/24"}},
     "192.0.2.1/0",
     overlaps("10.0.0.0", "Subnet 192.0.2.1")},
    {"a subnet of length 0", {{"eth2", "192.0.2.1/0"}}, usual, overlaps("192.0.2.1")},
    {"the same interface never overlaps", {{"eth1", "10.0.0.9/8", {"10.0.1.1/8"}}}, usual},
    {"own primary", {{"eth1", usual}}, usual, assigned("eth1"), none, address},
    {"own primary, exact", {{"eth1", usual}}, usual, "", exact},
    {"own primary, other mask", {{"eth1", usual}}, "10.0.0.1/25", assigned("eth1"), exact},
    {"own primary, any mask", {{"eth1", usual}}, "10.0.0.1/25", "", address},
    {"own secondary", {{"eth1", "", {usual}}}, usual, assigned("eth1"), address, none},
    {"own secondary, exact", {{"eth1", "", {usual}}}, usual, "", none, exact},
    {"its mask", {{"eth1", "", {usual}}}, "10.0.0.1/25", assigned("eth1"), none, exact},
    {"own secondary, any mask", {{"eth1", "", {usual}}}, "10.0.0.1/25", "", none, address},
    {"a virtual primary", {{"eth1", "", {}, usual}}, "10.0.0.1/25", "", address, none},
    {"another's virtual primary", {{"eth2", "", {}, "10.0.0.9/24"}}, usual, overlaps("10.0.0.0")},
    {"virtual one behind a primary", {{"eth2", "11.0.0.1/24", {}, usual}}, usual},
    {"a virtual secondary", {{"eth1", "", {}, "11.0.0.1/24", {usual}}}, usual, "", none, exact},
    {"another's virtual secondary", {{"eth2", "", {}, "", {usual}}}, usual, taken},
    {"overlap ends the test", {{"eth2", "10.0.0.9/24", {usual}}}, usual, overlaps("10.0.0.0")},
    {"management subnets may overlap",
     {{"Management2", "10.0.0.9/24", {"10.0.0.8/24"}}},
     usual,
     "",
     none,
     none,
     "Management1"},
    {"management addresses may not be equal",
     {{"Management2", usual}},
     usual,
     assigned("Management2"),
     none,
     none,
     "Management1"},
    {"management against another",
     {{"eth2", "10.0.0.9/24"}},
     usual,
     overlaps("10.0.0.0"),
     none,
     none,
     "Management1"},
    {"another against management",
     {{"Management2", "10.0.0.9/24"}},
     usual,
     overlaps("10.0.0.0", "Subnet 10.0.0.0", "Management2")},
};

TEST(AddrMatchTypeTest, IsMadeOfItsOwnNumbersAndNamesAlone) {
  const char* const names[] = {"allowNoMatch", "allowExactMatch", "allowAddressMatch"};
  std::uint32_t number = 0;
  for (const AddrMatchType type : {none, exact, address}) {
    const char* const name = names[number];
    EXPECT_EQ(Rova::AddrMatchTypeInstance(number), type);
    EXPECT_EQ(Rova::AddrMatchTypeInstance(name), type);
    EXPECT_EQ(Rova::stringValue(type).str(), name);
    std::ostringstream out;
    out << type;
    EXPECT_EQ(out.str(), "Value('Rova::AddrMatchType', '" + std::string(name) + "')");
    ++number;
  }
  EXPECT_EQ(messageOf<Lumo::RangeException>([] { Rova::AddrMatchTypeInstance(3); }),
            "Rova::AddrMatchType has no value 3");
  EXPECT_EQ(messageOf<Lumo::RangeException>([] { Rova::AddrMatchTypeInstance("allownomatch"); }),
            "Rova::AddrMatchType has no value 'allownomatch', but: allowNoMatch, "
            "allowExactMatch, allowAddressMatch");
}

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
  const char* wanted;
  std::string refusal = "";
  const char* interface = "eth1";
};

const Ip6Case ip6Cases[] = {
    {"no interface", {}, usual6},
    {"link-local",
     {},
     "fe80::1/64",
     "'link-local' keyword must be used to configure a link local address."},
    {"unspecified is an address", {{"eth2", {"::1/64"}}}, "::/64", overlaps6("::/64", "::/64")},
    {"apart", {{"eth2", {"2001:db8:0:1::1/64"}}}, usual6},
    {"another's, whatever the mask", {{"eth2", {"2001:db8::1/128"}}}, usual6, taken6},
    {"another VRF", {{"eth2", {usual6}, "red"}}, usual6},
    {"not configured is default", {{"eth2", {usual6}, noL3Config}}, usual6},
    {"both without a layer 3 configuration",
     {{"eth1", {}, noL3Config}, {"eth2", {usual6}, noL3Config}},
     usual6,
     taken6},
    {"another's subnet",
     {{"eth2", {"2001:db8:1::9/48", "2001:db8::9/32"}}},
     "2001:db8:2::1/64",
     overlaps6("2001:db8::/32", "2001:db8:2::/64")},
    {"a host is a subnet too",
     {{"eth2", {"2001:db8::9/64"}}},
     "2001:db8::1/128",
     overlaps6("2001:db8::/64", "2001:db8::1/128")},
    {"length 0 overlaps all",
     {{"eth2", {"2001:db8::9/64"}}},
     "2001:db8::1/0",
     overlaps6("2001:db8::/64", "::/0")},
    {"an overlap ahead of the equal address",
     {{"eth2", {usual6, "2001:db8::2/64"}}},
     "2001:db8::2/64",
     overlaps6("2001:db8::/64")},
    {"another's link-local is skipped", {{"eth2", {"fe80::1/0"}}}, usual6},
    {"its own, as it is", {{"eth1", {usual6}}}, usual6},
    {"its own, other mask",
     {{"eth1", {"2001:db8::9/64", "2001:db8::1/48"}}},
     usual6,
     "Address 2001:db8::1/48 is already assigned to this interface"},
    {"itself never overlaps", {{"eth1", {"2001:db8::9/64", "2001:db8::8/48"}}}, usual6},
    {"management may overlap", {{"Management2", {"2001:db8::9/64"}}}, usual6, "", "Management1"},
    {"management addresses may not be equal",
     {{"Management2", {"2001:db8::1/48"}}},
     usual6,
     assigned("Management2", "2001:db8::1"),
     "Management1"},
    {"management against another",
     {{"eth2", {"2001:db8::9/64"}}},
     usual6,
     overlaps6("2001:db8::/64"),
     "Management1"},
    {"another against management",
     {{"Management2", {"2001:db8::9/64"}}},
     usual6,
     overlaps("2001:db8::/64", "Subnet 2001:db8::/64", "Management2")},
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
