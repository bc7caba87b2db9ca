// The writer's side of the table in memory.
#include "vanta/MemoryTable.h"
#include "vanta/Records.h"
#include "vanta/VantaMap.h"

#include <map>
#include <random>

namespace {

using namespace tables;
using Table = Vanta::MemoryTable<Prefix, Route>;

/// A view and the writer's side of its table.
struct MemoryTableTest : testing::Test {
  Table* const table = new Table("routes");
  const RouteView view{std::unique_ptr<RouteTable>(table), "routes"};

  std::uint32_t metricOf(const char* text) {
    bool found = false;
    return view.safeLookup(prefix(text), found, 0)->metric;
  }
};

TEST_F(MemoryTableTest, TheRecordEnteredLastStands) {
  table->insert(route("10.0.0.0/8", 1));
  table->insert(route("9.0.0.0/8", 1));
  table->insert(route("10.0.0.0/8", 2)); // ahead of the first read
  EXPECT_EQ(table->members(), 2u);
  EXPECT_EQ(metricOf("10.0.0.0/8"), 2u);
  table->insert(route("10.0.0.0/8", 3)); // behind it
  table->insert(route("9.0.0.0/8", 4));
  EXPECT_EQ(table->members(), 2u);
  EXPECT_EQ(metricOf("10.0.0.0/8"), 3u);
  EXPECT_EQ(metricOf("9.0.0.0/8"), 4u);
}

TEST_F(MemoryTableTest, AWalkSurvivesTheErasureOfAnyRecordAtAnyStep) {
  const std::size_t count = sortedTexts.size();
  for (std::size_t step = 0; step < count; ++step) {
    for (std::size_t victim = 0; victim < count; ++victim) {
      for (const Route& record : someRoutes()) table->insert(record);
      std::vector<std::string> seen, expected;
      for (RouteView::IteratorConst it(view); it; it.next()) {
        if (seen.size() == step) table->erase(prefix(sortedTexts[victim].c_str()));
        seen.push_back(it.value().key.stringValue().str());
      }
      for (std::size_t i = 0; i < count; ++i) {
        if (i != victim || victim <= step) expected.push_back(sortedTexts[i]);
      }
      ASSERT_EQ(seen, expected) << "record " << victim << " erased at step " << step;
    }
  }
}

template <class Value>
Value numbered(std::uint64_t number, std::uint32_t content);
template <>
Route numbered(std::uint64_t number, std::uint32_t content) {
  Route record;
  record.key = Kesh::pfx(static_cast<std::uint32_t>(number) << 8, 24);
  record.metric = content;
  return record;
}
template <>
Fec numbered(std::uint64_t number, std::uint32_t content) {
  Fec record{FecId(number)};
  for (std::uint32_t i = 0; i < content % 5; ++i) record.viaAppend({});
  record.backupViaIndex = content;
  return record;
}
std::uint32_t contentOf(const Route& record) { return record.metric; }
std::uint32_t contentOf(const Fec& record) { return record.backupViaIndex; }

template <class Value>
struct MemoryTableModelTest : testing::Test {};
using RecordTypes = testing::Types<Route, Fec>;
TYPED_TEST_SUITE(MemoryTableModelTest, RecordTypes);

TYPED_TEST(MemoryTableModelTest, BehavesAsTheStandardMap) {
  using Key = decltype(TypeParam::key);
  Vanta::MemoryTable<Key, TypeParam> table("routes");
  std::map<Key, std::uint32_t> model;
  std::mt19937 random(3);
  for (int step = 0; step < 6000; ++step) {
    const auto record =
        numbered<TypeParam>(1 + random() % 200, static_cast<std::uint32_t>(random()));
    if (random() % 3 != 0) {
      table.insert(record);
      model[record.key] = contentOf(record);
    } else {
      ASSERT_EQ(table.erase(record.key), model.erase(record.key) == 1);
    }
    if (random() % 50 != 0) continue; // runs of writes without a read between
    std::map<Key, std::uint32_t> walked;
    TypeParam read;
    Vanta::IterHint hint = 0;
    for (bool more = table.first(&read, hint); more; more = table.next(read.key, &read, hint)) {
      walked[read.key] = contentOf(read);
    }
    ASSERT_EQ(walked, model);
    ASSERT_EQ(table.members(), model.size());
  }
}

TEST_F(MemoryTableTest, CorruptionStaysUntilItIsTakenBack) {
  table->insert(route("10.0.0.0/8"));
  table->corruptAt(2);
  EXPECT_EQ(metricOf("10.0.0.0/8"), 0u);
  for (int i = 0; i < 2; ++i) {
    EXPECT_THROW(metricOf("10.0.0.0/8"), Tembra::CorruptionDetectedException);
  }
  table->corruptAt(0);
  EXPECT_NO_THROW(metricOf("10.0.0.0/8"));
}

} // namespace
