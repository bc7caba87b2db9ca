// Addresses: their one text, and the texts that are none.
#include "kesh/Address.h"

#include <gtest/gtest.h>

namespace {

using namespace Kesh;

TEST(Ip6AddrTest, WritesTheTextOfRfc5952) {
  const struct {
    const char* read;
    const char* written;
  } cases[] = {
      {"::", "::"},
      {"2001:0DB8:0000:0000:0000:0000:0000:0001", "2001:db8::1"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"}, // one group alone is not shortened
      {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},    // the first of equal runs
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},          // the longest run
      {"1:2:3:4:5:6:0:0", "1:2:3:4:5:6::"},
      {"0:0:3:4:5:6:7:8", "::3:4:5:6:7:8"},
      {"1:0:0:0:0:0:0:0", "1::"},
      {"0:2:3:4:5:6:7:8", "0:2:3:4:5:6:7:8"},
      {"::ffff:192.0.2.1", "::ffff:192.0.2.1"},
      {"::FFFF:C000:0201", "::ffff:192.0.2.1"},
  };
  for (const auto& [read, written] : cases) {
    const auto address = Ip6Addr::parse(read);
    ASSERT_TRUE(address) << read;
    EXPECT_EQ(address->stringValue().str(), written) << read;
    EXPECT_EQ(Ip6Addr::parse(written), address) << read;
  }
}

TEST(AddressTest, RefusesWhatIsNoAddress) {
  for (const char* const text : {"", " ", "1.2.3", "1.2.3.4.5", "256.0.0.1", "01.2.3.4", "1.2.3.4 ",
                                 " 1.2.3.4", "1.2.3.-4", "0x1.2.3.4", "1.2.3.4/32", "a.b.c.d"}) {
    EXPECT_FALSE(IpAddr::parse(text)) << text;
    EXPECT_FALSE(IpGenAddr::parse(text)) << text;
  }
  for (const char* const text :
       {"", ":", ":::", "1::2::3", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9",
        "12345::", "g::", "fe80::1%eth0", "::1/128", "::ffff:1.2.3", "1:2:3:4:5:6:7::8:9"}) {
    EXPECT_FALSE(Ip6Addr::parse(text)) << text;
    EXPECT_FALSE(IpGenAddr::parse(text)) << text;
  }
  EXPECT_FALSE(IpAddr::parse(std::string_view("1.2.3.4\0", 8)));
  EXPECT_FALSE(Ip6Addr::parse(std::string(300, '1')));
}

TEST(Ip6AddrTest, TellsLinkLocalAndUnspecified) {
  const struct {
    const char* text;
    bool linkLocal;
    bool unspecified;
  } cases[] = {{"::", false, true},       {"fe80::1", true, false},  {"febf::1", true, false},
               {"fec0::1", false, false}, {"fe7f::1", false, false}, {"::1", false, false},
               {"1::", false, false}};
  for (const auto& [text, linkLocal, unspecified] : cases) {
    EXPECT_EQ(Ip6Addr::parse(text)->isLinkLocal(), linkLocal) << text;
    EXPECT_EQ(Ip6Addr::parse(text)->isUnspecified(), unspecified) << text;
  }
}

TEST(IpGenAddrTest, KeepsItsFamily) {
  const IpGenAddr unset;
  const auto v4 = *IpGenAddr::parse("192.0.2.1"), zero4 = *IpGenAddr::parse("0.0.0.0");
  const auto v6 = *IpGenAddr::parse("2001:db8::1"), zero6 = *IpGenAddr::parse("::");
  EXPECT_EQ(unset.stringValue().str() + v4.stringValue().str(), "192.0.2.1");
  EXPECT_EQ(v6.v6Addr().stringValue().str(), "2001:db8::1");
  EXPECT_TRUE(unset.isAddrZero() && zero4.isAddrZero() && zero6.isAddrZero());
  EXPECT_FALSE(zero4 == zero6 || zero4 == unset);
  EXPECT_TRUE(unset < v4 && v4 < v6);
  EXPECT_LT(*IpAddr::parse("127.0.0.1"), *IpAddr::parse("128.0.0.1"));
}

TEST(EthAddrTest, ReadsAndWritesSixBytes) {
  EXPECT_EQ(EthAddr::parse("00:1C:73:00:aB:ff")->stringValue().str(), "00:1c:73:00:ab:ff");
  EXPECT_EQ(EthAddr().stringValue().str(), "00:00:00:00:00:00");
  for (const char* const text :
       {"", "00:1c:73:00:ab", "00:1c:73:00:ab:ff:", "00:1c:73:00:ab:fg", "001c.7300.abff",
        "0:01c:73:00:ab:ff", "00-1c-73-00-ab-ff", "00:1c:73:00:ab:+f", "00:1c:73:00:ab:ff:00"}) {
    EXPECT_FALSE(EthAddr::parse(text)) << text;
  }
}

} // namespace
