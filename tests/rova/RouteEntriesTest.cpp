// Entries of a listing one at a time: what the listing has, whatever was asked for before.
#include "support/Device.h"
#include "support/Expect.h"

#include "rova/route/RouteEntries.h"

namespace {

using namespace support;

template <class Family>
struct RouteEntriesTest : testing::Test {
  /// Routes that share a FEC, one that is left out, one that the hardware lacks.
  RouteEntriesTest() {
    using T = Texts<Family>;
    const auto shared = device.fec({via(T::hop, "Ethernet1"), via(T::hop, "Ethernet2")});
    device.route(T::wide, T::Type::staticRoute, shared, 7);
    device.route(T::host, T::Type::staticRoute, shared);
    device.route(T::inside, T::Type::staticRoute, device.fec({via(T::hop, "")}));
    device.hardwareUnprogrammed<Family>(T::wide);
  }

  Device device;
};
TYPED_TEST_SUITE(RouteEntriesTest, Families, FamilyNames);

TYPED_TEST(RouteEntriesTest, StandInTheListingInItsOrder) {
  for (const unsigned format : {scrivo::textFormat, scrivo::modelFormat}) {
    const bool isText = format == scrivo::textFormat;
    const auto sorter = openSorter<TypeParam>(this->device);
    Rova::RouteEntries<TypeParam> entries(*sorter, format);
    std::string routes;
    for (const auto& [prefix, route] : sorter->sortedRouteMap()) {
      const std::string entry(entries.entry(route)); // the next call ends it
      EXPECT_NE(entry, "");
      EXPECT_EQ(entries.entryUnder(prefix), entry);
      routes.append(routes.empty() || isText ? "" : ",\n").append(entry);
    }
    const auto listing = outputOf(sorter, format);
    EXPECT_NE(listing.find(routes + (isText ? "\n" : "}")), std::string::npos) << listing << routes;
  }
}

TYPED_TEST(RouteEntriesTest, AreEmptyForWhatIsNotListed) {
  using T = Texts<TypeParam>;
  const auto sorter = openSorter<TypeParam>(this->device, {.protocol = "B"});
  Rova::RouteEntries<TypeParam> entries(*sorter, scrivo::modelFormat);
  for (const char* const prefix : {T::host, T::inside, T::other}) { // the last has no route
    EXPECT_EQ(entries.entryUnder(prefixOf<TypeParam>(prefix)), "") << prefix;
  }
}

} // namespace
