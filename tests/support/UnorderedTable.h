// A table whose members come in the order in which they were entered: nothing behind the seam asks
// a table for an order of its keys.
#pragma once

#include "vanta/VantaBase.h"

#include <algorithm>
#include <vector>

namespace support {

template <class Key, class Value>
class UnorderedTable final : public Vanta::VantaBase<Key, Value> {
 public:
  explicit UnorderedTable(std::vector<Value> records) : records_(std::move(records)) {}

  int initialize() override { return 1; }
  void detach() override {}
  const Value* lookup(const Key& key, bool& found, Vanta::IterHint) const override {
    const auto at = find(key);
    found = at != records_.end();
    return found ? &*at : &default_;
  }
  bool first(Value* value, Vanta::IterHint&) const override {
    return give(records_.begin(), value);
  }
  bool next(const Key& key, Value* value, Vanta::IterHint&) const override {
    const auto at = find(key);
    return at != records_.end() && give(at + 1, value);
  }
  std::size_t members() const override { return records_.size(); }
  std::size_t minSize() const override { return 0; }
  std::size_t maxSize() const override { return records_.size(); }
  std::size_t capacity() const override { return records_.size(); }
  int type() const override { return 1; }
  Vanta::RootPath rootPath() const override { return {"test", "unordered"}; }
  int mountStatus() const override { return 1; }

 private:
  using Place = typename std::vector<Value>::const_iterator;

  Place find(const Key& key) const {
    return std::find_if(records_.begin(), records_.end(),
                        [&](const Value& value) { return Vanta::keyOf(value) == key; });
  }
  bool give(Place at, Value* value) const {
    if (at == records_.end()) return false;
    *value = *at;
    return true;
  }

  std::vector<Value> records_;
  Value default_{};
};

} // namespace support
