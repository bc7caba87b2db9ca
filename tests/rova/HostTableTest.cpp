// The host route table, where the scenarios of the command cannot reach.
#include "support/Device.h"
#include "support/Expect.h"

#include <algorithm>

namespace {

using namespace support;
using Lines = std::vector<std::string>;
using Vrf::VrfIdMap::VrfId;

template <class Family>
struct HostTableTest : testing::Test {
  void neighbor(const std::string& address, const char* interface, std::uint32_t vrf = 0) {
    neighbors().insert({{VrfId(vrf), intf(interface), addr(address)}, {}});
  }
  auto& neighbors() {
    const bool v4 = std::is_same_v<Family, Rova::Ip4Family>;
    return v4 ? *device.tables.arp : *device.tables.neighbors;
  }
  auto open(const char* vrf = "default") {
    return openSorter<Family>(device, {.vrf = vrf, .host = true});
  }
  /// What the table prints behind its legend.
  std::string routesOf(const std::string& text) { return text.substr(text.find("\n\n") + 2); }
  std::string shown() { return routesOf(textOf(open())); }

  Device device;
};
TYPED_TEST_SUITE(HostTableTest, Families, FamilyNames);

/// What a route says of its type, when its via is on Ethernet1 without a next hop.
const char* const expectedOf4[] = {nullptr,   " to cpu",       " to cpu",
                                   " to cpu", " on Ethernet1", " on Ethernet1"};
const char* const expectedOf6[] = {nullptr, " to cpu", " to cpu", " on Ethernet1"};

template <class Family>
std::string expectedOf(std::uint32_t type) {
  const auto pick = [type](const auto& table) {
    return type < std::size(table) ? table[type] : " to cpu on Ethernet1";
  };
  return std::is_same_v<Family, Rova::Ip4Family> ? pick(expectedOf4) : pick(expectedOf6);
}

TYPED_TEST(HostTableTest, EveryNumberOfATypeShows) {
  using T = Texts<TypeParam>;
  for (const std::uint32_t type : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 11u, 12u, 25u, 36u, 4000000000u}) {
    this->device.fecIs(FecId(7), {via(T::zero, "Ethernet1")});
    this->device.route(T::host, static_cast<typename T::Type>(type), FecId(7));
    const auto line = this->shown();
    EXPECT_EQ(line.substr(4), T::hostAddress + expectedOf<TypeParam>(type) + "\n\n") << type;
  }
}

TYPED_TEST(HostTableTest, ANeighbourBelongsToTheVrfOfItsNumber) {
  using T = Texts<TypeParam>;
  this->device.vrf("red", 3);
  this->neighbor(T::hostAddress, "Vlan10");
  this->neighbor(T::hop, "Vlan10", 3);
  this->neighbor(T::zero, "Vlan10", 4);
  this->neighbor(T::zero, "Management1");
  this->neighbor(T::zero, "Management1", 3);
  EXPECT_EQ(selected(this->open()), Lines{T::host});
  const auto red = this->open("red");
  ASSERT_EQ(red->sortedRoutes(), 1u);
  EXPECT_EQ(red->sortedRouteMap().begin()->first.address().stringValue().str(), T::hop);
}

TYPED_TEST(HostTableTest, TheFirstRouteOnAFecMakesItsRows) {
  using T = Texts<TypeParam>;
  const auto fec = this->device.fec({via(T::zero, "Ethernet1"), via(T::hop, "Ethernet2")});
  this->device.route(T::host, T::Type::staticRoute, fec);
  this->device.route(T::otherHost, T::Type::attached, fec);
  const auto sorter = this->open();
  const auto first = textOf(sorter);
  EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 2 + 4 + 1);
  EXPECT_NE(first.find(" to cpu on Ethernet1\n", first.find("\n A ")), std::string::npos)
      << "the attached route has the rows of the static one";
  EXPECT_EQ(textOf(sorter), first) << "a second print";
  const auto& entity = *sorter->fec(fec);
  EXPECT_EQ(entity.numEntries(), 2);
  EXPECT_EQ(entity.nexthopAddr(0).str() + "," + entity.interface(0).str(), ",Ethernet1");
  EXPECT_EQ(entity.nexthopAddr(1).str() + "," + entity.interface(1).str(),
            std::string(T::hop) + ",Ethernet2");
  EXPECT_TRUE(entity.hostToCpu(0));
  EXPECT_FALSE(entity.hostToCpu(1));
  EXPECT_EQ(entity.viaTypeStrings(), 0u);
}

