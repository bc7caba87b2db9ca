// What a route summary counts.
#include "lumo/Reflect.h"
#include "support/Device.h"
#include "support/Expect.h"
#include "support/Process.h"
#include "support/RouteTypes.h"

#include <array>
#include <map>

namespace {

using namespace support;

/// What the tests say of each family.
template <class Family>
struct Facts;

template <>
struct Facts<Rova::Ip4Family> {
  static constexpr unsigned types = 37;
  static constexpr const char* traced = "Incrementing 7 of 37 of length 16";
  static constexpr std::size_t tracedTypes = 35;
  static auto*& neighbors(Device& device) { return device.tables.arp; }
  static auto*& otherNeighbors(Device& device) { return device.tables.neighbors; }
};

template <>
struct Facts<Rova::Ip6Family> {
  static constexpr unsigned types = 22;
  static constexpr const char* traced = "Incrementing 4 of 22 of length 48";
  static constexpr std::size_t tracedTypes = 21;
  static auto*& neighbors(Device& device) { return device.tables.neighbors; }
  static auto*& otherNeighbors(Device& device) { return device.tables.arp; }
};

/// All counts in one line: "KEY:COUNT ...| LENGTH:COUNT ...| TOTAL".
template <class Family>
std::string counted(const Rova::Summary<Family>& summary) {
  std::map<std::string, std::uint32_t> byType;
  summary.routeCountByTypeMap().forEach([&](const Lumo::String& key, std::uint32_t count) {
    byType[key.empty() ? "''" : key.str()] = count;
  });
  std::string text;
  for (const auto& [key, count] : byType) text += key + ":" + std::to_string(count) + " ";
  text += "| ";
  for (const auto& [length, count] : summary.routeCountByMaskMap()) {
    text += std::to_string(length) + ":" + std::to_string(count) + " ";
  }
  return text + "| " + std::to_string(summary.totalNumRoutes());
}

template <class Family>
struct SummaryTest : testing::Test {
  using Type = typename Family::RouteType;

  Rova::Summary<Family> open(const char* vrf = L3::defaultVrfName) {
    const auto& of = device.state.vrfs.front();
    return Rova::Summary<Family>(of.*Family::routingConfig, of.*Family::routingStatus,
                                 device.state.arpVanta, device.state.vrfIdMap, vrf);
  }
  std::string routes() {
    auto summary = open();
    summary.loadInternalStructures();
    return counted(summary);
  }
  std::string attached(const char* vrf) {
    auto summary = open(vrf);
    summary.loadAttachedRoutes();
    return counted(summary);
  }
  void route(const char* prefix, Type type) { device.route(prefix, type, {}); }
  void neighbor(std::uint32_t vrf, const char* interface) {
    Facts<Family>::neighbors(device)->insert(
        {{Vrf::VrfIdMap::VrfId(vrf), intf(interface), addr(Texts<Family>::hostAddress)}, {}});
  }
  auto& config() { return device.state.vrfs.front().*Family::routingConfig; }
  void configure(const char* prefix, std::uint8_t preference, bool dynamic) {
    const Routing::RouteKey key{prefixOf<Family>(prefix), preference};
    const auto configured = Lumo::newEntity<Routing::Route>(key);
    configured->dynamic = dynamic;
    config()->route.insertOrAssign(key, configured);
  }
  static std::string host() { return std::to_string(Family::hostLength); }

