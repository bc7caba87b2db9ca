// Route distinguishers: RFC 4364 gives their three layouts.
#include "kesh/RouteDistinguisher.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using Kesh::RouteDistinguisher;

struct Good {
  const char* text;
  std::uint64_t value;
};
void PrintTo(const Good& good, std::ostream* out) { *out << good.text; }

class GoodText : public testing::TestWithParam<Good> {};

TEST_P(GoodText, IsReadAndComesBack) {
  const auto rd = RouteDistinguisher::parse(GetParam().text);
  ASSERT_TRUE(rd);
  EXPECT_EQ(rd->value(), GetParam().value);
  EXPECT_EQ(rd->stringValue(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(RouteDistinguisher, GoodText,
                         testing::Values(Good{"0:0", 0}, Good{"100:7", 0x0000006400000007},
                                         Good{"65535:4294967295", 0x0000ffffffffffff},
                                         Good{"65536:65535", 0x000200010000ffff},
                                         Good{"4294967295:0", 0x0002ffffffff0000},
                                         Good{"0.0.0.0:0", 0x0001000000000000},
                                         Good{"192.0.2.1:65535", 0x0001c0000201ffff}));

class BadText : public testing::TestWithParam<const char*> {};

TEST_P(BadText, IsRefused) { EXPECT_FALSE(RouteDistinguisher::parse(GetParam())); }

INSTANTIATE_TEST_SUITE_P(RouteDistinguisher, BadText,
                         testing::Values("", ":", "100", "100:", ":7", "100:7:8", "100:-7", "+1:7",
                                         "100: 7", "0100:7", "100:07", "100:4294967296",
                                         "65536:65536", "4294967296:1", "192.0.2.1:65536",
                                         "192.0.2:1", "192.0.2.256:1", "2001:db8::1:7"));

TEST(RouteDistinguisher, OfDifferentTypesAreDifferent) {
  EXPECT_EQ(RouteDistinguisher(), *RouteDistinguisher::parse("0:0"));
  EXPECT_NE(*RouteDistinguisher::parse("0.0.0.0:0"), *RouteDistinguisher::parse("0:0"));
  EXPECT_NE(*RouteDistinguisher::parse("100:7"), *RouteDistinguisher::parse("100:8"));
}

} // namespace
