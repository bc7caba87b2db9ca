// State databases: what goes in comes out, rows that stay the same stay, one state is one state,
// and what is damaged is told.
#include "sources/database/Database.h"

#include "sources/database/Lock.h"
#include "sources/database/TableWriter.h"
#include "sources/snapshot/Snapshot.h"
#include "state/DeviceBuilder.h"
#include "support/Expect.h"
#include "support/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace sources;
namespace fs = std::filesystem;
using support::messageOf;
using support::TemporaryFolder;
using Tembra::CorruptionDetectedException;

// 10.1.0.0/16 and 10.0.0.0/8 lead to a FEC of two vias, 2001:db8::/32 to one of IPv6.
constexpr const char* someState = R"({
 "rovaSnapshot": 1,
 "vrfs": {
  "default": {
   "routingConfig": {"routes": [
    {"prefix": "0.0.0.0/0", "vias": [{"hop": "10.9.9.9"}]},
    {"prefix": "10.5.0.0/16", "vias": [{"hop": "10.9.9.8"}]}]},
   "routingStatus": {
    "10.1.0.0/16": {"type": "static", "fec": "0.1"},
    "10.0.0.0/8": {"type": "bgpExternal", "fec": "0.1", "metric": 5}},
   "routing6Status": {"2001:db8::/32": {"type": "static", "fec": "1.2"}}},
  "red": {"id": 7, "routingStatus": {"10.0.0.0/8": {"type": "static", "fec": "0.3"}}}},
 "forwardingStatus": {
  "0.1": {"vias": [{"hop": "10.0.0.1", "interface": "Ethernet1"}, {"hop": "10.0.0.2", "interface": "uplink"}]},
  "0.3": {}},
 "forwarding6Status": {"1.2": {"vias": [{"hop": "fe80::1", "interface": "Ethernet1"}]}}
})";

state::DeviceState deviceOf(const std::string& text) { return snapshot::loadText(text, "test"); }

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

struct DatabaseTest : testing::Test {
  TemporaryFolder folder;
  const std::string path = folder.path / "state.db";

  void save(const std::string& text) { database::save(deviceOf(text), "test", path); }
  void alter(const std::string& statements) {
    database::Connection(path, database::Access::write).execute(statements);
  }
  std::string number(const std::string& query) {
    return std::to_string(database::Connection(path, database::Access::read).number(query));
  }
};

TEST_F(DatabaseTest, GivesBackWhatSnapshotsHold) {
  int kept = 0;
  for (const auto& entry : fs::recursive_directory_iterator(ROVA_TESTS)) {
    if (entry.path().extension() != ".json" || entry.path().string().ends_with("schema.json"))
      continue;
    const auto text = support::fileText(entry.path());
    if (!text.starts_with("{\n \"rovaSnapshot\"")) continue;
    const auto device = snapshot::loadText(text, entry.path());
    try {
      database::save(device, "test", path);
    } catch (const SourceError& error) {
      // Types and kinds without a word, and IPv6 routes without a FEC.
      const std::string what = error.what();
      EXPECT_TRUE(what.find(", route ") + 1 || what.find(": tunnel ") + 1) << what;
      continue;
    }
    ++kept;
    EXPECT_EQ(snapshot::saveText(database::load(path).device), snapshot::saveText(device))
        << entry.path();
  }
  EXPECT_GT(kept, 25);
}

TEST_F(DatabaseTest, LeavesAloneWhatStaysTheSame) {
  save(someState);
  alter("update route4 set since = 1; update route6 set since = 1");
  database::Writer writer(path, database::Log::joined);
  const auto changes = writer.replace(
      deviceOf(replaced(replaced(someState, "\"metric\": 5", "\"metric\": 6"),
                        "\"10.1.0.0/16\": {\"type\": \"static\", \"fec\": \"0.1\"},", "")),
      {});
  EXPECT_EQ(changes.entered, 1u);
  EXPECT_EQ(changes.removed, 1u);
  EXPECT_EQ(number("select count(*) from route4 where since = 1"), "1") << "that of VRF red";
  EXPECT_EQ(number("select count(*) from route6 where since = 1"), "1");
  EXPECT_EQ(number("select count(*) from route4"), "2");
}