  Device device;
};
TYPED_TEST_SUITE(SummaryTest, Families, FamilyNames);

TYPED_TEST(SummaryTest, NothingMakesNoEntry) {
  EXPECT_EQ(this->routes(), "| | 0");
  EXPECT_EQ(this->attached("default"), "| | 0");
}

/// The count of a whole protocol that types are part of as well; "" for none.
std::string totalOf(Routing::Fib::RouteType type) {
  const auto number = static_cast<unsigned>(type);
  if (number >= 15 && number <= 20) return "ospfTotal:1 ";
  if (number == 21 || number == 22) return "bgpTotal:1 ";
  return number == 23 || number == 24 ? "isisTotal:1 " : "";
}
std::string totalOf(Routing6::Fib::RouteType type) {
  const auto number = static_cast<unsigned>(type);
  return number == 13 || number == 14 ? "isisTotal:1 " : "";
}

// Static routes have no configuration here.
TYPED_TEST(SummaryTest, EachTypeCountsUnderItsKey) {
  using T = Texts<TypeParam>;
  this->config() = nullptr;
  std::map<unsigned, std::string> expected;
  for (const auto& row : routeTypeRows<typename T::Type>) {
    const std::string word = *row.summaryWord ? row.summaryWord : "''";
    expected[row.number] =
        word + ":1 " + totalOf(typename T::Type(row.number)) + "| " + this->host() + ":1 | 1";
  }
  const unsigned end = Facts<TypeParam>::types;
  for (unsigned type = 0; type < end; ++type) { // those without texts are of no kind
    expected.try_emplace(type, "| " + this->host() + ":1 | 1");
  }
  for (const unsigned type : {end, end + 1, ~0u}) expected[type] = "| | 0";
  for (const auto& [type, counts] : expected) {
    this->route(T::host, typename T::Type(type));
    EXPECT_EQ(this->routes(), counts) << type;
  }
}

TYPED_TEST(SummaryTest, TypesOfOneKeyAddUpAndLengthsReachBothEnds) {
  using T = Texts<TypeParam>;
  this->route(T::everything, T::Type::receive);
  this->route(T::host, T::Type::kernel);
  this->route(T::otherHost, T::Type::martian);
  const std::string expected = "internal:3 | 0:1 " + this->host() + ":2 | 3";
  EXPECT_EQ(this->routes(), expected);
}

TYPED_TEST(SummaryTest, TheConfigurationDividesStaticRoutes) {
  using T = Texts<TypeParam>;
  // The route under test is `inside` with preference 200.
  const struct {
    const char* what;
    const char* prefix;
    std::uint8_t preference;
    bool dynamic;
    const char* key;
  } cases[] = {
      {"configured to stay", T::inside, 200, false, "staticPersistent:1 "},
      {"made at run time", T::inside, 200, true, "staticNonPersistent:1 "},
      {"another preference", T::inside, 1, true, "staticPersistent:1 "},
      {"another prefix", T::wide, 200, true, "staticPersistent:1 "},
  };
  typename TypeParam::Route route;
  route.key = prefixOf<TypeParam>(T::inside);
  route.preferenceIs(200);
  route.routeType = T::Type::staticRoute;
  auto& routes = this->device.template routes<TypeParam>();
  routes.insert(route);
  const std::string rest = "| " + std::to_string(route.key.len()) + ":1 | 1";
  EXPECT_EQ(this->routes(), "static:1 staticPersistent:1 " + rest) << "not configured at all";
  for (const auto& [what, prefix, preference, dynamic, key] : cases) {
    this->config() = Lumo::newEntity<Routing::ConfigGen>();
    this->configure(prefix, preference, dynamic);
    EXPECT_EQ(this->routes(), "static:1 " + std::string(key) + rest) << what;
  }
  this->configure(T::inside, 200, true);
  route.routeType = T::Type::nexthopGroup;
  routes.insert(route);
  EXPECT_EQ(this->routes(), "staticNexthopGroup:1 " + rest) << "of another type";
}

TYPED_TEST(SummaryTest, NeighboursOfTheVrfCountAsAttached) {
  this->device.vrf("red", 3);
  for (const char* const interface : {"Ethernet1", "Ethernet2", "Management1"}) {
    this->neighbor(0, interface);
  }
  for (const char* const interface : {"Ethernet3", "Management2"}) this->neighbor(3, interface);
  for (const char* const interface : {"Vlan1", "Vlan2", "Vlan3"}) this->neighbor(9, interface);
  Facts<TypeParam>::otherNeighbors(this->device)->insert({{{}, intf("Ethernet9"), {}}, {}});
  const auto expected = [this](const std::string& count) {
    return "attached:" + count + " | " + this->host() + ":" + count + " | " + count;
  };
  EXPECT_EQ(this->attached("red"), expected("1"));
  EXPECT_EQ(this->attached("blue"), "| | 0");
  EXPECT_EQ(this->attached(""), expected("3")) << "VRF 9 is not known, which is no name";
  const auto& vrfs = this->device.state.vrfIdMap->vrfEntry.implementation();
  const auto lookups = vrfs.readerCounters().lookups;
  EXPECT_EQ(this->attached("default"), expected("2"));
  EXPECT_EQ(vrfs.readerCounters().lookups, lookups) << "the default VRF is told by its number";
}

TYPED_TEST(SummaryTest, EveryLoadAddsInAnyOrder) {
  using T = Texts<TypeParam>;
  this->route(T::host, T::Type::attached);
  this->route(T::otherHost, T::Type::isisLevel2);
  this->neighbor(0, "Ethernet1");
  auto summary = this->open();
  summary.loadAttachedRoutes();
  summary.loadInternalStructures();
  summary.loadAttachedRoutes();
  summary.loadInternalStructures();
  EXPECT_EQ(counted(summary), "attached:4 isisLevel2:2 isisTotal:2 | " + this->host() + ":6 | 6");
}

/// A status of its own over tables that the test can damage; with a handler they detach then.
template <class Family>
struct Damaged {
  using Routes = Vanta::MemoryTable<typename Family::Prefix, typename Family::Route>;
  using Neighbors = Vanta::MemoryTable<Arp::Table::ArpKey, Arp::Table::ArpEntry>;