TYPED_TEST(HostTableTest, NoFecStopsIt) {
  using T = Texts<TypeParam>;
  const std::string alone = std::string(" F  ") + T::hostAddress + "\n\n";
  this->neighbor(T::hostAddress, "Vlan10");
  for (const auto fec : {FecId(), FecId(std::uint64_t{20} << 56), FecId(~std::uint64_t{0})}) {
    this->device.route(T::host, T::Type::staticRoute, fec);
    EXPECT_EQ(this->shown(), alone) << fec.value();
  }
  this->device.route(T::host, T::Type::staticRoute, FecId(7));
  const auto sorter = this->open();
  sorter->fecDel(FecId(7));
  EXPECT_EQ(this->routesOf(textOf(sorter)), alone) << "gone since the selection";
  sorter->sortedRouteDel(prefixOf<TypeParam>(T::host));
  EXPECT_EQ(textOf(sorter), "");
}

/// Replaces the counts of routes that are missing from the hardware by a single one.
template <class Family>
void setCount(Device& device, std::uint32_t count) {
  using Status = typename Family::UnprogrammedRouteStatus;
  using Key = typename Status::Key;
  auto routes = std::make_unique<
      Vanta::MemoryTable<Key, Vanta::BasicUnprogrammedRoute<typename Family::Prefix>>>(
      "unprogrammedRoute");
  routes->insert({{prefixOf<Family>(Texts<Family>::host), VrfId(0)}});
  auto counts = std::make_unique<Vanta::MemoryTable<VrfId, Vanta::UnprogrammedRouteCount>>("count");
  counts->insert({VrfId(0), count});
  const auto status = Lumo::newEntity<Status>(std::move(routes), std::move(counts));
  if constexpr (std::is_same_v<Family, Rova::Ip4Family>) {
    device.state.unprogrammedRouteStatus = status;
  } else {
    device.state.unprogrammedRoute6Status = status;
  }
}

TYPED_TEST(HostTableTest, TheCountDecidesForTheWarningAndTheTableForTheMark) {
  using T = Texts<TypeParam>;
  this->neighbor(T::hostAddress, "Vlan10");
  this->neighbor(T::hop, "Vlan10");
  for (const std::uint32_t count : {0u, 1u}) {
    setCount<TypeParam>(this->device, count);
    const auto text = textOf(this->open());
    EXPECT_EQ(text.find("WARNING") != std::string::npos, count != 0);
    EXPECT_NE(text.find(std::string("\n*A  ") + T::hostAddress + " on"), std::string::npos);
    EXPECT_NE(text.find(std::string("\n A  ") + T::hop + " on"), std::string::npos);
  }
}

TYPED_TEST(HostTableTest, ATableThatTurnsCorruptRaises) {
  using T = Texts<TypeParam>;
  this->neighbor(T::hostAddress, "Vlan10");
  this->device.route(T::otherHost, T::Type::staticRoute, FecId());
  for (std::uint64_t read : {1, 2}) {
    this->neighbors().corruptAt(read);
    EXPECT_THROW(this->open(), Tembra::CorruptionDetectedException) << read;
    this->neighbors().corruptAt(0);
    this->device.template routes<TypeParam>().corruptAt(read);
    EXPECT_THROW(this->open(), Tembra::CorruptionDetectedException) << read;
    this->device.template routes<TypeParam>().corruptAt(0);
  }
  EXPECT_EQ(this->open()->sortedRoutes(), 2u);
}

} // namespace
