// A table in this process's memory, for the kernel and snapshot sources and for tests. It keeps its
// records in key order and gives out copies, as the shared tables do.
#pragma once

#include "lumo/Order.h"
#include "vanta/VantaBase.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

namespace Vanta {

/// Records of one size, side by side.
template <class Key, class Value>
class FixedRecords {
 public:
  std::size_t size() const { return records_.size(); }
  /// The records by their places, from 0, and the ways to change them; places behind one move with
  /// it:
  const Key& key(std::size_t at) const { return keyOf(records_[at]); }
  const Value* record(std::size_t at) const { return &records_[at]; }
  void append(const Value& value) { records_.push_back(value); }
  void replace(std::size_t at, const Value& value) { records_[at] = value; }
  void erase(std::size_t at) { records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(at)); }
  void reserve(std::size_t count) { records_.reserve(count); }

  /// Puts the records in order; of several under one key the one appended last stays.
  void sort() {
    records_ = Lumo::inOrder(std::move(records_),
                             [](const Value& a, const Value& b) { return keyOf(a) < keyOf(b); });
    const auto kept =
        std::unique(records_.rbegin(), records_.rend(),
                    [](const auto& a, const auto& b) { return keyOf(a) == keyOf(b); });
    records_.erase(records_.begin(), kept.base());
  }

 private:
  std::vector<Value> records_;
};

/// Records of variable length in their serialised form, so that a FEC of one via does not take the
/// room of 512. A record that is read is valid until the next one is.
template <class Key, class Value>
class SerializedRecords {
 public:
  std::size_t size() const { return places_.size(); }
  const Key& key(std::size_t at) const { return places_[at].key; }
  const Value* record(std::size_t at) const {
    if (!scratch_) scratch_ = std::make_unique<Value>();
    scratch_->deserialize(bytes_.data() + places_[at].offset);
    return scratch_.get();
  }
  void append(const Value& value) { places_.push_back({keyOf(value), store(value)}); }
  void replace(std::size_t at, const Value& value) { places_[at].offset = store(value); }
  void erase(std::size_t at) { places_.erase(places_.begin() + static_cast<std::ptrdiff_t>(at)); }
  void reserve(std::size_t count) { places_.reserve(count); }

  void sort() {
    places_ = Lumo::inOrder(std::move(places_),
                            [](const Place& a, const Place& b) { return a.key < b.key; });
    const auto kept = std::unique(places_.rbegin(), places_.rend(),
                                  [](const auto& a, const auto& b) { return a.key == b.key; });
    places_.erase(places_.begin(), kept.base());
  }

 private:
  struct Place {
    Key key;
    std::size_t offset;
  };

  std::size_t store(const Value& value) {
    const std::size_t offset = bytes_.size();
    bytes_.resize(offset + value.serializeLen());
    value.serialize(bytes_.data() + offset);
    return offset;
  }

  std::vector<Place> places_;
  std::vector<std::byte> bytes_;
  mutable std::unique_ptr<Value> scratch_;
};

/// The table. `insert` and `erase` are its writer's side; through `VantaBase` it is read-only.
template <class Key, class Value>
class MemoryTable final : public VantaBase<Key, Value> {
 public:
  explicit MemoryTable(std::string name) : rootPath_("memory", std::move(name)) {}

  void reserve(std::size_t count) { records_.reserve(count); }

  /// Enters a record or replaces the one under its key. Records may come in any order: they are put
  /// in order at the next read.
  void insert(const Value& value) {
    const bool inOrder = records_.size() == 0 || records_.key(records_.size() - 1) < keyOf(value);
    if (!inOrder && sorted_ && settled_) {
      if (const auto at = find(keyOf(value))) return records_.replace(*at, value);
    }
    sorted_ = sorted_ && inOrder;
    records_.append(value);
  }

  bool erase(const Key& key) {
    const auto at = find(key);
    if (at) records_.erase(*at);
    return at.has_value();
  }

  /// Makes the n-th read from now (1 for the very next) raise corruption, and all reads behind it;
  /// 0 ends that.
  void corruptAt(std::uint64_t read) { corruptIn_ = read; }

  int initialize() override { return 1; }
  void detach() override {}

  const Value* lookup(const Key& key, bool& found, IterHint) const override {
    countRead();
    const auto at = find(key);
    found = at.has_value();
    if (found) return records_.record(*at);
    if (!default_) default_ = std::make_unique<Value>();
    return default_.get();
  }

  bool first(Value* value, IterHint& hint) const override {
    countRead();
    ensureOrder();
    return give(0, value, hint);
  }

  bool next(const Key& key, Value* value, IterHint& hint) const override {
    countRead();
    ensureOrder();
    const std::size_t place = hint;
    if (place < records_.size() && records_.key(place) == key) return give(place + 1, value, hint);
    std::size_t at = lowerBound(key);
    if (at < records_.size() && records_.key(at) == key) ++at;
    return give(at, value, hint);
  }

  std::size_t members() const override { return ensureOrder(), records_.size(); }
  std::size_t minSize() const override { return 0; }
  std::size_t maxSize() const override { return SIZE_MAX; }
  std::size_t capacity() const override { return members(); }
  int type() const override { return 1; }
  ReaderCounters readerCounters() const override { return {reads_, 0}; }
  RootPath rootPath() const override { return rootPath_; }
  int mountStatus() const override { return 1; }
  bool inKeyOrder() const override { return true; }

 private:
  static constexpr bool variable = requires(const Value& value) { value.serializeLen(); };
  using Records =
      std::conditional_t<variable, SerializedRecords<Key, Value>, FixedRecords<Key, Value>>;

  void countRead() const {
    ++reads_;
    if (corruptIn_ == 0) return;
    if (corruptIn_ > 1) return void(--corruptIn_);
    throw Tembra::CorruptionDetectedException("record is not whole");
  }

  void ensureOrder() const {
    settled_ = true;
    if (sorted_) return;
    records_.sort();
    sorted_ = true;
  }

  std::size_t lowerBound(const Key& key) const {
    ensureOrder();
    std::size_t low = 0, count = records_.size();
    while (count > 0) {
      const std::size_t half = count / 2;
      const bool below = records_.key(low + half) < key;
      low += below ? half + 1 : 0;
      count = below ? count - half - 1 : half;
    }
    return low;
  }

  std::optional<std::size_t> find(const Key& key) const {
    const std::size_t at = lowerBound(key);
    if (at < records_.size() && records_.key(at) == key) return at;
    return {};
  }

  bool give(std::size_t at, Value* value, IterHint& hint) const {
    if (at >= records_.size()) return false;
    if (value) *value = *records_.record(at);
    hint = at;
    return true;
  }

  RootPath rootPath_;
  mutable Records records_;
  mutable bool sorted_ = true;
  mutable bool settled_ = false; // has been read: a write may now be a replacement
  mutable std::uint64_t corruptIn_ = 0;
  mutable std::uint64_t reads_ = 0;
  mutable std::unique_ptr<Value> default_;
};

} // namespace Vanta