TEST_F(DatabaseTest, ForgetsAVrfThatIsGone) {
  save(someState);
  const std::string text = someState;
  const auto red = text.find(",\n  \"red\""), end = text.find("}},\n \"forwardingStatus\"");
  save(text.substr(0, red) + text.substr(end + 1));
  EXPECT_EQ(number("select count(*) from route4 where vrf = 7"), "0");
  EXPECT_EQ(database::load(path).device.vrfs.size(), 1u);
}

TEST_F(DatabaseTest, ReadsTheConfiguredRoutesThatListingsAskFor) {
  save(someState);
  Needs needs;
  needs.configured = false;
  const auto state = database::load(path, needs);
  EXPECT_EQ(state.device.vrfs[0].routingConfig->route.size(), 1u) << "that of the default route";
  EXPECT_EQ(database::load(path).device.vrfs[0].routingConfig->route.size(), 2u);
}

TEST_F(DatabaseTest, IsOneStateWhileItIsHeldAndTheNewestBehindThat) {
  save(someState);
  database::Writer writer(path, database::Log::kept); // its log stands while it reads
  const auto state = database::load(path);
  const auto& routes = state.device.vrfs[0].routingStatus->route;
  const auto isThere = [&] {
    bool found = false;
    routes.safeLookup(*Kesh::Prefix::parse("10.1.0.0/16"), found, 0);
    return found;
  };
  writer.replace(deviceOf(replaced(someState, "\"10.1.0.0/16\"", "\"10.2.0.0/16\"")), {});
  EXPECT_TRUE(isThere());
  state.release();
  usleep(2 * 1000 * std::chrono::milliseconds(database::Session::longestUse).count());
  EXPECT_FALSE(isThere());
}

TEST_F(DatabaseTest, LooksUpInOrderWithoutMissingAnything) {
  state::DeviceBuilder builder;
  std::vector<Kesh::Prefix> missing;
  for (std::uint32_t i = 0; i < 3000; ++i) {
    const auto prefix = Kesh::pfx(0x0a000000 + i * 7 % 3000 * 256, 24);
    if (i % 3 == 0) builder.hardwareUnprogrammed(prefix, Vrf::VrfIdMap::VrfId(0));
  }
  database::save(builder.state, "test", path);
  const auto state = database::load(path);
  const auto& now = state.device.unprogrammedRouteStatus->unprogrammedRoute;
  const auto& before = builder.state.unprogrammedRouteStatus->unprogrammedRoute;
  for (const std::uint32_t step : {1u, 2u, 5u, 2999u, 7u}) {
    for (std::uint32_t i = 0, at = 0; i < 3000; ++i, at = (at + step) % 3000) {
      bool found = false, expected = false;
      const auto prefix = Kesh::pfx(0x0a000000 + at * 256, 24);
      now.safeLookup({prefix, Vrf::VrfIdMap::VrfId(0)}, found, 0);
      before.safeLookup({prefix, Vrf::VrfIdMap::VrfId(0)}, expected, 0);
      ASSERT_EQ(found, expected) << prefix.stringValue().str() << " by steps of " << step;
    }
  }
}

/// What walking all tables of the file raises.
std::string readingMessage(const std::string& path) {
  return messageOf<CorruptionDetectedException>(
      [&] { snapshot::saveText(database::load(path).device); });
}

