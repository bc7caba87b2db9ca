// Look-ups in the order of keys: a listing asks of each of its routes whether the hardware lacks
// it. After a few of them the records behind the last one are read together, so that the next are
// answered from memory, be it that there is nothing.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace sources::database {

/// All records of a table whose keys lie in a range: behind one key, up to the last record.
template <class Rows>
class Window {
 public:
  using Key = typename Rows::Key;
  using Value = typename Rows::Value;

  /// What is under the key, null for nothing; no answer for a key out of the range, and when the
  /// window is of another epoch.
  std::optional<const Value*> find(const Key& key, std::uint64_t epoch) {
    if (epoch != epoch_ || !(behind_ < key)) return {};
    if (!toEnd_ && (records_.empty() || records_.back().key < key)) return {};
    if (place_ > 0 && !(records_[place_ - 1].key < key)) place_ = 0;
    while (place_ < records_.size() && records_[place_].key < key) ++place_;
    const bool found = place_ < records_.size() && records_[place_].key == key;
    return found ? &records_[place_] : nullptr;
  }

  /// How many records to read behind a key that the window did not know; 0 while look-ups do not
  /// come in order.
  std::size_t wanted(const Key& key) {
    const bool ascends = lastKey_ && *lastKey_ < key;
    lastKey_ = key;
    streak_ = ascends ? streak_ + 1 : 0;
    if (streak_ < enoughInOrder) return 0;
    return std::min<std::size_t>(8u << std::min<std::size_t>(streak_ - enoughInOrder, 5), 256);
  }

  /// Begins a range behind the key.
  std::vector<Value>& restart(const Key& behind) {
    behind_ = behind;
    records_.clear();
    place_ = 0;
    epoch_ = 0;
    return records_;
  }
  void finish(bool toEnd, std::uint64_t epoch) {
    toEnd_ = toEnd;
    epoch_ = epoch;
  }

 private:
  /// More than the look-ups of one longest match, which come in order and far from each other.
  static constexpr std::size_t enoughInOrder = 130;

  std::vector<Value> records_;
  Key behind_{};
  bool toEnd_ = false;
  std::uint64_t epoch_ = 0; ///< that of no reading
  std::size_t place_ = 0;   ///< where the last key was
  std::optional<Key> lastKey_;
  std::size_t streak_ = 0;
};

} // namespace sources::database
