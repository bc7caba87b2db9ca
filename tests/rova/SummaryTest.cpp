// What a route summary counts.
#include "lumo/Reflect.h"
#include "support/Device.h"
#include "support/Expect.h"

#include <array>
#include <map>
#include <random>

namespace {

using namespace support;

/// A kind of routes: its counter keys and the type numbers of its routes.
struct Kind {
  std::string keys; ///< as `counted` shows them for one route
  std::vector<unsigned> types;
};

/// What the tests say of each family: all type numbers, by kind. Static routes have no
/// configuration here.
template <class Family>
struct Facts;

template <>
struct Facts<Rova::Ip4Family> {
  static constexpr unsigned types = 37;
  static constexpr const char* traced = "Incrementing 7 of 37 of length 16";
  static constexpr std::size_t tracedTypes = 35;
  static constexpr auto config = &state::VrfState::routingConfig;
  static constexpr auto status = &state::VrfState::routingStatus;
  static auto*& neighbors(Device& device) { return device.tables.arp; }
  static auto*& otherNeighbors(Device& device) { return device.tables.neighbors; }
  static const std::vector<Kind> kinds;
};
const std::vector<Kind> Facts<Rova::Ip4Family>::kinds = {{"'':1 ", {0, 12, 36}},
                                                         {"internal:1 ", {1, 2, 3, 4, 9, 26, 33}},
                                                         {"attached:1 ", {5}},
                                                         {"", {6, 35}},
                                                         {"static:1 ", {7}},
                                                         {"vcs:1 ", {8}},
                                                         {"rip:1 ", {10}},
                                                         {"connected:1 ", {11}},
                                                         {"aggregate:1 ", {13, 14}},
                                                         {"ospfIntraArea:1 ospfTotal:1 ", {15}},
                                                         {"ospfInterArea:1 ospfTotal:1 ", {16}},
                                                         {"ospfExternal1:1 ospfTotal:1 ", {17}},
                                                         {"ospfExternal2:1 ospfTotal:1 ", {18}},
                                                         {"nssaExternal1:1 ospfTotal:1 ", {19}},
                                                         {"nssaExternal2:1 ospfTotal:1 ", {20}},
                                                         {"bgpInternal:1 bgpTotal:1 ", {21}},
                                                         {"bgpExternal:1 bgpTotal:1 ", {22}},
                                                         {"isisLevel1:1 isisTotal:1 ", {23}},
                                                         {"isisLevel2:1 isisTotal:1 ", {24}},
                                                         {"staticNexthopGroup:1 ", {25}},
                                                         {"ospfv3Total:1 ", {27, 28, 29, 30, 31}},
                                                         {"DhcpDefaultRoute:1 ", {32}},
                                                         {"dynamicPolicy:1 ", {34}}};

template <>
struct Facts<Rova::Ip6Family> {
  static constexpr unsigned types = 22;
  static constexpr const char* traced = "Incrementing 4 of 22 of length 48";
  static constexpr std::size_t tracedTypes = 21;
  static constexpr auto config = &state::VrfState::routing6Config;
  static constexpr auto status = &state::VrfState::routing6Status;
  static auto*& neighbors(Device& device) { return device.tables.neighbors; }
  static auto*& otherNeighbors(Device& device) { return device.tables.arp; }
  static const std::vector<Kind> kinds;
};
const std::vector<Kind> Facts<Rova::Ip6Family>::kinds = {{"'':1 ", {0, 6, 8, 21}},
                                                         {"internal:1 ", {1, 2, 5, 16, 18}},
                                                         {"attached:1 ", {3}},
                                                         {"static:1 ", {4}},
                                                         {"connected:1 ", {7}},
                                                         {"aggregate:1 ", {9, 10}},
                                                         {"ospfTotal:1 ", {11}},
                                                         {"bgpTotal:1 ", {12}},
                                                         {"isisLevel1:1 isisTotal:1 ", {13}},
                                                         {"isisLevel2:1 isisTotal:1 ", {14}},
                                                         {"staticNexthopGroup:1 ", {15}},
                                                         {"dhcp:1 ", {17}},
                                                         {"dynamicPolicy:1 ", {19}},
                                                         {"", {20}}};

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
    return Rova::Summary<Family>(of.*Facts<Family>::config, of.*Facts<Family>::status,
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
  auto& config() { return device.state.vrfs.front().*Facts<Family>::config; }
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

TYPED_TEST(SummaryTest, EachTypeCountsUnderItsKey) {
  using F = Facts<TypeParam>;
  using T = Texts<TypeParam>;
  this->config() = nullptr;
  std::size_t seen = 0;
  for (const auto& [keys, types] : F::kinds) {
    for (const unsigned type : types) {
      this->route(T::host, typename T::Type(type));
      EXPECT_EQ(this->routes(), keys + "| " + this->host() + ":1 | 1") << type;
      ++seen;
    }
  }
  EXPECT_EQ(seen, F::types) << "the table above has every number";
  for (const unsigned type : {F::types, F::types + 1, ~0u}) {
    this->route(T::host, typename T::Type(type));
    EXPECT_EQ(this->routes(), "| | 0") << type;
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
  using T = Texts<TypeParam>;
  this->route(T::inside, T::Type::connected);
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
  EXPECT_EQ(count("routeCountByType", Lumo::String("static")), 0u);
  EXPECT_EQ(count("routeCountByMask", std::uint32_t{TypeParam::hostLength}), 1u);
  EXPECT_TRUE(summary.routeCountByMaskHas(TypeParam::hostLength));
  EXPECT_EQ(summary.routeCountByMaskDel(TypeParam::hostLength), 1u);
  EXPECT_FALSE(summary.routeCountByMaskHas(TypeParam::hostLength));
  summary.routeCountByTypeDelAll();
  summary.routeCountByMaskDelAll();
  EXPECT_EQ(counted(summary), "| | 2");
}

TYPED_TEST(SummaryTest, ItsTextNamesItsAttributes) {
  auto summary = Rova::Summary<TypeParam>({}, {}, {}, {}, "red");
  EXPECT_EQ(Lumo::valueToStrep(summary).str(),
            "Value('" + std::string(summary.lumoType.name) +
                "', ** {'routingConfig': None, 'routingStatus': None, 'arpVanta': None, "
                "'vrfIdMap': None, 'vrfName': " +
                Lumo::valueToStrep(summary.vrfName()).str() +
                ", 'routeCountByType': None, 'routeCountByMask': None, 'totalNumRoutes': 0})");
}

/// Makes every attempt to give up the activity lock raise, for the life of the object.
struct Unreleasable {
  Unreleasable() { Lumo::ActivityUnlockAnchor::lock().releasableIs(false); }
  ~Unreleasable() { Lumo::ActivityUnlockAnchor::lock().releasableIs(true); }
};

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

/// The texts of the trace points on levels 0 and 1 for the life of the object.
struct Trace {
  Trace() {
    set(true);
    Lumo::traceSinkIs(
        [](void* self, const Lumo::TraceLine& line) {
          static_cast<Trace*>(self)->lines.push_back(std::to_string(line.level) + " " +
                                                     std::string(line.text));
        },
        this);
  }
  ~Trace() {
    Lumo::traceSinkIs(nullptr, nullptr);
    set(false);
  }
  static void set(bool on) {
    for (const unsigned level : {0, 1}) Lumo::traceLevelIs("CliSupport", level, on);
  }
  std::vector<std::string> lines;
};

TYPED_TEST(SummaryTest, TracesThePassAndLeavesTheCountsAlone) {
  using F = Facts<TypeParam>;
  using T = Texts<TypeParam>;
  this->route(T::inside, T::Type::staticRoute);
  const auto quiet = this->routes();
  const Trace trace;
  EXPECT_EQ(this->routes(), quiet);
  ASSERT_EQ(trace.lines.size(), 3 + F::tracedTypes);
  EXPECT_EQ(trace.lines[0], "1 " + std::string(F::traced));
  EXPECT_EQ(trace.lines[1], "0 void " + std::string(Rova::Summary<TypeParam>::lumoName) +
                                "::loadInternalStructures() applying final count");
  EXPECT_EQ(trace.lines[2], "1 Applying routeTypes");
  EXPECT_EQ(trace.lines[3], "1 Applying routeType0");
  EXPECT_EQ(trace.lines.back(), "1 Applying routeType" + std::to_string(F::types - 1));
}

/// Random routes of every type, all on a live FEC, so that a detail listing leaves out none but
/// those of types that it never shows.
template <class Family>
void randomRoutes(Device& device, std::mt19937& random) {
  const auto fec = device.fec({via(Texts<Family>::hop, "Ethernet1")});
  const auto number = [&](unsigned below) { return static_cast<unsigned>(random()) % below; };
  for (unsigned i = number(400); i > 0; --i) {
    typename Family::Route record;
    using Address = typename Family::Address;
    std::array<std::uint8_t, Address::bits / 8> bytes;
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    record.key = Kesh::pfx(Address::fromBytes(bytes.data()),
                           static_cast<int>(number(Family::hostLength + 1)));
    record.routeType = typename Family::RouteType(number(Facts<Family>::types));
    record.fecId = fec;
    device.routes<Family>().insert(record);
  }
}

/// The key under which the table above has a type first; "" for none.
template <class Family>
std::string keyOf(typename Family::RouteType type) {
  for (const auto& [keys, types] : Facts<Family>::kinds) {
    for (const unsigned one : types) {
      if (typename Family::RouteType(one) == type) return keys.substr(0, keys.find(':'));
    }
  }
  return {};
}

/// The routes of a listing, by kind and by length.
struct Listed {
  template <class Family>
  explicit Listed(const Rova::Sorter<Family>& sorter) {
    for (const auto& [prefix, route] : sorter.sortedRouteMap()) {
      ++kinds[keyOf<Family>(route.routeType)];
      ++lengths[static_cast<std::uint32_t>(prefix.len())];
    }
  }
  std::map<std::string, std::uint32_t> kinds;
  std::map<std::uint32_t, std::uint32_t> lengths;
};

// The two speak of the same routes where the listing shows every route of a kind. It leaves out
// invalid routes, attached ones and receive routes for no local address, all of which the summary
// counts: the kinds '', attached and internal, and with them the lengths, are as large as in the
// listing or larger.
TYPED_TEST(SummaryTest, AgreesWithADetailListing) {
  std::mt19937 random(20);
  for (int round = 0; round < 50; ++round) {
    randomRoutes<TypeParam>(this->device, random);
    auto summary = this->open();
    summary.loadInternalStructures();
    Listed listed(*openSorter<TypeParam>(this->device, {.detail = true}));
    for (const auto& [keys, types] : Facts<TypeParam>::kinds) {
      const std::string kind = keys.substr(0, keys.find(':'));
      if (kind.empty()) continue; // in no count by type
      const auto count = summary.routeCountByType(kind == "''" ? "" : kind.c_str());
      if (kind == "''" || kind == "attached" || kind == "internal") {
        EXPECT_GE(count, listed.kinds[kind]) << kind;
      } else {
        EXPECT_EQ(count, listed.kinds[kind]) << kind;
      }
    }
    std::uint32_t sum = 0;
    for (const auto& [length, count] : summary.routeCountByMaskMap()) {
      EXPECT_GE(count, listed.lengths[length]);
      sum += count;
    }
    EXPECT_EQ(summary.totalNumRoutes(), static_cast<int>(sum));
    EXPECT_EQ(sum, this->device.template routes<TypeParam>().members()) << "every route is counted";
  }
}

} // namespace