TEST_F(DatabaseTest, TellsOfRowsThatNoWriterMakes) {
  const struct {
    const char* damage;
    const char* message;
  } cases[] = {
      {"update route4 set type = 'x' where last = 184549375 and vrf = 0",
       "route4 behind 10.1.0.0/16: type: found a text, expected a number"},
      {"update route4 set type = 35 where vrf = 7",
       "route4: type: found 35, expected a type that has a word"},
      {"update route4 set preference = 256 where vrf = 7",
       "route4: preference: found 256, expected a number from 0 to 255"},
      {"update route4 set metric = -1 where vrf = 7",
       "route4: metric: found -1, expected a number from 0 to 4294967295"},
      {"update route4 set fec = 20 << 56 where vrf = 7",
       "route4: fec: found 1441151880758558720, expected a number from 0 to 1441151880758558719"},
      {"update route4 set rest = 33 where vrf = 7",
       "route4: rest: found 33, expected a number from 0 to 32"},
      {"update route4 set last = last - 1 where vrf = 7",
       "route4: last: found an address that is not the last of a prefix, expected one with 24 bits "
       "set at its end"},
      {"update route6 set last = x'20'", "route6: last: found bytes, expected 16 bytes"},
      {"update route6 set fec = 0", "route6: fec: found 0, expected a FEC"},
      {"delete from fec6", "route6: fec: found 72057594037927938, which has no row"},
      {"update fec4_via set place = 2 where place = 1", "fec4: place: found 2, expected 1"},
      {"update fec4_via set hop = 1 << 32 where place = 1",
       "fec4: hop: found 4294967296, expected a number from 0 to 4294967295"},
      {"update fec6_via set hop = 'fe80::1%'", "fec6: hop: found a text, expected an IPv6 address"},
      {"update fec4 set backup = 512", "fec4: backup: found 512, expected a number from 0 to 511"},
      {"update interface set name = 'other' where name = 'uplink'",
       "fec4: interface: found the name of another one"},
      {"delete from interface where name = 'uplink'", "fec4: interface: found -"},
  };
  for (const auto& [damage, message] : cases) {
    fs::remove(path);
    save(someState);
    alter(damage);
    EXPECT_NE(readingMessage(path).find(std::string(" ") + message), std::string::npos)
        << damage << "\n"
        << readingMessage(path) << "\n"
        << message;
  }
}

TEST_F(DatabaseTest, IsNotOpenedWhenItIsNoWholeDatabaseOfThisVersion) {
  save(someState);
  const auto whole = support::fileText(path);
  const auto opened = [&] { return messageOf<SourceError>([&] { database::load(path); }); };
  const struct {
    const char* damage;
    std::string message;
  } cases[] = {
      {"pragma user_version = 0",
       ": written by version 0 of the state database, and this program "
       "reads version 3: restart rova-agent, which starts the file anew"},
      {"pragma user_version = 4", ": written by version 4 of the state database, and this program "
                                  "reads version 3: update rova, or restart it if it was updated"},
      {"pragma application_id = 1", ": found another database, expected one of rova-agent"},
      {"drop view ip_route", ": damaged: its tables are not those of version 3"},
      {"drop view ip_route; create view ip_route as select 1",
       ": damaged: its tables are not those of version 3"},
      {"update vrf set id = -1 where name = 'red'",
       ": damaged: id: found -1, expected a number from 0 to 16777214"},
      {"update section set json = '{' where 0; insert into section values ('ipStatus', '{\"Et')",
       ": line 1, column "},
      {"insert into meta values ('boot', 5) on conflict do update set value = 5",
       ": damaged: boot: found 5, expected a text"},
  };
  for (const auto& [damage, message] : cases) {
    std::ofstream(path, std::ios::trunc) << whole;
    alter(damage);
    EXPECT_TRUE(opened().starts_with(path + message)) << damage << "\n" << opened();
  }
  std::ofstream(path, std::ios::trunc) << whole.substr(0, 5000);
  EXPECT_TRUE(opened().starts_with(path + ": database disk image is malformed")) << opened();
  fs::remove(path);
  EXPECT_EQ(opened(), path + ": cannot be read: No such file or directory");
}

