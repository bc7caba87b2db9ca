// Expressions: what they hold for, and patterns.
#include "command/filter/Expression.h"
#include "command/filter/ExpressionError.h"
#include "command/filter/Pattern.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace command;

Kesh::IpGenPrefix prefix(const char* text) { return Kesh::IpGenPrefix(Lumo::String(text)); }

/// Whether an expression holds for a BGP route to 10.1.0.0/16, over two vias and a tunnel of IPv6.
bool holds(const std::string& text) {
  const Rova::RouteHead head{.prefix = prefix("10.1.0.0/16"),
                             .length = 16,
                             .type = "eBGP",
                             .protocolCode = "B",
                             .preference = 200,
                             .metric = 4294967295};
  Rova::ShownVias vias;
  vias.vias = 2;
  vias.nexthopAddr = {prefix("192.0.2.1/32"), prefix("2001:db8::1/128")};
  vias.tunnelEndpoint = {prefix("198.51.100.0/24")};
  vias.interface = {"Ethernet1/1.5", "bond 0"};
  vias.tunnelType = {"EVPN VXLAN"};
  const auto expression = filter::readExpression(text);
  return expression.holds([&](std::size_t at) {
    const auto& comparison = expression.comparisons()[at];
    return isOfVias(*comparison.field) ? comparison.holds(vias) : comparison.holds(head);
  });
}

TEST(Filter, HoldsForWhatItAsks) {
  const std::pair<const char*, bool> cases[] = {
      // "and" binds more than "or", "not" more than both.
      {"length = 16 or length = 1 and length = 2", true},
      {"(length = 16 or length = 1) and length = 2", false},
      {"not length = 1 and length = 16", true},
      {"not(length=16 or length=1)", false},
      {"not not kernel", true},
      // Numbers up to their ends.
      {"metric > 4294967295", false},
      {"metric >= 4294967295", true},
      {"vias < 0", false},
      {"vias >= 0", true},
      {"length in 16..16", true},
      {"length in {8, 10..15, 17}", false},
      // Addresses are values, of one family or the other.
      {"nexthop = 2001:DB8:0::0:1", true},
      {"nexthop = ::ffff:192.0.2.1", false},
      {"nexthop in ::/0", true},
      {"nexthop in {203.0.113.0/24, 192.0.2.1}", true},
      {"prefix in 10.0.0.0/8", true},
      {"prefix in 10.1.0.0/16", true},
      {"prefix in 10.1.0.0/17", false},
      {"prefix = 10.0.0.0/8", false},
      {"endpoint in 198.51.0.0/16", true},
      {"endpoint = 198.51.100.0", false},
      // Of several values one is enough; != is not =, also of none.
      {"nexthop = 192.0.2.1 and nexthop = 2001:db8::1", true},
      {"nexthop != 192.0.2.1", false},
      {"label != 100", true},
      {"label >= 0", false},
      // Words and names, and quotes around what would be more than one.
      {"protocol = bgp", true},
      {"protocol in {static, bgp}", true},
      {"protocol ~ ?gp", true},
      {"type ~ *BGP", true},
      {"tunnel = \"EVPN VXLAN\"", true},
      {"interface = 'bond 0'", true},
      {"interface ~ Ethernet*.?", true},
      {"interface = Ethernet1/1.50", false},
      {"source-vrf ~ *", false},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(holds(text), expected) << text;
}

TEST(Filter, Patterns) {
  struct Case {
    const char* text;
    const char* pattern;
    bool fits;
  };
  const Case cases[] = {
      {"Ethernet1", "Ethernet?", true},
      {"Ethernet10", "Ethernet?", false},
      {"Ethernet10", "*1*", true},
      {"", "*", true},
      {"", "?", false},
      {"abcabd", "*ab?", true},
      {"abcabdc", "*ab?", false},
      {"a*b", "a*b", true},
      {"büro", "b?ro", true},
      {"éb", "*??b", false},
      {"Ethernet1", "ethernet1", false},
      {"a", "a**", true},
      {"[a]", "[a]", true},
      {"a", "[a]", false},
  };
  for (const Case& c : cases) EXPECT_EQ(filter::fits(c.text, c.pattern), c.fits) << c.pattern;
}

/// As many times the text, with what joins them in between.
std::string repeated(const std::string& text, std::size_t times, const std::string& join = "") {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += (i ? join : "") + text;
  return all;
}

TEST(Filter, HasLimits) {
  const auto inside = [](std::size_t depth) {
    return repeated("(", depth) + "kernel" + repeated(")", depth);
  };
  EXPECT_TRUE(holds(repeated("kernel", 64, " and ")));
  EXPECT_TRUE(holds(inside(64)));
  EXPECT_TRUE(holds(repeated("not ", 100000) + "kernel"));
  EXPECT_TRUE(holds("length in {" + repeated("16", 10000, ",") + "}"));
  for (const auto& text : {repeated("kernel", 65, " and "), inside(65), inside(100000)}) {
    EXPECT_THROW(holds(text), filter::ExpressionError) << text.substr(0, 100);
  }
}

} // namespace
