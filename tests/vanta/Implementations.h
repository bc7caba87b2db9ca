// The implementations of a table that the suites over the seam run for. A further one is a struct
// like `InMemory` and a word in `Implementations`.
#pragma once

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

using Implementations = testing::Types<InMemory>;

} // namespace tables