TEST_F(DatabaseTest, HasOneWriterAtATime) {
  int ready[2], done[2];
  ASSERT_EQ(pipe(ready) + pipe(done), 0);
  const pid_t child = fork();
  if (child == 0) {
    const database::WriterLock lock(path);
    char byte = 1;
    static_cast<void>(write(ready[1], &byte, 1));
    static_cast<void>(read(done[0], &byte, 1));
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  const auto writer = database::liveWriter(path);
  ASSERT_TRUE(writer);
  EXPECT_EQ(writer->process, child);
  EXPECT_EQ(messageOf<SourceError>([&] { save(someState); }),
            path + ": process " + std::to_string(child) + " writes it; stop that one first");
  ASSERT_EQ(write(done[1], &byte, 1), 1);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(database::liveWriter(path));
  save(someState);
}

/// The entries behind a number, as "WHAT KEY".
std::vector<std::string> logged(const std::string& path, std::int64_t seq) {
  const auto session = std::make_shared<database::Session>(path, database::Access::read);
  std::vector<std::string> lines;
  database::LogReader(session).read(seq, [&](const database::LoggedChange& change) {
    EXPECT_EQ(change.seq, ++seq);
    const auto vrf = " " + std::to_string(change.vrf.value()) + " ";
    lines.push_back(std::to_string(static_cast<int>(change.what)) + " " + change.name);
    if (change.family == 4) lines.back() += vrf + change.prefix.stringValue().str();
    if (change.family == 6) lines.back() += vrf + change.prefix6.stringValue().str();
    if (!change.fec.isNull()) lines.back() += std::to_string(change.fec.value());
  });
  return lines;
}

std::int64_t lastLogged(const std::string& path) {
  const auto session = std::make_shared<database::Session>(path, database::Access::read);
  return database::LogReader(session).range().last;
}

TEST_F(DatabaseTest, ItsLogTellsWhatChanges) {
  using Lines = std::vector<std::string>;
  database::Facts ofAgent;
  ofAgent.agent = 1;
  database::Writer writer(path, database::Log::kept);
  writer.replace(deviceOf(someState), ofAgent);
  auto seq = lastLogged(path);
  EXPECT_EQ(number("select count(*) from change_log"), "1");
  EXPECT_EQ(logged(path, seq - 1), Lines{"5 "}) << "a first load is one change";
  const struct {
    const char* from;
    const char* to;
    Lines expected;
  } cases[] = {
      {"", "", {}},
      {"\"metric\": 5", "\"metric\": 6", {"2  0 10.0.0.0/8"}},
      {"\"10.1.0.0/16\": {", "\"10.2.0.0/16\": {", {"3  0 10.1.0.0/16", "1  0 10.2.0.0/16"}},
      {"\"2001:db8::/32\"", "\"2001:db9::/32\"", {"3  0 2001:db8::/32", "1  0 2001:db9::/32"}},
      {"10.0.0.2\", \"interface\": \"uplink\"", "10.0.0.3\", \"interface\": \"uplink\"", {"2 1"}},
      {"\"10.9.9.9\"", "\"10.9.9.7\"", {"4 static_route"}},
      {"\"id\": 7", "\"id\": 8", {"4 vrf", "1  8 10.0.0.0/8"}},
  };
  std::string text = someState;
  for (const auto& [from, to, expected] : cases) {
    text = replaced(text, from, to);
    writer.replace(deviceOf(text), ofAgent);
    auto lines = logged(path, seq);
    std::ranges::sort(lines);
    auto wanted = expected;
    std::ranges::sort(wanted);
    EXPECT_EQ(lines, wanted) << to;
    seq = lastLogged(path);
  }
  save(someState);
  EXPECT_EQ(logged(path, seq), Lines{"5 "}) << "a snapshot comes in as a whole";
}

TEST_F(DatabaseTest, PeopleReadItsLog) {
  database::Facts ofAgent;
  ofAgent.agent = 1;
  database::Writer writer(path, database::Log::kept);
  writer.replace(deviceOf(someState), ofAgent);
  auto text = replaced(someState, "\"metric\": 5", "\"metric\": 6");
  text = replaced(text, "\"10.1.0.0/16\": {", "\"10.200.30.4/31\": {");
  writer.replace(deviceOf(replaced(text, "2001:db8::/32", "2001:db8:1::/48")), ofAgent);
  database::Session session(path, database::Access::read);
  database::Statement select(
      session.connection(),
      "select what || ifnull(' ' || vrf || ' ' || prefix, '') from change order by seq");
  std::vector<std::string> lines;
  while (select.step()) lines.emplace_back(select.text("line"));
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "everything", "removed default 10.1.0.0/16",
                       "entered default 10.200.30.4/31", "replaced default 10.0.0.0/8",
                       "entered default 2001:0db8:0001:0000:0000:0000:0000:0000/48",
                       "removed default 2001:0db8:0000:0000:0000:0000:0000:0000/32"}));
}

