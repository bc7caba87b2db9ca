// Which routes enter a listing.
#include "support/Device.h"
#include "support/Expect.h"
#include "support/UnorderedTable.h"

#include "rova/route/Selection.h"

#include <array>

namespace {

using namespace support;
using Lines = std::vector<std::string>;

template <class Family>
struct SelectionTest : testing::Test {

  FecId ethernetFec() { return device.fec({via(Texts<Family>::hop, "Ethernet1")}); }
  /// A FEC whose only via leads nowhere.
  FecId deadFec() { return device.fec({via(Texts<Family>::hop, "")}); }
  void staticRoutes(std::initializer_list<const char*> prefixes) {
    const auto fec = ethernetFec();
    for (const char* const prefix : prefixes)
      device.route(prefix, Texts<Family>::Type::staticRoute, fec);
  }
  auto open(const Query& query = {}) { return openSorter<Family>(device, query); }
  Lines listed(const Query& query = {}) { return selected(open(query)); }

  /// Static routes as records, in the order given.
  std::vector<typename Family::Route> records(std::initializer_list<const char*> prefixes) {
    const auto fec = ethernetFec();
    std::vector<typename Family::Route> records;
    for (const char* const prefix : prefixes) {
      auto& route = records.emplace_back();
      route.key = prefixOf<Family>(prefix);
      route.routeType = Texts<Family>::Type::staticRoute;
      route.fecId = fec;
    }
    return records;
  }
  /// Puts another table in the place of the device's routes, and gives the view of it.
  auto& routesAre(std::unique_ptr<typename Family::RouteStatus::Table> table) {
    const auto status = Lumo::newEntity<typename Family::RouteStatus>(std::move(table));
    device.state.vrfs.front().*Family::routingStatus = status;
    return status->route;
  }

