// Reading configuration lines of static routes, held against the saver that writes them.
#include "command/StaticLineParser.h"
#include "lumo/ActivityLock.h"
#include "rova/CliSupport.h"
#include "sources/SourceError.h"
#include "sources/snapshot/Snapshot.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>

namespace {

using namespace command;
using Routing::RouteType;

std::string saved(const Lumo::Ptr<Routing::ConfigGen>& config, const std::string& start) {
  return Rova::StaticRoutesCliSaver().save(config, false, Lumo::String(start), {}).str();
}

/// The configuration that the lines make.
Lumo::Ptr<Routing::ConfigGen> parsed(const std::string& lines) {
  const auto config = Lumo::newEntity<Routing::ConfigGen>();
  for (std::size_t at = 0; at < lines.size();) {
    const auto end = lines.find('\n', at);
    enterStaticLine(parseStaticLine(std::string_view(lines).substr(at, end - at)), *config);
    at = end + 1;
  }
  return config;
}

// The other pieces are tested by what the saver makes of them.
TEST(StaticLineTest, ReadsFamilyAndVrf) {
  const auto line = parseStaticLine("ip route vrf red 10.0.0.0/8 Ethernet1");
  EXPECT_FALSE(line.ip6);
  EXPECT_EQ(line.vrf, "red");
  const auto line6 = parseStaticLine("ipv6 route 2001:db8::/32 Null0");
  EXPECT_TRUE(line6.ip6);
  EXPECT_EQ(line6.vrf, "default");
}

TEST(StaticLineTest, SaysWhatIsWrongAndWhere) {
  const struct {
    const char* line;
    std::size_t column;
    const char* message;
  } cases[] = {
      {"route 10.0.0.0/8 Null0", 0, "\"route\": expected ip"},
      {"ip route", 8, "expected an IPv4 prefix without bits behind its mask here"},
      {"ip route 10.0.0.1/8 Null0", 9,
       "\"10.0.0.1/8\": expected an IPv4 prefix without bits behind its mask"},
      {"ip route 10.0.0.0/8", 19, "expected an interface or a next hop here"},
      {"ip route 10.0.0.0/8 leak vrf red", 19, "expected an interface or a next hop here"},
      {"ip route 10.0.0.0/8 5", 20, "\"5\": expected an interface or a next hop"},
      {"ip route 10.0.0.0/8 0.0.0.0", 20, "\"0.0.0.0\": a next hop is an address other than zero"},
      {"ip route 10.0.0.0/8 Ethernet1 256", 30, "\"256\": expected a number from 0 to 255"},
      {"ip route 10.0.0.0/8 10.0.0.1 label 1048576", 35,
       "\"1048576\": expected a number from 0 to 1048575"},
      {"ip route 10.0.0.0/8 10.0.0.1 track", 34, "expected bfd here"},
      {"ip route 10.0.0.0/8 10.0.0.1 vtep 10.0.0.2 vni 1 router-mac-address 00:00:00:00:00:01", 29,
       "\"vtep\": a via has a next hop or a VXLAN endpoint, not both"},
      {"ip route 10.0.0.0/8 Null0 Ethernet1", 26, "\"Ethernet1\": nothing is expected here"},
      {"ip route 10.0.0.0/8 Ethernet1 Ethernet2", 30, "\"Ethernet2\": nothing is expected here"},
      {"ip route 10.0.0.0/8 Null0 name a\x1b[2J", 32,
       "\"a\x1b[2J\": expected a name without control characters"},
      {"ip route 10.0.0.0/8 Nexthop-Group a\xe2\x80\xae", 35,
       "\"a\xe2\x80\xae\": expected a name without control characters"},
      {"ip route 10.0.0.0/8 Ethernet1 10.0.0.1 leak vrf a\tb", 49,
       "expected no white space but blanks, and no NUL"},
      {"ip route 10.0.0.0/8 Ethernet1 name core\r", 39,
       "expected no white space but blanks, and no NUL"},
  };
  for (const auto& one : cases) {
    try {
      parseStaticLine(one.line);
      ADD_FAILURE() << one.line;
    } catch (const LineError& error) {
      EXPECT_STREQ(error.what(), one.message) << one.line;
      EXPECT_EQ(error.column, one.column) << one.line;
    }
  }
}

TEST(StaticLineTest, LinesOfOneRouteMustAgree) {
  const auto config = parsed("ip route 10.0.0.0/8 Ethernet1 tag 7\n");
  const auto enter = [&](const char* line) { enterStaticLine(parseStaticLine(line), *config); };
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Ethernet2 tag 8"), LineError);
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Null0 tag 7"), LineError);
  EXPECT_THROW(enter("ip route 10.0.0.0/8 Ethernet2 tag 7 leak vrf red"), LineError);
  enter("ip route 10.0.0.0/8 Ethernet2 tag 7");
  EXPECT_EQ(config->route.find({Kesh::IpGenPrefix("10.0.0.0/8"), 1})->ptr()->via.size(), 2u);
}

// Every piece that a line may have, alone and together, in the order of the saver.
TEST(StaticLineTest, WhatTheSaverWritesReadsBackTheSame) {
  const Lumo::ActivityLockHold hold;
  const std::string lines =
      "ip route 10.0.0.0/8 10.0.0.1\n"
      "ip route 10.0.0.0/8 Ethernet1\n"
      "ip route 10.0.0.0/8 Ethernet1 10.0.0.1 label 100 track bfd name core\n"
      "ip route 10.0.0.0/8 Ethernet2 vtep 10.0.0.9 vni 10 router-mac-address 00:1c:73:00:00:01\n"
      "ip route 10.0.0.0/8 Ethernet3 track bfd\n"
      "ip route 10.0.0.0/8 10.0.0.1 5 tag 7\n"
      "ip route 10.0.0.0/8 Ethernet1 5 tag 7 name to the core\n"
      "ip route 10.0.0.0/9 10.0.0.1 label 0 5 tag 4294967295 name core leak vrf red\n"
      "ip route 10.0.0.0/9 vtep 10.0.0.9 vni 0 router-mac-address 00:00:00:00:00:00 6 name far\n"
      "ip route 10.1.0.0/16 Nexthop-Group west\n"
      "ip route 10.1.0.0/16 Nexthop-Group west 5 tag 7\n"
      "ip route 10.2.0.0/16 Nexthop-Group\n"
      "ip route 10.3.0.0/16 Null0\n"
      "ip route 10.3.0.0/16 Null0 255 tag 9 name spare\n"
      "ip route 10.4.0.0/16 Ethernet1 leak vrf blue\n";
  EXPECT_EQ(saved(parsed(lines), "ip route "), lines);
}

/// Names made of what lines are made of, and of what nobody can type.
class RandomNames {
 public:
  /// As a text of JSON, without its quotes.
  std::string next() {
    static constexpr const char* pieces[] = {
        "core", "tag",     "track",   "vtep",  "name",          "leak",     "vrf",
        "7",    "Null0",   "label",   "bfd",   "Nexthop-Group", "10.0.0.1", "2001:db8::1",
        " ",    " ",       " ",       " ",     "4294967296",    "-",        "\xc3\xbc",
        "\\n",  "\\u0000", "\\u001b", "\\\\x",
    };
    std::string name;
    for (auto left = random_() % 5; left > 0; --left) name += pieces[random_() % std::size(pieces)];
    return name;
  }
  bool flip() { return random_() % 2 == 0; }

