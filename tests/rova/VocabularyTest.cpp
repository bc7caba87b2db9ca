// The vocabulary of route types, held against tables that were written down apart from it.
#include "rova/CliSupport.h"
#include "support/Expect.h"

#include <map>
#include <set>

namespace {

using namespace support;
using Rova::hcode;
using Rova::hcodeWord;
using V4 = Routing::Fib::RouteType;
using V6 = Routing6::Fib::RouteType;

struct Row {
  std::uint32_t number;
  const char* pcode;
  const char* pcodeWord;
  const char* protocolCode;
  const char* summaryWord;
};

constexpr Row rows4[] = {
    {0, "", "", "", ""},
    {1, "C", "connected", "C", "internal"},
    {2, "C", "connected", "C", "internal"},
    {3, "C", "connected", "C", "internal"},
    {4, "C", "connected", "C", "internal"},
    {5, "", "", "", "attached"},
    {7, "S", "static", "S", "static"},
    {8, "V", "vcs", "V", "vcs"},
    {9, "K", "kernel", "K", "internal"},
    {10, "R", "RIP", "R", "rip"},
    {11, "C", "connected", "C", "connected"},
    {12, "", "", "", ""},
    {13, "A B", "bgpAggregate", "A", "aggregate"},
    {14, "A O", "ospfSummary", "A", "aggregate"},
    {15, "O", "OSPF", "O", "ospfIntraArea"},
    {16, "O IA", "ospfInterArea", "O", "ospfInterArea"},
    {17, "O E1", "ospfExternalType1", "O", "ospfExternal1"},
    {18, "O E2", "ospfExternalType2", "O", "ospfExternal2"},
    {19, "O N1", "ospfNssaExternalType1", "O", "nssaExternal1"},
    {20, "O N2", "ospfNssaExternalType2", "O", "nssaExternal2"},
    {21, "B I", "iBGP", "B", "bgpInternal"},
    {22, "B E", "eBGP", "B", "bgpExternal"},
    {23, "I L1", "ISISLevel1", "I", "isisLevel1"},
    {24, "I L2", "ISISLevel2", "I", "isisLevel2"},
    {25, "NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"},
    {26, "S", "dropRoute", "S", "internal"},
    {27, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {28, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {29, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {30, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {31, "O3", "OSPFv3", "O3", "ospfv3Total"},
    {32, "DH", "dhcp", "DH", "DhcpDefaultRoute"},
    {33, "M", "martian", "M", "internal"},
    {34, "DP", "dynamicPolicy", "DP", "dynamicPolicy"},
    {36, "", "", "", ""},
};

constexpr Row rows6[] = {
    {0, "", "", "", ""},
    {1, "C", "connected", "C", "internal"},
    {2, "C", "connected", "C", "internal"},
    {3, "", "", "", "attached"},
    {4, "S", "static", "S", "static"},
    {5, "K", "kernel", "K", "internal"},
    {6, "R", "RIP", "R", ""},
    {7, "C", "connected", "C", "connected"},
    {8, "", "", "", ""},
    {9, "A B", "bgpAggregate", "A", "aggregate"},
    {10, "A O", "ospfSummary", "A", "aggregate"},
    {11, "O3", "ospf", "O3", "ospfTotal"},
    {12, "B", "bgp", "B", "bgpTotal"},
    {13, "I L1", "isisL1", "I", "isisLevel1"},
    {14, "I L2", "isisL2", "I", "isisLevel2"},
    {15, "NG", "nexthopGroupStaticRoute", "S", "staticNexthopGroup"},
    {16, "S", "dropRoute", "S", "internal"},
    {17, "DH", "dhcp", "DH", "dhcp"},
    {18, "M", "martian", "M", "internal"},
    {19, "DP", "dynamicPolicy", "DP", "dynamicPolicy"},
    {21, "", "", "", ""},
};

template <class RouteType>
struct Expected;
template <>
struct Expected<V4> {
  static constexpr const auto& rows = rows4;
};
template <>
struct Expected<V6> {
  static constexpr const auto& rows = rows6;
};

template <class RouteType>
struct VocabularyTest : testing::Test {};
using Numberings = testing::Types<V4, V6>;
TYPED_TEST_SUITE(VocabularyTest, Numberings);

TYPED_TEST(VocabularyTest, EveryTypeHasItsFourTexts) {
  for (const Row& row : Expected<TypeParam>::rows) {
    const auto type = static_cast<TypeParam>(row.number);
    const auto& strings = Rova::routeTypeStringsLookup(type);
    EXPECT_STREQ(strings.protocolCode, row.protocolCode) << row.number;
    EXPECT_STREQ(strings.summaryWord, row.summaryWord) << row.number;
    EXPECT_STREQ(Rova::pcode(type), row.pcode) << row.number;
    EXPECT_STREQ(Rova::pcodeAsWord(type), row.pcodeWord) << row.number;
  }
}

TYPED_TEST(VocabularyTest, NumbersOutsideItStopTheProcess) {
  std::set<std::uint32_t> known;
  for (const Row& row : Expected<TypeParam>::rows) known.insert(row.number);
  for (const std::uint32_t number : {6u, 20u, 22u, 35u, 37u, 39u, 40u, 1000u, 0xffffffffu}) {
    if (known.count(number) != 0) continue;
    const auto type = static_cast<TypeParam>(number);
    EXPECT_DEATH(Rova::pcode(type), assertion("0 && \"unexpected RouteType\"")) << number;
    EXPECT_EQ(hcode(type), 'F') << number;
    EXPECT_STREQ(hcodeWord(type), "FIB") << number;
  }
}

TEST(HostCodeTest, EveryNumberHasACodeAndAWord) {
  struct Code {
    char code;
    const char* word;
  };
  const std::map<std::uint32_t, Code> special4 = {
      {0, {'-', "-"}},       {5, {'A', "attached"}},  {1, {'R', "receive"}},
      {2, {'R', "receive"}}, {3, {'B', "broadcast"}}, {4, {'D', "directedBcast"}},
      {11, {'R', "FIB"}}};
  const std::map<std::uint32_t, Code> special6 = {{0, {'-', "-"}},
                                                  {3, {'A', "attached"}},
                                                  {1, {'R', "receive"}},
                                                  {2, {'R', "receive"}},
                                                  {7, {'R', "FIB"}}};
  const auto check = [](auto type, const auto& special) {
    using RouteType = decltype(type);
    for (std::uint32_t number = 0; number < 64; ++number) {
      const auto found = special.find(number);
      const Code expected = found == special.end() ? Code{'F', "FIB"} : found->second;
      EXPECT_EQ(hcode(static_cast<RouteType>(number)), expected.code) << number;
      EXPECT_STREQ(hcodeWord(static_cast<RouteType>(number)), expected.word) << number;
    }
  };
  check(V4(), special4);
  check(V6(), special6);
}

template <class Route>
bool matches(std::uint32_t type, const char* protocol) {
  Route route;
  route.routeType = static_cast<typename Route::RouteType>(type);
  return Rova::protocolMatch(route, protocol);
}

// The command's filters show which types match; here what no command asks.
TEST(ProtocolMatchTest, ComparesWholeCodesAndAnEmptyOneNotAtAll) {
  EXPECT_TRUE(matches<Vanta::Fib::Route>(15, "O"));
  EXPECT_TRUE(matches<Vanta::Fib6::Route>(11, "O3"));
  for (const char* const protocol : {"O3", "D", "o", "OSPF", "ospfIntraArea"}) {
    EXPECT_FALSE(matches<Vanta::Fib::Route>(15, protocol)) << protocol;
    EXPECT_FALSE(matches<Vanta::Fib6::Route>(12, protocol)) << protocol;
  }
  EXPECT_TRUE(matches<Vanta::Fib::Route>(6, "")) << "its type is none";
  EXPECT_DEATH(matches<Vanta::Fib::Route>(6, "S"), assertion("0 && \"unexpected RouteType\""));
}

TEST(ProtocolCodeWordToCodeTest, TakesTheFirstWordThatTheTextBeginsWithAndNoOtherText) {
  const struct {
    const char* word;
    const char* code;
  } cases[] = {
      {"connected", "C"}, {"static", "S"},         {"ospfExternalType1", "O E1"},
      {"OSPF", "O"},      {"OSPFv3", "O"},         {"ospfInterArea and more", "O IA"},
      {"iBGP", "B I"},    {"eBGP", "B E"},         {"nexthopGroupStaticRoute", "NG"},
      {"dhcp", "DH"},     {"dynamicPolicy", "DP"}, {"RIPng", "R"},
  };
  for (const auto& [word, code] : cases)
    EXPECT_STREQ(Rova_protocolCodeWordToCode(word), code) << word;
  for (const char* const word : {"", "ospf", "isisL1", "stati", "Static"}) {
    EXPECT_DEATH(Rova_protocolCodeWordToCode(word), assertion("0 && \"Invalid string\"")) << word;
  }
}

TEST(RibRouteTypeTest, NamesTheActions) {
  const struct {
    Routing::RouteType type;
    const char* word;
    const char* code;
  } cases[] = {{Routing::RouteType::forward, "forward", "F"},
               {Routing::RouteType::drop, "drop", "D"},
               {Routing::RouteType::nexthopGroup, "nexthopGroup", "NG"}};
  for (const auto& [type, word, code] : cases) {
    EXPECT_STREQ(Rova::ribRouteType(type), word);
    EXPECT_STREQ(Rova::ribRouteTypeCode(type), code);
  }
  const auto fourth = static_cast<Routing::RouteType>(3);
  EXPECT_DEATH(Rova::ribRouteType(fourth), assertion("!\"Invalid Routing::RouteType argument\""));
  EXPECT_DEATH(Rova::ribRouteTypeCode(fourth),
               assertion("!\"Invalid Routing::RouteType argument\""));
}

} // namespace
