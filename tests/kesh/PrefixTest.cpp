// Prefixes of both families: how they are cut, refused, ordered and written.
#include "kesh/Prefix.h"

#include "lumo/Exception.h"
#include "support/Expect.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using namespace Kesh;

std::string rangeError(auto&& act) { return support::messageOf<Lumo::RangeException>(act); }

TEST(PfxTest, CutsTheAddressToTheLength) {
  const struct {
    const char* address;
    std::int32_t length;
    const char* expected;
  } cases[] = {{"10.1.2.3", 0, "0.0.0.0/0"},
               {"10.1.2.3", 1, "0.0.0.0/1"},
               {"255.255.255.255", 1, "128.0.0.0/1"},
               {"10.1.2.3", 24, "10.1.2.0/24"},
               {"10.1.2.3", 31, "10.1.2.2/31"},
               {"10.1.2.3", 32, "10.1.2.3/32"},
               {"10.1.2.3", -1, "0.0.0.0/-1"},
               {"ffff::", 0, "::/0"},
               {"ffff::", 1, "8000::/1"},
               {"::ffff:ffff:0:0:0", 63, "0:0:0:fffe::/63"},
               {"::ffff:ffff:0:0:0", 64, "0:0:0:ffff::/64"},
               {"::ffff:ffff:0:0:0", 65, "::ffff:8000:0:0:0/65"},
               {"::ffff", 127, "::fffe/127"},
               {"::ffff", 128, "::ffff/128"}};
  for (const auto& [address, length, expected] : cases) {
    const auto parsed = *IpGenAddr::parse(address);
    const auto text = parsed.af() == AddressFamily::ip4
                          ? pfx(parsed.v4Addr(), length).stringValue()
                          : pfx(parsed.v6Addr(), length).stringValue();
    EXPECT_EQ(text.str(), expected);
  }
  EXPECT_EQ(pfx(0x0a010203, 8), pfx(*IpAddr::parse("10.1.2.3"), 8));
}