  explicit Damaged(bool detaches) {
    using T = Texts<Family>;
    auto routeTable = std::make_unique<Routes>("route");
    for (const char* const text : {T::host, T::otherHost, T::everything}) {
      typename Family::Route route;
      route.key = prefixOf<Family>(text);
      route.routeType = T::Type::connected;
      routeTable->insert(route);
    }
    auto neighborTable = std::make_unique<Neighbors>("neighbor");
    for (const char* const name : {"Ethernet1", "Ethernet2", "Ethernet3"}) {
      neighborTable->insert({{{}, intf(name), addr(T::hostAddress)}, {}});
    }
    routes = routeTable.get();
    neighbors = neighborTable.get();
    status = Lumo::newEntity<typename Family::RouteStatus>(std::move(routeTable));
    auto other = std::make_unique<Neighbors>("other");
    if (std::is_same_v<Family, Rova::Ip6Family>) std::swap(other, neighborTable);
    arp = Lumo::newEntity<Arp::Table::Status>(std::move(neighborTable), std::move(other));
    if (!detaches) return;
    detachesOnDamage(status->route);
    detachesOnDamage(arp->arpEntry);
    detachesOnDamage(arp->neighborEntry);
  }
  auto open() { return Rova::Summary<Family>({}, status, arp, {}, L3::defaultVrfName); }

  Routes* routes;
  Neighbors* neighbors;
  Lumo::Ptr<typename Family::RouteStatus> status;
  Lumo::Ptr<Arp::Table::Status> arp;
  std::string told;