 private:
  std::mt19937 random_{7};
};

std::string member(const char* key, const std::string& text) {
  return ", \"" + std::string(key) + "\": \"" + text + "\"";
}

/// A snapshot of one configured route of each kind, in a VRF of a random name.
std::string randomSnapshot(RandomNames& names) {
  std::string via = R"({"hop": "10.9.0.1")";
  if (names.flip()) via += member("interface", names.next());
  if (names.flip()) via += member("name", names.next());
  std::string forward = R"({"prefix": "10.0.0.0/8", "vias": [)" + via + "}]";
  if (names.flip()) forward += member("leakVrf", names.next());
  return R"({"rovaSnapshot": 1, "vrfs": {"v)" + names.next() +
         R"(": {"id": 1, "routingConfig": {"routes": [)" + forward +
         R"(}, {"prefix": "10.1.0.0/16", "type": "drop")" +
         member("dropName", names.flip() ? names.next() : "") +
         R"(}, {"prefix": "10.2.0.0/16", "type": "nexthopGroup")" +
         member("nexthopGroup", names.flip() ? names.next() : "") + "}]}}}}";
}

std::optional<state::DeviceState> loaded(const std::string& snapshot) {
  try {
    return sources::snapshot::loadText(snapshot, "random");
  } catch (const sources::SourceError&) {
    return {};
  }
}

TEST(StaticLineTest, WhatASnapshotMayHoldReadsBackTheSame) {
  const Lumo::ActivityLockHold hold;
  RandomNames names;
  int accepted = 0;
  for (int i = 0; i < 4000; ++i) {
    const auto text = randomSnapshot(names);
    auto device = loaded(text);
    if (!device) continue;
    ++accepted;
    const auto before = sources::snapshot::saveText(*device);
    auto& vrf = device->vrfs.back();
    const auto name = vrf.name.stringValue().str();
    const auto lines = saved(vrf.routingConfig, "ip route vrf " + name + " ");
    ASSERT_NO_THROW(vrf.routingConfig = parsed(lines)) << text << '\n' << lines;
    EXPECT_EQ(parseStaticLine(lines.substr(0, lines.find('\n'))).vrf, name) << lines;
    ASSERT_EQ(sources::snapshot::saveText(*device), before) << lines;
  }
  EXPECT_GT(accepted, 100);
  EXPECT_LT(accepted, 3800);
}

// What looks like other parts of a line and is none where it stands.
TEST(StaticLineTest, NamesThatReadBackAreAccepted) {
  const std::string start = R"({"rovaSnapshot": 1, "vrfs": {"red": {"id": 1, "routingConfig": )"
                            R"({"routes": [{"prefix": "10.0.0.0/8", )";
  for (const char* const rest : {
           R"("vias": [{"interface": "eth\u001b0", "name": "tag 7"}])",
           R"("vias": [{"interface": "label", "name": "leak vrf"}])",
           R"("vias": [{"interface": "4294967296", "name": "leak vrf a"}], "leakVrf": "a\u001b")",
           R"("type": "drop", "dropName": "tag 7 leak vrf red ")",
           R"("type": "nexthopGroup", "nexthopGroup": "\u00fcber")",
       }) {
    EXPECT_TRUE(loaded(start + rest + "}]}}}}")) << rest;
  }
}

} // namespace
