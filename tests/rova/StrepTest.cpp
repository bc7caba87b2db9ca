// Strep text of the library's types: what each writes, what is read back, what is refused.
#include "lumo/Reflect.h"
#include "support/Device.h"
#include "support/Expect.h"

#include <boost/container/small_vector.hpp>
#include <cstring>
#include <random>
#include <sstream>

namespace {

using namespace support;
using Lumo::GenericPtr;
using Lumo::RangeException;
using Lumo::valueToStrep;
using Lumo::wrapAttrValue;

Kesh::RouteDistinguisher rd(const std::string& text) {
  return parsed<Kesh::RouteDistinguisher>(text);
}

const Lumo::TypeRecord& typeNamed(const std::string& name) {
  const auto* const type = Lumo::typeNode("Rova::" + name);
  if (!type) throw std::invalid_argument("no type Rova::" + name);
  return *type;
}

// Values of the types that cannot be told in one expression.
Rova::CachedVia cachedVia() {
  Rova::CachedVia via;
  via.hopIs(addr("10.0.0.1"));
  via.intfIdIs(intf("Ethernet1"));
  via.isBackupIs(true);
  via.viaLabelIs(Kesh::MplsLabel(100));
  via.viaWeightIs("3");
  via.viaIndexIs(7);
  return via;
}

Rova::CachedNhgVia cachedNhgVia(std::uint32_t id, const Lumo::String& name) {
  Rova::CachedNhgVia via;
  via.nhgIdIs(id);
  via.nhgNameIs(name);
  return via;
}

Rova::AddressQueryResult queryResult(bool acceptable, const Lumo::String& msg) {
  Rova::AddressQueryResult result;
  result.acceptableIs(acceptable);
  result.msgIs(msg);
  return result;
}

Rova::PolicyInfoSet tenPolicies() {
  Rova::PolicyInfoSet set;
  for (std::uint16_t i = 0; i < 10; ++i) set.policyInfoIs(Rova::PolicyInfo(i, {}));
  return set;
}

Rova::NexthopInfo nexthopInfo() {
  Rova::NexthopInfo info;
  info.nexthopCmdIs(" 10.0.0.1");
  info.sortedViaIs({}, "x");
  return info;
}

Rova::StaticRoutesCliSaver saver() {
  Rova::StaticRoutesCliSaver saver;
  saver.sortedRouteIs({}, nexthopInfo());
  return saver;
}

Rova::RouteSortKey sortKey(const char* prefix, std::uint8_t preference) {
  return {Kesh::IpGenPrefix(Lumo::String(prefix)), preference};
}

struct Written {
  std::string text;
  std::string streamed;
  const char* expected;
};

template <class T>
Written written(const T& value, const char* expected) {
  std::ostringstream out;
  out << value;
  return {valueToStrep(value).str(), out.str(), expected};
}

TEST(StrepTextTest, EveryValueWritesItsOwn) {
  const Written cases[] = {
      written(Rova::CounterIndex(7, Dunlin::ChipSet(5, 1)),
              "Value('Rova::CounterIndex', ** {'counterIndex': 7, 'chipMask': "
              "Value('Dunlin::ChipSet', '00000000000000010000000000000005')})"),
      written(Rova::CounterEntry(0xffffffffffffffffu, 0),
              "Value('Rova::CounterEntry', ** {'packets': 18446744073709551615, 'bytes': 0})"),
      written(queryResult(false, "it's"),
              "Value('Rova::AddressQueryResult', ** {'acceptable': False, 'msg': 'it\\'s'})"),
      written(Rova::RovaConsts(200, 9, "n"),
              "Value('Rova::RovaConsts', ** {'defaultStaticRoutePreference': "
              "Value('Routing::RoutePreference', 200), 'defaultStaticRouteTag': 9, "
              "'defaultStaticRouteName': 'n'})"),
      written(sortKey("2001:db8::/32", 1),
              "Value('Rova::RouteSortKey', ** {'prefix': Value('Kesh::IpGenPrefix', "
              "'2001:db8::/32'), 'preference': Value('Routing::RoutePreference', 1)})"),
      written(nexthopInfo(),
              "Value('Rova::NexthopInfo', ** {'nexthopCmd': ' 10.0.0.1', 'sortedVia': None})"),
      written(cachedNhgVia(5, "west"),
              "Value('Rova::CachedNhgVia', ** {'nhgId': "
              "Value('Routing::NexthopGroup::NexthopGroupId', 5), 'nhgName': 'west'})"),
      written(cachedVia(),
              "Value('Rova::CachedVia', ** {'hop': Value('Kesh::IpGenAddr', '10.0.0.1'), "
              "'intfId': Value('Kesh::IntfId', 'Ethernet1'), 'isBackup': True, 'viaLabel': "
              "Value('Kesh::MplsLabel', 100), 'viaWeight': '3', 'viaIndex': 7})"),
      written(Rova::CachedVia(),
              "Value('Rova::CachedVia', ** {'hop': Value('Kesh::IpGenAddr', ''), 'intfId': "
              "Value('Kesh::IntfId', ''), 'isBackup': False, 'viaLabel': "
              "Value('Kesh::MplsLabel', 1048576), 'viaWeight': '', 'viaIndex': 0})"),
      written(
          Rova::SortedTunVia(addr("fe80::1"), intf("Vlan5"), Tunnel::TunnelTable::EncapId(7), {}),
          "Value('Rova::SortedTunVia', ** {'nexthop': Value('Kesh::IpGenAddr', 'fe80::1'), "
          "'intfId': Value('Kesh::IntfId', 'Vlan5'), 'encapId': "
          "Value('Tunnel::TunnelTable::EncapId', 7), 'tunnelFib': None})"),
      written(Rova::SortedTunViaSet(Tunnel::TunnelTable::TunnelId(3), {}),
              "Value('Rova::SortedTunViaSet', ** {'tunnelId': "
              "Value('Tunnel::TunnelTable::TunnelId', 3), 'tunnelFib': None, 'via': None})"),
      written(Rova::PolicyInfo(3, {{addr("10.0.0.1")}, 9}),
              "Value('Rova::PolicyInfo', ** {'index': 3, 'policyKey': "
              "Value('SrTePolicy::PolicyKey', ** {'endpoint': Value('SrTePolicy::EndPoint', ** "
              "{'address': Value('Kesh::IpGenAddr', '10.0.0.1')}), 'color': 9}), 'sortedVia': "
              "None, 'viaLabel': None, 'tunnelLabelStack': None, 'weight': None})"),
      written(Rova::RdAssignmentChecker({}, "red", rd("65000:7")),
              "Value('Rova::RdAssignmentChecker', ** {'routeDistinguisherInputDir': None, "
              "'vrfName': 'red', 'routeDistinguisher': Value('Kesh::RouteDistinguisher', "
              "'65000:7'), 'acceptable': True, 'errorMessage': ''})"),
      written(Rova::StaticRoutesRibCommon(),
              "Value('Rova::StaticRoutesRibCommon', ** {'sortedRoute': None, 'allIntfConfig': "
              "None, 'dynamic': False, 'fd': 0, 'fmt': 0, 'tag': 0, 'routeInputConf': None})"),
      written(Rova::RouteSummary(),
              "Value('Rova::RouteSummary', ** {'routingConfig': None, 'routingStatus': None, "
              "'arpVanta': None, 'vrfIdMap': None, 'vrfName': Value('L3::VrfName', ''), "
              "'routeCountByType': None, 'routeCountByMask': None, 'totalNumRoutes': 0})"),
      written(Rova::NexthopGroupSummaryHelper(),
              "Value('Rova::NexthopGroupSummaryHelper', ** {'nhgConfig': None, 'nhgEntryStatus': "
              "None, 'nhgHwStatus': None, 'routingHwStatus': None, 'vrfName': "
              "Value('L3::VrfName', 'default'), 'nhgCount': 0, 'nhgUnprogrammedCount': 0, "
              "'nhgPerType': None, 'nhgPerSize': None})"),
      written(Rova::PolicyInfoSet(), "None"),
      written(tenPolicies(), "None"),
      written(saver(), "None"),
      written(Rova::AddressAssignmentChecker(), ""),
      written(Rova::Address6AssignmentChecker(), ""),
      written(Rova::InvalidNextHopChecker(), ""),
      written(Rova::InvalidNextHop6Checker(), ""),
      written(Rova::ClearIntfRoutesAndViasHelper(), ""),
  };
  for (const auto& [text, streamed, expected] : cases) {
    EXPECT_EQ(text, expected);
    EXPECT_EQ(streamed, expected);
  }
  EXPECT_TRUE(!Rova::RouteSortKey());
  EXPECT_FALSE(!sortKey("10.0.0.0/8", 1));
}

using Random = std::mt19937_64;

Lumo::String randomText(Random& random) {
  std::string bytes;
  for (auto i = random() % 12; i > 0; --i) bytes += static_cast<char>(random());
  return bytes;
}

/// Mostly small, at times of all bits.
std::uint64_t number(Random& random) { return random() >> random() % 64; }

Kesh::IpGenAddr randomAddress(Random& random) {
  switch (random() % 3) {
  case 0:
    return Kesh::IpAddr::fromHost(static_cast<std::uint32_t>(random()));
  case 1:
    return Kesh::Ip6Addr::fromHalves(number(random), number(random));
  default:
    return {};
  }
}

Kesh::IpGenPrefix randomPrefix(Random& random) {
  const auto address = randomAddress(random);
  const auto length = [&](unsigned longest) { // -1 is that of the null prefix
    return static_cast<int>(random() % (longest + 2)) - 1;
  };
  if (address.af() == Kesh::AddressFamily::ip4) return Kesh::pfx(address.v4Addr(), length(32));
  if (address.af() == Kesh::AddressFamily::ip6) return Kesh::pfx(address.v6Addr(), length(128));
  return {};
}

/// Names, what only looks like an interface, and numbers that no name leads to.
Kesh::IntfId randomInterface(Random& random) {
  switch (random() % 4) {
  case 0:
    return Kesh::IntfId(Lumo::String("Port-Channel" + std::to_string(random() % 100) + ".7"));
  case 1:
    return Kesh::IntfId(randomText(random));
  case 2:
    return Kesh::FecIdIntfId::intfId(number(random));
  default:
    return Kesh::IntfId::fromValue(number(random));
  }
}

Kesh::RouteDistinguisher randomDistinguisher(Random& random) {
  const auto last = std::to_string(random() % 0x10000);
  if (random() & 1) return rd(std::to_string(random() % 0x100000000u) + ":" + last);
  return rd(Kesh::IpAddr::fromHost(static_cast<std::uint32_t>(random())).stringValue().str() + ":" +
            last);
}

/// A type that reads from text, with a maker of random values. Handles are held elsewhere.
struct Readable {
  const char* name;
  GenericPtr (*random)(Random& random);
};

const auto tunnelFib = Lumo::newEntity<Tunnel::TunnelFib::TunnelFib>();
const auto inputs = Lumo::newEntity<Lumo::Dir>();

GenericPtr randomCachedVia(Random& random) {
  Rova::CachedVia via;
  via.hopIs(randomAddress(random));
  via.intfIdIs(randomInterface(random));
  via.isBackupIs(random() & 1);
  via.viaLabelIs(Kesh::MplsLabel(static_cast<std::uint32_t>(random() % 0x800001)));
  via.viaWeightIs(randomText(random));
  via.viaIndexIs(static_cast<std::uint16_t>(random()));
  return wrapAttrValue(via);
}

// Encapsulations of a kind without a table cannot be compared: the top bits stay below 4.
GenericPtr randomTunnelVia(Random& random) {
  return wrapAttrValue(Rova::SortedTunVia(
      randomAddress(random), randomInterface(random),
      Tunnel::TunnelTable::EncapId(static_cast<std::uint32_t>(number(random)) & 0x3fffffff),
      random() & 1 ? Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>(tunnelFib) : nullptr));
}

GenericPtr randomChecker(Random& random) {
  Rova::RdAssignmentChecker checker(random() & 1 ? inputs : nullptr, randomText(random),
                                    randomDistinguisher(random));
  return wrapAttrValue(checker);
}

constexpr Readable readables[] = {
    {"CounterIndex",
     [](Random& r) {
       return wrapAttrValue(Rova::CounterIndex(number(r), Dunlin::ChipSet(number(r), number(r))));
     }},
    {"CounterEntry", [](Random& r) { return wrapAttrValue(Rova::CounterEntry(number(r), r())); }},
    {"AddressQueryResult",
     [](Random& r) { return wrapAttrValue(queryResult(r() & 1, randomText(r))); }},
    {"RovaConsts",
     [](Random& r) {
       return wrapAttrValue(Rova::RovaConsts(static_cast<std::uint8_t>(r()),
                                             static_cast<std::uint32_t>(r()), randomText(r)));
     }},
    {"RouteSortKey",
     [](Random& r) {
       return wrapAttrValue(Rova::RouteSortKey(randomPrefix(r), static_cast<std::uint8_t>(r())));
     }},
    {"CachedNhgVia",
     [](Random& r) {
       return wrapAttrValue(cachedNhgVia(static_cast<std::uint32_t>(r()), randomText(r)));
     }},
    {"CachedVia", randomCachedVia},
    {"SortedTunVia", randomTunnelVia},
    {"RdAssignmentChecker", randomChecker},
    {"AddrMatchType",
     [](Random& r) { return wrapAttrValue(static_cast<Rova::AddrMatchType>(r() % 3)); }},
    {"AddressAssignmentChecker",
     [](Random&) { return wrapAttrValue(Rova::AddressAssignmentChecker()); }},
    {"Address6AssignmentChecker",
     [](Random&) { return wrapAttrValue(Rova::Address6AssignmentChecker()); }},
    {"InvalidNextHopChecker", [](Random&) { return wrapAttrValue(Rova::InvalidNextHopChecker()); }},
    {"InvalidNextHop6Checker",
     [](Random&) { return wrapAttrValue(Rova::InvalidNextHop6Checker()); }},
    {"ClearIntfRoutesAndViasHelper",
     [](Random&) { return wrapAttrValue(Rova::ClearIntfRoutesAndViasHelper()); }},
};

constexpr const char* withCollections[] = {
    "SortedTunViaSet", "PolicyInfo",           "PolicyInfoSet",
    "NexthopInfo",     "StaticRoutesCliSaver", "StaticRoutesRibCommon",
    "RouteSummary",    "Route6Summary",        "NexthopGroupSummaryHelper"};

TEST(StrepReadTest, TheListsHoldEveryTypeButTheEntities) {
  std::size_t values = 0;
  for (const auto* const type : Lumo::typeNodes()) values += !type->isEntity();
  EXPECT_EQ(values, std::size(readables) + std::size(withCollections));
  for (const auto& [name, random] : readables) EXPECT_TRUE(typeNamed(name).isReadable()) << name;
}

class ReadableTest : public testing::TestWithParam<Readable> {
 protected:
  const Lumo::TypeRecord& type = typeNamed(GetParam().name);
  Random random{7};
};
INSTANTIATE_TEST_SUITE_P(Types, ReadableTest, testing::ValuesIn(readables),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(ReadableTest, GivesTheValueThatWasWritten) {
  for (int i = 0; i < 500; ++i) {
    const auto value = GetParam().random(random);
    const auto text = value->strRep();
    const auto back = Lumo::fromStrep(type, text);
    ASSERT_EQ(back->strRep(), text);
    const auto equal = Lumo::operate(*back, {nullptr, Lumo::OpCode::equal}, value);
    ASSERT_TRUE(Lumo::unwrap<bool>(equal)) << text;
    EXPECT_FALSE(back->constant());
    EXPECT_TRUE(type.FromStrRep(type, text, true)->constant());
  }
}

/// Texts that differ from `text` in one character, which is changed, dropped or added at `at`.
std::vector<std::string> damagedAt(const std::string& text, std::size_t at) {
  std::vector<std::string> damaged;
  for (const char c : std::string_view("01aA'\\ {}:,x-\0", 14)) {
    damaged.push_back(std::string(text).insert(at, 1, c));
    if (at < text.size() && text[at] != c)
      damaged.push_back(std::string(text).replace(at, 1, 1, c));
  }
  if (at < text.size()) damaged.push_back(std::string(text).erase(at, 1));
  return damaged;
}

/// Where the text ends that a value is bound to: a checker works out what stands behind.
std::size_t boundEnd(const std::string& text) {
  return std::min(text.find("'acceptable': True"), text.size());
}

TEST_P(ReadableTest, RefusesADamagedTextOrReadsAnotherValue) {
  for (int i = 0; i < 3; ++i) {
    const auto text = GetParam().random(random)->strRep().str();
    std::size_t refused = 0;
    for (std::size_t at = 0; at <= text.size(); ++at) {
      for (const auto& damaged : damagedAt(text, at)) {
        try {
          const auto value = Lumo::fromStrep(type, damaged);
          ASSERT_TRUE(at >= boundEnd(text) || value->strRep() == std::string_view(damaged))
              << damaged;
        } catch (const RangeException&) {
          ++refused;
        }
      }
    }
    EXPECT_GT(refused, 2 * text.size());
  }
}

/// `text` with its one `part` replaced.
std::string with(std::string text, std::string_view part, std::string_view instead) {
  const auto at = text.find(part);
  if (at == text.npos) throw std::invalid_argument("no " + std::string(part) + " in " + text);
  return text.replace(at, part.size(), instead);
}

struct Refused {
  GenericPtr value;
  const char* part;
  const char* instead;
  const char* message;
};

/// What the forms of all types refuse stands in tests/lumo/StrepTest.cpp.
TEST(StrepReadTest, ErrorsNameAttributeAndPosition) {
  const auto key = wrapAttrValue(sortKey("10.0.0.0/8", 1));
  const auto match = wrapAttrValue(Rova::AddrMatchType::allowNoMatch);
  const auto counts = wrapAttrValue(Rova::CounterEntry(7, 8));
  const auto via = wrapAttrValue(cachedVia());
  const auto checker = wrapAttrValue(Rova::RdAssignmentChecker({}, "red", rd("65000:7")));
  const Refused cases[] = {
      {key, "Value('Rova::RouteSortKey', ** {'p", "Value('Rova::RouteSortKey', ** {'P",
       "position 32: expected '\\'prefix\\': ', found '\\'Prefix\\': Value(\\'Kes'..."},
      {key, "1)})", "256)})",
       "attribute preference, position 98: 256 is outside the range of Routing::RoutePreference"},
      {key, "10.0.0.0/8", "10.0.0.1/8",
       "attribute prefix, position 42: not the text of a Kesh::IpGenPrefix"},
      {match, "'allowNoMatch'", "7", "position 0: expected a text in quotes"},
      {counts, "8", "18446744073709551616",
       "attribute bytes, position 55: expected a number of type U64"},
      {via, "100", "8388609",
       "attribute viaLabel, position 150: MplsLabel::value < MplsLabel::min or > "
       "MplsLabel::luWithdraw not allowed"},
      {via, "10.0.0.1", "10.0.0.01",
       "attribute hop, position 36: not the text of a Kesh::IpGenAddr"},
      {checker, "65000:7", "1:2:3",
       "attribute routeDistinguisher, position 115: not the text of a Kesh::RouteDistinguisher"},
      {checker, "Dir': None", "Dir': Ptr('Lumo::Dir', 0x10)",
       "attribute routeDistinguisherInputDir, position 88: no Lumo::Dir of this process stands "
       "there"},
  };
  for (const auto& [value, part, instead, message] : cases) {
    const auto text = with(value->strRep().str(), part, instead);
    const auto& type = value->type();
    EXPECT_EQ(messageOf<RangeException>([&] { Lumo::fromStrep(type, text); }), message) << text;
  }
}

TEST(StrepReadTest, StatelessTypesReadNothing) {
  for (const char* name :
       {"AddressAssignmentChecker", "Address6AssignmentChecker", "InvalidNextHopChecker",
        "InvalidNextHop6Checker", "ClearIntfRoutesAndViasHelper"}) {
    const auto& type = typeNamed(name);
    EXPECT_EQ(Lumo::fromStrep(type, "")->strRep().str(), "");
    EXPECT_EQ(messageOf<RangeException>([&] { Lumo::fromStrep(type, "None"); }),
              "position 0: expected the end, found 'None'");
  }
  const std::string_view text = "anything";
  auto at = Lumo::StringIterator::begin(text);
  const Rova::InvalidNextHopChecker checker(at, Lumo::StringIterator::end(text));
  EXPECT_EQ(at.position(), 0u) << "it succeeds on any text and leaves it";
}

TEST(StrepReadDeathTest, ATypeWithACollectionStopsTheProcess) {
  for (const std::string name : withCollections) {
    const auto text = "!\"No String constructor for " + name + " - has collection\"";
    EXPECT_DEATH(Lumo::fromStrep(typeNamed(name), "None"), assertion(text)) << name;
  }
}

TEST(StrepReadTest, ACheckerFromTextChecks) {
  const auto dir = Lumo::newEntity<Lumo::Dir>();
  const auto input = Lumo::newEntity<Ip::RouteDistinguisherInput>();
  input->routeDistinguisher.insertOrAssign("blue", rd("65000:7"));
  const auto text = valueToStrep(Rova::RdAssignmentChecker(dir, "red", rd("65000:7"))).str();
  const auto read = [&](const std::string& from) {
    return Lumo::unwrap<Rova::RdAssignmentChecker>(
        Lumo::fromStrep(Rova::RdAssignmentChecker::lumoType, from));
  };
  EXPECT_TRUE(read(with(text, "'acceptable': True", "'acceptable': False")).acceptable());
  dir->entityIs("agent", input);
  const auto checker = read(with(text, "'errorMessage': ''", "'errorMessage': 'old'"));
  EXPECT_FALSE(checker.acceptable());
  EXPECT_EQ(checker.errorMessage().str(), "RD 65000:7 already in use by VRF blue");
  EXPECT_TRUE(checker.routeDistinguisherInputDir() == dir);
}

TEST(StrepReadTest, AHandleIsFollowedWhileItsEntityLives) {
  auto fib = Lumo::newEntity<Tunnel::TunnelFib::TunnelFib>();
  const auto& type = Rova::SortedTunVia::lumoType;
  const auto text = valueToStrep(Rova::SortedTunVia({}, {}, {}, fib)).str();
  const auto back = Lumo::unwrap<Rova::SortedTunVia>(Lumo::fromStrep(type, text));
  EXPECT_TRUE(back.tunnelFib() == fib);
  EXPECT_EQ(fib->references(), 2u);
  const auto other = Lumo::newEntity<Lumo::Dir>();
  const auto wrong = with(valueToStrep(other).str(), "Lumo::Dir", "Tunnel::TunnelFib::TunnelFib");
  const auto named = valueToStrep(fib).str();
  EXPECT_THROW(Lumo::fromStrep(type, with(text, named, wrong)), RangeException);
}

/// The hash of the bytes in memory order, one at a time, in 32 bits.
std::uint32_t oneAtATime(const std::vector<std::uint8_t>& bytes) {
  std::uint32_t hash = 0;
  for (const std::uint8_t byte : bytes) {
    hash = (hash + byte) * 1025;
    hash ^= hash >> 6;
  }
  hash *= 9;
  hash ^= hash >> 11;
  return hash * 32769;
}

TEST(CounterIndexTest, HashesItsBytesInMemoryOrder) {
  std::vector<std::uint8_t> bytes(24);
  EXPECT_EQ(oneAtATime({'a'}), 0xca2e9442u) << "a published value of this hash";
  Random random(3);
  for (int i = 0; i < 100; ++i) {
    const std::uint64_t words[3] = {random(), random(), random()};
    std::memcpy(bytes.data(), words, sizeof words);
    const Rova::CounterIndex index(words[0], Dunlin::ChipSet(words[1], words[2]));
    ASSERT_EQ(index.hash(), oneAtATime(bytes));
    ASSERT_EQ(wrapAttrValue(index)->hash(), index.hash());
  }
}

} // namespace
