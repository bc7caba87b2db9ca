// The vocabulary of route types, held against tables that were written down apart from it.
#include "rova/CliSupport.h"
#include "support/Expect.h"
#include "support/RouteTypes.h"

#include <map>
#include <set>

namespace {

using namespace support;
using Rova::hcode;
using Rova::hcodeWord;
using V4 = Routing::Fib::RouteType;
using V6 = Routing6::Fib::RouteType;

template <class RouteType>
struct VocabularyTest : testing::Test {};
using Numberings = testing::Types<V4, V6>;
TYPED_TEST_SUITE(VocabularyTest, Numberings);

TYPED_TEST(VocabularyTest, EveryTypeHasItsFourTexts) {
  for (const RouteTypeRow& row : routeTypeRows<TypeParam>) {
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
  for (const RouteTypeRow& row : routeTypeRows<TypeParam>) known.insert(row.number);
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
