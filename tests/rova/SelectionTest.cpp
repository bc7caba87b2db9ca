// Which routes enter a listing.
#include "support/Device.h"
#include "support/Expect.h"

#include "rova/route/Selection.h"

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

  Device device;
};
TYPED_TEST_SUITE(SelectionTest, Families, FamilyNames);

TYPED_TEST(SelectionTest, ListsTheTableOrTheInsideOfAPrefixInOrder) {
  using T = Texts<TypeParam>;
  EXPECT_EQ(this->listed(), Lines());
  EXPECT_EQ(this->listed({.prefix = T::host}), Lines());
  this->staticRoutes({T::everything, T::wide, T::inside, T::other, T::host});
  const Lines all = {T::host, T::inside, T::wide, T::other, T::everything};
  EXPECT_EQ(this->listed({.protocol = "B", .interface = "Ethernet9", .byInterface = true}), all)
      << "protocol and interface do not select";
  const auto longer = [this](const char* prefix) {
    return this->listed({.prefix = prefix, .longerPrefixes = true});
  };
  EXPECT_EQ(longer(T::everything), all);
  EXPECT_EQ(longer(T::inside), (Lines{T::host, T::inside}));
  EXPECT_EQ(longer(T::otherHost), Lines());
}

TYPED_TEST(SelectionTest, TypesDecideWhatIsListed) {
  using T = Texts<TypeParam>;
  using Type = typename T::Type;
  const struct {
    Type type;
    bool normally;
    bool inDetail;
  } cases[] = {
      {Type::invalid, false, false},  {Type::attached, false, false},
      {Type::receive, false, false},  {Type::martian, false, true},
      {Type::connected, true, true},  {Type::drop, true, true},
      {Type::unresolved, true, true}, {Type::nexthopGroup, true, true},
      {Type::reserved, true, true},
  };
  const auto fec = this->ethernetFec();
  for (const auto& [type, normally, inDetail] : cases) {
    this->device.route(T::wide, type, fec);
    for (const bool detail : {false, true}) {
      const bool kept = detail ? inDetail : normally;
      const auto sorter = this->open({.detail = detail});
      EXPECT_EQ(sorter->sortedRoutes(), kept ? 1u : 0u) << static_cast<int>(type) << detail;
      EXPECT_EQ(sorter->printCount(), kept ? 1 : 0);
    }
  }
}

TYPED_TEST(SelectionTest, AReceiveRouteIsKeptForALocalAddressOfItsLength) {
  using T = Texts<TypeParam>;
  const auto fec = this->device.fec({});
  this->device.route(T::host, T::Type::receive, fec);
  this->device.route(T::otherHost, T::Type::receive, fec);
  EXPECT_EQ(this->listed(), Lines());
  this->device.interface("Ethernet1", T::hostWithMask);
  EXPECT_EQ(this->listed(), Lines()) << "the mask is another";
  this->device.interface("Loopback0", T::host);
  EXPECT_EQ(this->listed(), Lines{T::host});
  EXPECT_EQ(this->listed({.detail = true}), Lines{T::host});
}

TEST(ReceiveRouteTest, TheLinkLocalBlockShowsInDetail) {
  using Type = Rova::Ip6Family::RouteType;
  Device device;
  const auto fec = device.fec({});
  device.route("fe80::/10", Type::receive, fec);
  device.route("fe80::/64", Type::receive, fec);
  device.route("::1/128", Type::receiveAll, fec);
  EXPECT_EQ(selected(openSorter<Rova::Ip6Family>(device)), Lines());
  EXPECT_EQ(selected(openSorter<Rova::Ip6Family>(device, {.detail = true})), Lines{"fe80::/10"});
}

