// The stand-in for a detached table.
#include "vanta/MemoryTable.h"
#include "vanta/Records.h"
#include "vanta/VantaBaseDummy.h"

namespace {

using namespace tables;
using Lines = std::vector<std::string>;

struct DummyTest : testing::Test {
  DummyTest() {
    debug.sinkIs([this](std::string_view line) { lines.emplace_back(line); });
  }
  static std::unique_ptr<RouteTable> filledTable() {
    auto table = std::make_unique<Vanta::MemoryTable<Prefix, Route>>("routes");
    table->insert(route("10.0.0.0/8"));
    return table;
  }
  Tembra::Debuggable debug{"Vanta"};
  Lines lines;
  Route standIn = route("1.2.3.4/32", 99);
  Vanta::VantaBaseDummy<Prefix, Route> dummy{debug, "routes", standIn, filledTable()};
};

TEST_F(DummyTest, ReadsAsEmpty) {
  bool found = true;
  EXPECT_EQ(*dummy.lookup(prefix("10.0.0.0/8"), found, 0), standIn);
  EXPECT_FALSE(found);
  Vanta::IterHint hint = 0;
  Route record;
  EXPECT_FALSE(dummy.first(&record, hint));
  EXPECT_EQ(record, standIn) << "first gives the default value";
  record = Route();
  EXPECT_FALSE(dummy.next(prefix("9.0.0.0/8"), &record, hint));
  EXPECT_EQ(record, standIn) << "next gives the default value";
  EXPECT_FALSE(dummy.first(nullptr, hint));
  EXPECT_EQ(dummy.members() + dummy.minSize() + dummy.maxSize() + dummy.capacity(), 0u);
  EXPECT_EQ(dummy.mountStatus(), 0);
  EXPECT_EQ(dummy.type(), 2);
  EXPECT_EQ(dummy.initialize() + dummy.validate() + dummy.validateFiles(), 3);
  EXPECT_EQ(dummy.readerCounters().lookups + dummy.readerCounters().steps, 0u);
  EXPECT_EQ(dummy.vantaName(), "routes");
}

TEST_F(DummyTest, RefusesWritesAndPassesCleanupOn) {
  EXPECT_EQ(messageOf<Tembra::NoPermissionException>([&] { dummy.write(standIn, false); }),
            "write to read-only Vanta table");
  EXPECT_EQ(messageOf<Tembra::NoPermissionException>([&] { dummy.remove(standIn.key, standIn); }),
            "remove to read-only Vanta table");
  // The table in memory refuses it: the message is that of the implementation that was replaced.
  EXPECT_EQ(messageOf<Tembra::NoPermissionException>([&] { dummy.cleanup(); }),
            "cleanup to read-only Vanta table");
}

TEST_F(DummyTest, OperationsWriteTheirDebugLineOnLevelFive) {
  for (unsigned level = 0; level < 64; ++level) debug.enabledIs(level, level != 5);
  dummy.members();
  EXPECT_EQ(lines, Lines());
  debug.enabledIs(5, true);
  bool found;
  Vanta::IterHint hint = 0;
  dummy.detach();
  dummy.mountStatus();
  dummy.members();
  messageOf<Tembra::Exception>([&] { dummy.cleanup(); });
  dummy.lookup(Prefix(), found, 0);
  dummy.next(Prefix(), nullptr, hint);
  const char* const operations[] = {"detach", "mountStatus", "members", "cleanup",
                                    "lookup", "next",        "first"};
  Lines expected;
  for (const char* const operation : operations) {
    expected.push_back("VantaBaseDummy::" + std::string(operation) + "() routes");
  }
  EXPECT_EQ(lines, expected);
}

} // namespace
