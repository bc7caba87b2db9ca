// Sorters by name, with something in them.
#include "support/Device.h"
#include "support/Expect.h"

#include "lumo/Reflect.h"

#include <string>

namespace {

using namespace support;
using Lumo::wrapAttrValue;

template <class Family>
struct SorterByNameTest : testing::Test {
  Device device;
};
TYPED_TEST_SUITE(SorterByNameTest, Families, FamilyNames);

template <class Result>
Result unwrapped(const Lumo::GenericPtr& value) {
  return Lumo::unwrap<Result>(value);
}

TYPED_TEST(SorterByNameTest, ItIsReadAndCalled) {
  using T = Texts<TypeParam>;
  const auto fec = this->device.fec({via(T::hop, "Ethernet1")});
  this->device.route(T::inside, T::Type::staticRoute, fec, 20);
  const auto sorter = openSorter<TypeParam>(this->device, {.prefix = T::host});
  EXPECT_EQ(sorter->fwkType(), &Rova::Sorter<TypeParam>::lumoType);
  const auto object = wrapAttrValue(sorter);
  const auto key = prefixOf<TypeParam>(T::inside);
  const Lumo::GenericPtr prefix[] = {wrapAttrValue(key)};
  EXPECT_EQ(unwrapped<typename TypeParam::Route>(Lumo::readMember(*object, "sortedRoute", *prefix)),
            sorter->sortedRoute(key));
  EXPECT_TRUE(
      unwrapped<Lumo::Ptr<Rova::CachedFec>>(Lumo::readMember(*object, "fec", wrapAttrValue(fec))));
  EXPECT_TRUE(unwrapped<bool>(Lumo::read(*object, "initialized")));
  EXPECT_EQ(unwrapped<typename TypeParam::Prefix>(Lumo::call(*object, "longestPrefixMatch", {})),
            key);
  EXPECT_EQ(unwrapped<Lumo::String>(Lumo::call(*object, "legend", {})), sorter->legend());
  EXPECT_EQ(unwrapped<Lumo::String>(Lumo::call(*object, "protocolString", prefix)).str(), " S   ");
}

TYPED_TEST(SorterByNameTest, LoadingAgainCountsAgain) {
  using T = Texts<TypeParam>;
  this->device.route(T::wide, T::Type::staticRoute, this->device.fec({}));
  const auto sorter = openSorter<TypeParam>(this->device);
  Lumo::call(*wrapAttrValue(sorter), "handleInitialized", {});
  EXPECT_EQ(sorter->printCount(), 2);
  EXPECT_EQ(sorter->sortedRoutes(), 1u);
}

TYPED_TEST(SorterByNameTest, ANullFecIsRefused) {
  const auto sorter = openSorter<TypeParam>(this->device);
  const std::string refusal = "null _fec parameter to mutator for " +
                              std::string(TypeParam::sorterTypeName) + "::fec not allowed\"";
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { sorter->fecIs(nullptr); }), refusal);
  const auto object = wrapAttrValue(sorter);
  const auto key = wrapAttrValue(Vanta::Fib::FecId(7));
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { Lumo::writeMember(*object, "fec", key, {}); }),
            refusal);
  EXPECT_EQ(sorter->fecs(), 0u);
}

TEST(ValueTest, OnlyTheDefaultOneIsNot) {
  Rova::CachedNhgVia group;
  EXPECT_TRUE(!group);
  group.nhgIdIs(5);
  EXPECT_FALSE(!group);
}

} // namespace