TYPED_TEST(SelectionTest, FecsDecideWhatIsPrintable) {
  using T = Texts<TypeParam>;
  using Type = typename T::Type;
  const struct {
    const char* what;
    FecId fec;
    Type type;
    bool normally;
    bool inDetail;
  } cases[] = {
      {"a via", this->ethernetFec(), Type::staticRoute, true, true},
      {"no via", this->device.fec({}), Type::staticRoute, true, true},
      {"no FEC of that identifier", FecId(AdjType::fib, 4711), Type::staticRoute, true, true},
      {"a null identifier", FecId(), Type::staticRoute, false, false},
      {"dead vias", this->deadFec(), Type::staticRoute, false, true},
      {"a live via behind a dead one",
       this->device.fec({via(T::hop, ""), via(T::hop, "Ethernet1")}), Type::staticRoute, true,
       true},
      {"a tunnel", this->device.fec({via(T::zero, "DynamicTunnel7.1")}), Type::staticRoute, true,
       true},
      {"a group and a null identifier", FecId(), Type::nexthopGroup, true, true},
      {"a group and dead vias", this->deadFec(), Type::nexthopGroup, true, true},
  };
  for (const auto& [what, fec, type, normally, inDetail] : cases) {
    this->device.route(T::wide, type, fec);
    EXPECT_EQ(this->listed().size(), normally ? 1u : 0u) << what;
    EXPECT_EQ(this->listed({.detail = true}).size(), inDetail ? 1u : 0u) << what << " in detail";
  }
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

TYPED_TEST(SelectionTest, AnAddressResolvesToTheLongestPrefix) {
  using T = Texts<TypeParam>;
  const auto resolved = [this](const char* prefix) {
    const auto sorter = this->open({.prefix = prefix});
    EXPECT_LE(sorter->sortedRoutes(), 1u);
    return sorter->longestPrefixMatch();
  };
  const auto prefix = [](const char* text) { return prefixOf<TypeParam>(text); };
  EXPECT_TRUE(resolved(T::host).isNullPrefix());
  this->staticRoutes({T::wide});
  EXPECT_EQ(resolved(T::host), prefix(T::wide));
  EXPECT_TRUE(resolved(T::otherHost).isNullPrefix());
  EXPECT_TRUE(resolved(T::everything).isNullPrefix());
  this->staticRoutes({T::inside, T::everything});
  EXPECT_EQ(resolved(T::host), prefix(T::inside));
  EXPECT_EQ(resolved(T::inside), prefix(T::inside));
  EXPECT_EQ(resolved(T::wide), prefix(T::wide));
  EXPECT_EQ(resolved(T::otherHost), prefix(T::everything));
  this->device.route(T::host, T::Type::attached, this->ethernetFec()); // is passed over
  EXPECT_EQ(resolved(T::host), prefix(T::inside));
  this->staticRoutes({T::host});
  EXPECT_EQ(resolved(T::host), prefix(T::host));
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

TYPED_TEST(SelectionTest, AnyEntryOfTheFamilysKernelTableCounts) {
  using T = Texts<TypeParam>;
  EXPECT_FALSE(Rova::kernelUnprogrammedRoutes(*this->open()));
  EXPECT_FALSE(Rova::kernelUnprogrammedRoutes(*this->open({.withoutKernelStatus = true})));
  this->device.template kernelUnprogrammed<TypeParam>(T::other);
  EXPECT_TRUE(Rova::kernelUnprogrammedRoutes(*this->open({.prefix = T::host})));
  using Other = std::conditional_t<std::is_same_v<TypeParam, Rova::Ip4Family>, Rova::Ip6Family,
                                   Rova::Ip4Family>;
  EXPECT_FALSE(Rova::kernelUnprogrammedRoutes(*openSorter<Other>(this->device)));
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
  using Status = typename TypeParam::RouteStatus;
  using Table = Vanta::MemoryTable<typename TypeParam::Prefix, typename TypeParam::Route>;
  auto table = std::make_unique<Table>("route");
  for (const char* const text : {T::host, T::inside, T::wide}) {
    typename TypeParam::Route route;
    route.key = prefixOf<TypeParam>(text);
    route.routeType = T::Type::staticRoute;
    route.fecId = this->ethernetFec();
    table->insert(route);
  }
  table->corruptAt(3);
  const auto status = Lumo::newEntity<Status>(std::move(table));
  status->route.corruptionHandlerIs([](auto&, const std::string&) {});
  status->route.detachCallbackIs([](auto&) {});
  auto& vrf = this->device.state.vrfs.front();
  if constexpr (std::is_same_v<TypeParam, Rova::Ip4Family>) {
    vrf.routingStatus = status;
  } else {
    vrf.routing6Status = status;
  }
  EXPECT_EQ(this->listed(), (Lines{T::host, T::inside}));
  EXPECT_EQ(this->listed(), Lines()) << "a detached table reads as empty";
}

} // namespace