TEST_F(DatabaseTest, TellsOfADamagedLog) {
  database::Facts ofAgent;
  ofAgent.agent = 1;
  const struct {
    const char* damage;
    const char* message;
  } cases[] = {
      {"update change_log set what = 9 where what = 5", "what: found 9, expected a number from 1"},
      {"update change_log set keys = x'01' where keys is not null", "keys: found bytes, expected"},
      {"update change_log set keys = 7 where keys is not null", "keys: found 7, expected bytes"},
      {"update change_log set keys = x'07080a000000' where keys is not null", "what: found 7"},
      {"update change_log set keys = x'01280a000000' where keys is not null",
       "keys: found a prefix that is none"},
      {"update change_log set keys = x'01080a000001' where keys is not null",
       "keys: found a prefix that is none"},
      {"update change_log set family = 5 where keys is not null", "family: found 5, expected 4"},
      {"update change_log set time = 'x'", "time: found a text, expected a number"},
  };
  for (const auto& [damage, message] : cases) {
    fs::remove(path);
    {
      database::Writer writer(path, database::Log::joined);
      writer.replace(deviceOf(someState), ofAgent);
      writer.replace(deviceOf(replaced(someState, "\"metric\": 5", "\"metric\": 6")), ofAgent);
    }
    alter(damage);
    const auto found = messageOf<SourceError>([&] {
      const auto session = std::make_shared<database::Session>(path, database::Access::read);
      database::LogReader(session).read(0, [](const auto&) {});
    });
    EXPECT_TRUE(found.starts_with(path + ": damaged: change_log: " + message)) << found;
  }
}

TEST_F(DatabaseTest, ItsLogIsBounded) {
  using database::ChangeLog;
  using database::What;
  database::Writer writer(path, database::Log::kept);
  const auto write = [&](std::int64_t count) {
    ChangeLog log(writer.connection());
    for (std::int64_t i = 0; i < count; ++i) {
      log.route(What::entered, 0, Kesh::pfx(static_cast<std::uint32_t>(i), 32));
    }
    log.finish();
  };
  const auto entries = [&] {
    return writer.connection().number("select count(*) from change_log");
  };
  writer.connection().execute("begin");
  write(ChangeLog::mostAtOnce + 5);
  EXPECT_EQ(entries(), 1) << "too many at once are everything";
  for (int i = 0; i < 6; ++i) write(ChangeLog::mostAtOnce);
  writer.connection().execute("commit");
  const auto range =
      database::LogReader(std::make_shared<database::Session>(path, database::Access::read))
          .range();
  EXPECT_GE(range.last - range.first + 1, ChangeLog::keptChanges);
  EXPECT_LT(range.last - range.first + 1, ChangeLog::keptChanges + 1000) << "less than a row more";
  EXPECT_EQ(logged(path, range.last - ChangeLog::keptChanges).size(), ChangeLog::keptChanges);
  EXPECT_LT(writer.connection().number("pragma page_count") * 4096, 8 * ChangeLog::keptChanges);
}

/// Bytes that are turned over, cut off, moved or put in the place of others.
std::string damaged(std::string bytes, unsigned seed) {
  srand(seed);
  const auto any = [](std::size_t below) { return static_cast<std::size_t>(rand()) % below; };
  constexpr std::size_t page = 4096;
  const std::size_t pages = bytes.size() / page;
  switch (any(4)) {
  case 0:
    bytes.resize(any(bytes.size()));
    break;
  case 1: {
    const std::size_t one = any(pages) * page, other = any(pages) * page;
    std::swap_ranges(bytes.begin() + static_cast<long>(one),
                     bytes.begin() + static_cast<long>(one + page),
                     bytes.begin() + static_cast<long>(other));
    break;
  }
  default:
    for (std::size_t count = 1 + any(12); count > 0; --count) {
      bytes[any(bytes.size())] ^= static_cast<char>(1 << any(8));
    }
  }
  return bytes;
}

// In this process: a signal or a loop would end the test. ROVA_DAMAGED_COPIES asks for more.
TEST_F(DatabaseTest, ADamagedFileIsReportedOrRight) {
  save(someState);
  const auto whole = support::fileText(path);
  const char* const asked = std::getenv("ROVA_DAMAGED_COPIES");
  const unsigned copies = asked ? static_cast<unsigned>(std::atoi(asked)) : 2000;
  unsigned reported = 0;
  for (unsigned seed = 1; seed <= copies; ++seed) {
    std::ofstream(path, std::ios::trunc) << damaged(whole, seed);
    try {
      snapshot::saveText(database::load(path).device);
    } catch (const SourceError&) {
      ++reported;
    } catch (const CorruptionDetectedException&) {
      ++reported;
    } catch (const Lumo::RangeException& error) {
      ADD_FAILURE() << "seed " << seed << ": " << error.what();
    }
  }
  EXPECT_GT(reported, copies / 10);
}

} // namespace
