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
};

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

} // namespace
