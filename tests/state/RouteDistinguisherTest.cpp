// Route distinguishers: RFC 4364 gives their three layouts.
#include "kesh/RouteDistinguisher.h"

#include <gtest/gtest.h>

namespace {

using Kesh::RouteDistinguisher;

TEST(RouteDistinguisherTest, ComesBackFromItsText) {
  const struct {
    const char* text;
    std::uint64_t value;
  } cases[] = {{"0:0", 0},
               {"100:7", 0x0000006400000007},
               {"65535:4294967295", 0x0000ffffffffffff},
               {"65536:65535", 0x000200010000ffff},
               {"4294967295:0", 0x0002ffffffff0000},
               {"0.0.0.0:0", 0x0001000000000000},
               {"192.0.2.1:65535", 0x0001c0000201ffff}};
  for (const auto& [text, value] : cases) {
    const auto distinguisher = RouteDistinguisher::parse(text);
    ASSERT_TRUE(distinguisher) << text;
    EXPECT_EQ(distinguisher->value(), value) << text;
    EXPECT_EQ(distinguisher->stringValue(), text);
  }
}

TEST(RouteDistinguisherTest, RefusesOtherTexts) {
  for (const char* const text :
       {"", ":", "100", "100:", ":7", "100:7:8", "100:-7", "+1:7", "100: 7", "0100:7", "100:07",
        "100:4294967296", "65536:65536", "4294967296:1", "192.0.2.1:65536", "192.0.2:1",
        "192.0.2.256:1", "2001:db8::1:7"}) {
    EXPECT_FALSE(RouteDistinguisher::parse(text)) << text;
  }
}

} // namespace