  Device device;
};
TYPED_TEST_SUITE(SelectionTest, Families, FamilyNames);

TEST(ReceiveRouteTest, OfTheLinkLocalBlocksTheWideOneShowsInDetail) {
  using Type = Rova::Ip6Family::RouteType;
  Device device;
  const auto fec = device.fec({});
  device.route("fe80::/10", Type::receive, fec);
  device.route("fe80::/64", Type::receive, fec);
  device.route("::1/128", Type::receiveAll, fec);
  EXPECT_EQ(selected(openSorter<Rova::Ip6Family>(device)), Lines());
  EXPECT_EQ(selected(openSorter<Rova::Ip6Family>(device, {.detail = true})), Lines{"fe80::/10"});
}

TYPED_TEST(SelectionTest, ADeadFecHidesAllButGroups) {
  using T = Texts<TypeParam>;
  const auto dead = this->deadFec();
  this->device.route(T::host, T::Type::staticRoute, dead);
  this->device.route(T::wide, T::Type::nexthopGroup, dead);
  EXPECT_EQ(this->listed(), Lines{T::wide});
  EXPECT_EQ(this->listed({.detail = true}), (Lines{T::host, T::wide}));
}

// The selection remembers of each FEC whether its vias are dead, for the next route on it.
TYPED_TEST(SelectionTest, ManyFecsAreToldApart) {
  using Address = typename TypeParam::Address;
  std::vector<FecId> fecs;
  for (int i = 0; i < 100; ++i) fecs.push_back(i % 3 ? this->ethernetFec() : this->deadFec());
  Lines live;
  for (std::size_t i = 0; i < 200; ++i) {
    const std::array<std::uint8_t, Address::bits / 8> bytes{0x20, std::uint8_t(i)};
    const auto text = Kesh::pfx(Address::fromBytes(bytes.data()), 32).stringValue().str();
    this->device.route(text, Texts<TypeParam>::Type::staticRoute, fecs[i % 100]);
    if (i % 100 % 3) live.push_back(text);
  }
  EXPECT_EQ(this->listed(), live);
}

TYPED_TEST(SelectionTest, AnyEntryOfTheFamilysKernelTableCounts) {
  using T = Texts<TypeParam>;
  using Other = std::conditional_t<std::is_same_v<TypeParam, Rova::Ip4Family>, Rova::Ip6Family,
                                   Rova::Ip4Family>;
  EXPECT_FALSE(Rova::kernelUnprogrammedRoutes(*this->open({.withoutKernelStatus = true})));
  this->device.template kernelUnprogrammed<TypeParam>(T::other);
  EXPECT_TRUE(Rova::kernelUnprogrammedRoutes(*this->open({.prefix = T::host})));
  EXPECT_FALSE(Rova::kernelUnprogrammedRoutes(*openSorter<Other>(this->device)));
}

TYPED_TEST(SelectionTest, TheWholeTableCapturesTheFecsOfRoutesThatItLeavesOut) {
  using T = Texts<TypeParam>;
  const auto fec = this->ethernetFec();
  this->device.route(T::wide, T::Type::attached, fec);
  EXPECT_TRUE(this->open()->fec(fec));
  EXPECT_FALSE(this->open({.prefix = T::wide, .longerPrefixes = true})->fec(fec));
}

// The filter runs ahead of the capture there, so the first route on a FEC of dead vias is judged
// without it, and the second is not.
TYPED_TEST(SelectionTest, LongerPrefixesKeepTheFirstRouteOnADeadFec) {
  using T = Texts<TypeParam>;
  const auto dead = this->deadFec();
  this->device.route(T::host, T::Type::staticRoute, dead);
  this->device.route(T::inside, T::Type::staticRoute, dead);
  EXPECT_EQ(this->listed(), Lines());
  EXPECT_EQ(this->listed({.prefix = T::wide, .longerPrefixes = true}), Lines{T::host});
}

TYPED_TEST(SelectionTest, LongerPrefixesAreTheSameOfATableInAnyOrder) {
  using T = Texts<TypeParam>;
  using Unordered = UnorderedTable<typename TypeParam::Prefix, typename TypeParam::Route>;
  const auto entered = {T::wide, T::other, T::host, T::everything, T::inside, T::otherHost};
  const std::pair<const char*, Lines> cases[] = {
      {T::host, {T::host}},
      {T::inside, {T::host, T::inside}},
      {T::wide, {T::host, T::inside, T::wide}},
      {T::other, {T::otherHost, T::other}},
      {T::everything, {T::host, T::inside, T::wide, T::otherHost, T::other, T::everything}},
  };
  const auto expectCases = [&](const char* table) {
    for (const auto& [prefix, expected] : cases) {
      EXPECT_EQ(this->listed({.prefix = prefix, .longerPrefixes = true}), expected)
          << prefix << " of a table " << table;
    }
  };
  this->staticRoutes(entered);
  expectCases("in key order");
  this->routesAre(std::make_unique<Unordered>(this->records(entered)));
  expectCases("in no order");
}

// To find the host is two reads, for its place and the step to it; `inside` and `wide` are one
// each, and `wide` shows that the prefix has ended.
TYPED_TEST(SelectionTest, LongerPrefixesMeetNoDamageBehindTheFirstRouteThatIsOutside) {
  using T = Texts<TypeParam>;
  const Query query{.prefix = T::inside, .longerPrefixes = true};
  this->staticRoutes({T::host, T::inside, T::wide, T::otherHost, T::other, T::everything});
  auto& routes = this->device.template routes<TypeParam>();
  for (std::uint64_t read = 1; read <= 4; ++read) {
    routes.corruptAt(read);
    EXPECT_THROW(this->open(query), Tembra::CorruptionDetectedException) << read;
  }
  routes.corruptAt(5);
  EXPECT_EQ(this->listed(query), (Lines{T::host, T::inside}));
}

TYPED_TEST(SelectionTest, LongestPrefixMatchIsForSingleQueriesOnly) {
  using T = Texts<TypeParam>;
  this->staticRoutes({T::wide});
  constexpr auto text = "!prefix().isNullPrefix() && !longerPrefixes() && sortedRoutes() <= 1";
  const auto whole = this->open();
  EXPECT_DEATH(whole->longestPrefixMatch(), assertion(text));
  const auto longer = this->open({.prefix = T::wide, .longerPrefixes = true});
  EXPECT_DEATH(longer->longestPrefixMatch(), assertion(text));
  const auto single = this->open({.prefix = T::wide});
  single->newSortedRoute(prefixOf<TypeParam>(T::other));
  EXPECT_DEATH(single->longestPrefixMatch(), assertion(text));
}

TYPED_TEST(SelectionTest, ATableThatTurnsCorruptRaisesAtEveryRead) {
  using T = Texts<TypeParam>;
  this->staticRoutes({T::wide, T::inside, T::host});
  auto& routes = this->device.template routes<TypeParam>();
  for (std::uint64_t read = 1; read <= 4; ++read) {
    routes.corruptAt(read);
    EXPECT_THROW(this->open(), Tembra::CorruptionDetectedException) << read;
  }
  routes.corruptAt(1);
  EXPECT_THROW(this->open({.prefix = T::host}), Tembra::CorruptionDetectedException);
  routes.corruptAt(0);
  EXPECT_EQ(this->listed().size(), 3u);
}

TYPED_TEST(SelectionTest, ATableThatDetachesEndsTheListingThere) {
  using T = Texts<TypeParam>;
  using Table = Vanta::MemoryTable<typename TypeParam::Prefix, typename TypeParam::Route>;
  auto table = std::make_unique<Table>("route");
  for (const auto& route : this->records({T::host, T::inside, T::wide})) table->insert(route);
  table->corruptAt(3);
  auto& routes = this->routesAre(std::move(table));
  routes.corruptionHandlerIs([](auto&, const std::string&) {});
  routes.detachCallbackIs([](auto&) {});
  EXPECT_EQ(this->listed(), (Lines{T::host, T::inside}));
  EXPECT_EQ(this->listed(), Lines()) << "a detached table reads as empty";
}

} // namespace