TEST(PfxTest, RefusesLengthsThatNoPrefixHas) {
  for (const std::int32_t length : {-2, 33, 128, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(rangeError([=] { pfx(0u, length); }), "Prefix::validAsPrefix != true not allowed")
        << length;
  }
  for (const std::int32_t length : {-2, 129, INT32_MAX}) {
    EXPECT_THROW(pfx(Ip6Addr(), length), Lumo::RangeException) << length;
  }
}

TEST(PrefixTest, WhatIsInsideBeginsWithTheHostRouteOfTheFirstAddress) {
  const struct {
    IpGenPrefix outer;
    const char* first;
  } cases[] = {{IpGenPrefix(Lumo::String("0.0.0.0/0")), "0.0.0.0/32"},
               {IpGenPrefix(Prefix::nullPrefix()), "0.0.0.0/32"},
               {IpGenPrefix(Lumo::String("10.0.0.0/8")), "10.0.0.0/32"},
               {IpGenPrefix(Lumo::String("128.0.0.0/1")), "128.0.0.0/32"},
               {IpGenPrefix(Lumo::String("10.1.2.3/32")), "10.1.2.3/32"},
               {IpGenPrefix(Lumo::String("::/0")), "::/128"},
               {IpGenPrefix(Ip6Prefix::nullPrefix()), "::/128"},
               {IpGenPrefix(Lumo::String("2001:db8::/32")), "2001:db8::/128"},
               {IpGenPrefix(Lumo::String("2001:db8:0:1::/64")), "2001:db8:0:1::/128"},
               {IpGenPrefix(Lumo::String("2001:db8::1/128")), "2001:db8::1/128"}};
  for (const auto& [outer, first] : cases) {
    const auto found = outer.af() == AddressFamily::ip4
                           ? outer.v4Prefix().firstInside().stringValue()
                           : outer.v6Prefix().firstInside().stringValue();
    EXPECT_EQ(found.str(), first) << outer.stringValue();
  }
}

TEST(PrefixTest, TheNullPrefixIsNotTheDefaultRoute) {
  EXPECT_TRUE(Prefix::nullPrefix().isNullPrefix() && Ip6Prefix::nullPrefix().isNullPrefix());
  EXPECT_FALSE(pfx(0u, 0).isNullPrefix() || pfx(Ip6Addr(), 0).isNullPrefix());
  EXPECT_FALSE(Prefix::nullPrefix() == pfx(0u, 0));
  EXPECT_EQ(Prefix(), pfx(0u, 0));
}

TEST(PrefixTest, ReadsItsTextAndNoOther) {
  for (const char* const text : {"0.0.0.0/0", "10.0.0.0/8", "10.1.2.3/32", "128.0.0.0/1"}) {
    ASSERT_TRUE(Prefix::parse(text)) << text;
    EXPECT_EQ(Prefix::parse(text)->stringValue().str(), text);
  }
  for (const char* const text : {"::/0", "2001:db8::/32", "::1/128"}) {
    ASSERT_TRUE(Ip6Prefix::parse(text)) << text;
    EXPECT_EQ(Ip6Prefix::parse(text)->stringValue().str(), text);
  }
  for (const char* const text : {"", "10.0.0.0", "10.0.0.0/", "/8", "10.0.0.1/8", "10.0.0.0/33",
                                 "10.0.0.0/-1", "10.0.0.0/08", "10.0.0.0/8 ", "10.0.0.0/+8",
                                 "10.0.0.0/8/8", "10.0.0.0/99999999999", "10.0.0.0/255.0.0.0"}) {
    EXPECT_FALSE(Prefix::parse(text)) << text;
  }
  for (const char* const text : {"::", "::1/0", "2001:db8::1/64", "::/129", "::/", "10.0.0.0/8"}) {
    EXPECT_FALSE(Ip6Prefix::parse(text)) << text;
  }
}

TEST(AddrWithMaskTest, KeepsItsHostBits) {
  EXPECT_EQ(IpAddrWithMask::parse("10.0.0.1/24")->stringValue().str(), "10.0.0.1/24");
  EXPECT_EQ(Ip6AddrWithMask::parse("fe80::1/64")->stringValue().str(), "fe80::1/64");
  EXPECT_EQ(addrFromPrefix(pfx(0x0a000001, 32)), *IpAddrWithMask::parse("10.0.0.1/32"));
  EXPECT_FALSE(addrFromPrefix(pfx(0x0a000001, 32)) == *IpAddrWithMask::parse("10.0.0.1/24"));
  EXPECT_EQ(addrFromPrefix(*Ip6Prefix::parse("fe80::/10")), *Ip6AddrWithMask::parse("fe80::/10"));
}

TEST(IpGenPrefixTest, IsOfTheFamilyOfItsText) {
  EXPECT_EQ(IpGenPrefix(Lumo::String("10.0.0.0/8")), IpGenPrefix(pfx(0x0a000000, 8)));
  EXPECT_EQ(IpGenPrefix(Lumo::String("::/0")).af(), AddressFamily::ip6);
  EXPECT_EQ(IpGenPrefix(Lumo::String("10.0.0.0/8")).v4Prefix(), pfx(0x0a000000, 8));
  EXPECT_EQ(IpGenPrefix(Lumo::String("2001:db8::/32")).stringValue().str(), "2001:db8::/32");
  EXPECT_EQ(IpGenPrefix().stringValue().str(), "");
  for (const char* const text : {"", "red", "10.0.0.1/8", "10.0.0.0"}) {
    EXPECT_EQ(IpGenPrefix(Lumo::String(text)), IpGenPrefix()) << text;
  }
  EXPECT_FALSE(IpGenPrefix(pfx(0u, 0)) == IpGenPrefix(pfx(Ip6Addr(), 0)));
}

/// The order as it is defined: of the shorter length, equal leading bits put the longer mask first;
/// other bits order by address.
template <class PrefixType>
bool definedLess(const PrefixType& a, const PrefixType& b) {
  const int shorter = std::min(a.len(), b.len());
  if (pfx(a.address(), shorter) == pfx(b.address(), shorter)) return a.len() > b.len();
  return a.address() < b.address();
}

Prefix randomPrefix(std::mt19937_64& random, Prefix) {
  // Few addresses and every length, that of the null prefix too, so that prefixes nest.
  return pfx(static_cast<std::uint32_t>(random() & 0x80810003),
             static_cast<int>(random() % 34) - 1);
}
Ip6Prefix randomPrefix(std::mt19937_64& random, Ip6Prefix) {
  const auto address =
      Ip6Addr::fromHalves(random() & 0x8000000000010001, random() & 0x8000000000000003);
  return pfx(address, static_cast<int>(random() % 130) - 1);
}

template <class PrefixType>
struct PrefixOrderPropertyTest : testing::Test {};
using PrefixTypes = testing::Types<Prefix, Ip6Prefix>;
TYPED_TEST_SUITE(PrefixOrderPropertyTest, PrefixTypes);

TYPED_TEST(PrefixOrderPropertyTest, IsTheDefinedTotalOrder) {
  std::mt19937_64 random(1);
  std::vector<TypeParam> prefixes;
  for (int i = 0; i < 400; ++i) prefixes.push_back(randomPrefix(random, TypeParam()));
  for (const auto& a : prefixes) {
    for (const auto& b : prefixes) {
      ASSERT_EQ(a < b, definedLess(a, b)) << a.stringValue() << " " << b.stringValue();
      ASSERT_EQ((a < b) + (b < a) + (a == b), 1) << a.stringValue() << " " << b.stringValue();
    }
  }
  std::sort(prefixes.begin(), prefixes.end()); // transitivity: sorted neighbours order all pairs
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    for (std::size_t j = i + 1; j < prefixes.size(); ++j) ASSERT_FALSE(prefixes[j] < prefixes[i]);
  }
}

TYPED_TEST(PrefixOrderPropertyTest, WhatAPrefixContainsIsARangeThatEndsWithIt) {
  std::mt19937_64 random(2);
  int contained = 0;
  for (int i = 0; i < 20000; ++i) {
    const auto outer = randomPrefix(random, TypeParam()), inner = randomPrefix(random, TypeParam());
    const bool inside = inner.len() >= outer.len() && pfx(inner.address(), outer.len()) == outer;
    const bool inRange = !(inner < outer.firstInside()) && !(outer < inner);
    ASSERT_EQ(outer.contains(inner), inside) << outer.stringValue() << " " << inner.stringValue();
    ASSERT_EQ(inRange, inside) << outer.stringValue() << " " << inner.stringValue();
    contained += inside && inner != outer;
  }
  EXPECT_GT(contained, 500);
}

} // namespace
