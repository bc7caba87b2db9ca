// The implementations of a table that the suites over the seam run for. A further one is a struct
// like `InMemory` and a word in `Implementations`.
#pragma once

#include "sources/database/TableWriter.h"
#include "support/Files.h"
#include "vanta/MemoryTable.h"
#include "vanta/VantaMap.h"

#include <gtest/gtest.h>
#include <vector>

namespace tables {

struct InMemory {
  /// A table of those records, entered in the order given. `corruptAt`: the read that finds it
  /// corrupt, 1 for the first; 0 for none.
  template <class Key, class Value>
  static std::unique_ptr<Vanta::VantaBase<Key, Value>> make(const std::vector<Value>& records,
                                                            std::uint64_t corruptAt = 0) {
    auto table = std::make_unique<Vanta::MemoryTable<Key, Value>>("routes");
    for (const Value& record : records) table->insert(record);
    table->corruptAt(corruptAt);
    return table;
  }
};

/// Another table whose reads raise from the n-th on.
template <class Key, class Value>
class CorruptTable final : public Vanta::VantaBase<Key, Value> {
 public:
  using Base = Vanta::VantaBase<Key, Value>;
  CorruptTable(std::unique_ptr<Base> table, std::uint64_t corruptAt)
      : table_(std::move(table)), left_(corruptAt) {}

  int initialize() override { return table_->initialize(); }
  void detach() override { table_->detach(); }
  const Value* lookup(const Key& key, bool& found, Vanta::IterHint hint) const override {
    return countRead(), table_->lookup(key, found, hint);
  }
  bool first(Value* value, Vanta::IterHint& hint) const override {
    return countRead(), table_->first(value, hint);
  }
  bool next(const Key& key, Value* value, Vanta::IterHint& hint) const override {
    return countRead(), table_->next(key, value, hint);
  }
  bool inKeyOrder() const override { return table_->inKeyOrder(); }
  std::size_t members() const override { return table_->members(); }
  std::size_t minSize() const override { return table_->minSize(); }
  std::size_t maxSize() const override { return table_->maxSize(); }
  std::size_t capacity() const override { return table_->capacity(); }
  int type() const override { return table_->type(); }
  Vanta::RootPath rootPath() const override { return table_->rootPath(); }
  int mountStatus() const override { return table_->mountStatus(); }

 private:
  void countRead() const {
    if (left_ > 1) return void(--left_);
    throw Tembra::CorruptionDetectedException("record is not whole");
  }
  std::unique_ptr<Base> table_;
  mutable std::uint64_t left_;
};

/// How records of a type stand in a database.
inline auto rowsOf(const Vanta::Fib::Route&) {
  return sources::database::RouteRows<sources::database::Ip4>(Vrf::VrfIdMap::VrfId(0));
}
inline auto rowsOf(const Vanta::Fib::Fec&) {
  return sources::database::FecRows<Vanta::Fib::Fec>("fec4");
}

struct InDatabase {
  template <class Key, class Value>
  static std::unique_ptr<Vanta::VantaBase<Key, Value>> make(const std::vector<Value>& records,
                                                            std::uint64_t corruptAt = 0) {
    using namespace sources::database;
    const support::TemporaryFolder folder; // the session keeps the file open
    const auto path = folder.path / "state.db";
    const auto rows = rowsOf(Value());
    {
      Writer writer(path, Log::joined);
      ChangeLog log(writer.connection());
      RowWriter enter(writer.connection(), rows, 0, log);
      for (const Value& record : records) enter.enter(record, What::entered);
    }
    std::unique_ptr<Vanta::VantaBase<Key, Value>> table =
        std::make_unique<Table<std::remove_cv_t<decltype(rows)>>>(
            std::make_shared<Session>(path, Access::unchanged), rows);
    if (corruptAt == 0) return table;
    return std::make_unique<CorruptTable<Key, Value>>(std::move(table), corruptAt);
  }
};

using Implementations = testing::Types<InMemory, InDatabase>;

} // namespace tables