 private:
  template <class Map>
  void detachesOnDamage(Map& map) {
    map.corruptionHandlerIs([this](auto&, const std::string& message) { told = message; });
    map.detachCallbackIs([](auto&) {});
  }
};

TYPED_TEST(SummaryTest, DamageEndsTheWalk) {
  for (const int read : {1, 2, 3, 4}) {
    Damaged<TypeParam> tables(true);
    tables.routes->corruptAt(static_cast<std::uint64_t>(read));
    auto summary = tables.open();
    summary.loadInternalStructures();
    EXPECT_EQ(summary.totalNumRoutes(), read - 1);
    EXPECT_EQ(summary.routeCountByType("connected"), static_cast<std::uint32_t>(read - 1));
    EXPECT_EQ(tables.told, "record is not whole");

    tables.neighbors->corruptAt(static_cast<std::uint64_t>(read));
    tables.told = {};
    summary.loadAttachedRoutes();
    EXPECT_EQ(summary.routeCountByType("attached"), static_cast<std::uint32_t>(read - 1));
    EXPECT_EQ(summary.totalNumRoutes(), 2 * (read - 1));
    EXPECT_EQ(tables.told, "record is not whole");
  }
}

TYPED_TEST(SummaryTest, DamageThatNobodyHandlesPassesOut) {
  Damaged<TypeParam> tables(false);
  auto summary = tables.open();
  tables.routes->corruptAt(3);
  EXPECT_THROW(summary.loadInternalStructures(), Tembra::CorruptionDetectedException);
  EXPECT_EQ(counted(summary), "| | 0") << "the counts of the pass are lost";
  tables.neighbors->corruptAt(3);
  EXPECT_THROW(summary.loadAttachedRoutes(), Tembra::CorruptionDetectedException);
  EXPECT_EQ(summary.totalNumRoutes(), 2) << "neighbours count as they are read";
}

TYPED_TEST(SummaryTest, IsCalledAndReadByName) {
  this->route(Texts<TypeParam>::inside, Texts<TypeParam>::Type::connected);
  this->neighbor(0, "Ethernet1");
  auto summary = this->open();
  const auto object = summary.lumoType.FromVoidPointer(summary.lumoType, &summary, false);
  EXPECT_FALSE(Lumo::call(*object, "loadInternalStructures", {}));
  EXPECT_FALSE(Lumo::call(*object, "loadAttachedRoutes", {}));
  EXPECT_EQ(Lumo::unwrap<int>(Lumo::read(*object, "totalNumRoutes")), 2);
  const auto count = [&](const char* name, auto key) {
    return Lumo::unwrap<std::uint32_t>(Lumo::readMember(*object, name, Lumo::wrapAttrValue(key)));
  };
  EXPECT_EQ(count("routeCountByType", Lumo::String("attached")), 1u);
  EXPECT_EQ(count("routeCountByMask", std::uint32_t{TypeParam::hostLength}), 1u);
  EXPECT_TRUE(summary.routeCountByMaskHas(TypeParam::hostLength));
}

TYPED_TEST(SummaryTest, YieldsOnThe2001stRouteCountedOrNotAndForNoNeighbour) {
  using Address = typename TypeParam::Address;
  const Unreleasable unreleasable;
  typename TypeParam::Route record;
  record.routeType = typename TypeParam::RouteType(Facts<TypeParam>::types);
  const auto enter = [&](unsigned number) {
    std::array<std::uint8_t, Address::bits / 8> bytes{0x20, std::uint8_t(number >> 8),
                                                      std::uint8_t(number)};
    record.key = Kesh::pfx(Address::fromBytes(bytes.data()), TypeParam::hostLength);
    this->device.template routes<TypeParam>().insert(record);
    this->neighbor(0, ("Ethernet" + std::to_string(number)).c_str());
  };
  for (unsigned number = 1; number <= 2000; ++number) enter(number);
  EXPECT_EQ(this->routes(), "| | 0");
  enter(2001);
  EXPECT_THROW(this->routes(), Lumo::InternalException);
  EXPECT_EQ(this->attached("default"), "attached:2001 | " + this->host() + ":2001 | 2001");
}

TYPED_TEST(SummaryTest, TracesThePassAndLeavesTheCountsAlone) {
  using F = Facts<TypeParam>;
  using T = Texts<TypeParam>;
  this->route(T::inside, T::Type::staticRoute);
  const auto quiet = this->routes();
  const Traced trace("CliSupport", {0, 1});
  EXPECT_EQ(this->routes(), quiet);
  ASSERT_EQ(trace.texts.size(), 3 + F::tracedTypes);
  EXPECT_EQ(trace.texts[0], F::traced);
  EXPECT_EQ(trace.texts[1], "void " + std::string(Rova::Summary<TypeParam>::lumoName) +
                                "::loadInternalStructures() applying final count");
  EXPECT_EQ(trace.texts[2], "Applying routeTypes");
  EXPECT_EQ(trace.texts[3], "Applying routeType0");
  EXPECT_EQ(trace.texts.back(), "Applying routeType" + std::to_string(F::types - 1));
}

} // namespace
