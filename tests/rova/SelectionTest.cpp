// Which routes enter a listing.
#include "support/Device.h"

#include "rova/route/Selection.h"

namespace {

using namespace support;

template <class Family>
struct SelectionTest : testing::Test {
  FecId ethernetFec() { return device.fec({via(Texts<Family>::hop, "Ethernet1")}); }
  auto open(const Query& query = {}) { return openSorter<Family>(device, query); }

  Device device;
};
TYPED_TEST_SUITE(SelectionTest, Families, FamilyNames);

using Texts_ = std::vector<std::string>;

TYPED_TEST(SelectionTest, WholeTableInListingOrder) {
  using T = Texts<TypeParam>;
  const auto fec = this->ethernetFec();
  for (const auto* prefix : {T::everything, T::wide, T::inside, T::other, T::host}) {
    this->device.route(prefix, T::Type::staticRoute, fec);
  }
  const auto sorter = this->open();
  EXPECT_EQ(selected(sorter), (Texts_{T::host, T::inside, T::wide, T::other, T::everything}));
  EXPECT_EQ(sorter->printCount(), 5);
  EXPECT_TRUE(sorter->initialized());
}

} // namespace
