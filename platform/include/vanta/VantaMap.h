// The read view of a shared table: lookups and walks that give whole copies, and what happens when
// the table turns out to be corrupt.
//
//   bool found = false;
//   const Route* route = status.route.safeLookup(prefix, found, 0);
//   for (VantaMap<...>::IteratorConst it(status.route); it; it.next()) use(it.value());
#pragma once

#include "vanta/VantaBaseDummy.h"

#include <functional>
#include <memory>

namespace Vanta {

namespace Util {

/// The folder for records of corruption; none is written while it is empty, as it is at first.
void corruptionFolderIs(std::string folder);

/// Leaves a record of a corruption: a file named for the table, or only a debug line when no folder
/// is set. Never raises: the reader that found the corruption goes on.
void writeCorruptionFile(const Tembra::Debuggable& debug, const RootPath& path,
                         const std::string& message);

} // namespace Util

// What a corruption leads to is cold: it stays out of the loops of readers.
#define VANTA_COLD [[gnu::cold, gnu::noinline]]

/// A table as its readers see it. Two reads need not agree: writers work meanwhile. A view is
/// attached, or, after `detach` or a corruption, reads as empty for the rest of its life.
template <class Key, class Value>
class VANTA_EXPORT VantaMap {
 public:
  using KeyType = Key;
  using ValueType = Value;
  using Base = VantaBase<Key, Value>;
  using ReadyCallback = std::function<void(VantaMap&, bool ready)>;
  using DetachCallback = std::function<void(VantaMap&)>;
  using CorruptionHandler = std::function<void(VantaMap&, const std::string& message)>;

  explicit VantaMap(std::unique_ptr<Base> implementation, std::string name = {},
                    Value defaultValue = {})
      : implementation_(std::move(implementation)),
        name_(std::move(name)),
        default_(std::move(defaultValue)),
        debug_("Vanta") {}
  VantaMap(const VantaMap&) = delete;
  VantaMap& operator=(const VantaMap&) = delete;

  /// What it is called in messages; its debug levels; what a missing record reads as; what is
  /// behind it:
  const std::string& name() const { return name_; }
  Tembra::Debuggable& debug() { return debug_; }
  const Value& defaultValue() const { return default_; }
  Base& implementation() const { return *implementation_; }
  std::size_t members() const { return implementation_->members(); }
  /// Whether walks come in the order of their keys, and can begin at one. A detached view does not
  /// say so: it reads as empty either way, and shows the same in its debug lines.
  bool inKeyOrder() const { return implementation_->inKeyOrder(); }

  /// Whom to tell when the view is ready, and when it detaches:
  void collectionReadyCallbackIs(ReadyCallback callback) { ready_ = std::move(callback); }
  void detachCallbackIs(DetachCallback callback) { detached_ = std::move(callback); }
  /// With a handler set, corruption detaches the view; without one it raises an exception.
  void corruptionHandlerIs(CorruptionHandler handler) { corruptionHandler_ = std::move(handler); }
  void notifyingIs(bool notifying) {
    notifying_ = notifying;
    implementation_->notifying(notifying);
  }

  /// The record under `key`, valid until the next read, and `found` set; else the default record.
  const Value* safeLookup(const Key& key, bool& found, IterHint hint) const {
    try {
      return implementation_->lookup(key, found, hint);
    } catch (const Tembra::CorruptionDetectedException& corruption) {
      mutableSelf().corruptionDetected(corruption.what());
      return &default_;
    }
  }

  /// A walk over the table in its own order, by private copies of its records.
  class IteratorConst {
   public:
    explicit IteratorConst(const VantaMap& map) : map_(map) {
      atEnd_ = !guarded([&] { return first(); });
    }
    /// Begins at the first member whose key is not before `start` where the table is in key order,
    /// and leaves unread what comes ahead of it; any other table is walked as a whole.
    IteratorConst(const VantaMap& map, const Key& start) : map_(map) {
      atEnd_ = !guarded([&] { return map_.inKeyOrder() ? firstFrom(start) : first(); });
    }
    explicit operator bool() const { return !atEnd_; }
    const Value& value() const { return value_; }
    /// Moves on from `key`, fills `value`, and tells whether there was a member.
    bool next(const Key& key, Value& value) {
      return guarded([&] { return map_.implementation_->next(key, &value, hint_); });
    }
    void next() {
      const Key key = keyOf(value_);
      atEnd_ = !next(key, value_);
    }

   private:
    bool first() { return map_.implementation_->first(&value_, hint_); }
    bool firstFrom(const Key& start) {
      bool found = false;
      const Value* const record = map_.implementation_->lookup(start, found, hint_);
      if (!found) return map_.implementation_->next(start, &value_, hint_);
      value_ = *record;
      return true;
    }

    template <class Read>
    bool guarded(Read&& read) {
      try {
        return read();
      } catch (const Tembra::CorruptionDetectedException& corruption) {
        map_.mutableSelf().corruptionDetected(corruption.what());
        return false;
      }
    }

    const VantaMap& map_;
    Value value_{};
    IterHint hint_ = 0;
    bool atEnd_ = true;
  };

  /// Lets go of the table for good, and tells those who asked to be told.
  VANTA_COLD void detach() {
    if (debug_.enabled(1)) {
      debug_.write("VantaMap::detach() " + implementation_->rootPath().stringValue());
    }
    implementation_->detach();
    implementation_ = std::make_unique<VantaBaseDummy<Key, Value>>(debug_, name_, default_,
                                                                   std::move(implementation_));
    if (debug_.enabled(5)) {
      debug_.write("VantaMap::collectionReadyIs() ready:" + std::to_string(false) +
                   " notifying:" + std::to_string(notifying_));
    }
    if (ready_) ready_(*this, false);
    detached_(*this); // raises std::bad_function_call when it was never set
  }

 private:
  // Corruption shows on reads, and a read of a const view may have to detach it.
  VantaMap& mutableSelf() const { return const_cast<VantaMap&>(*this); }

  VANTA_COLD void corruptionDetected(const std::string& message) {
    const std::string text = "VantaMap::corruptionDetected() " +
                             implementation_->rootPath().stringValue() + " " + message;
    if (debug_.enabled(1)) debug_.write(text);
    if (!corruptionHandler_) throw Tembra::CorruptionDetectedException(text);
    detach();
    Util::writeCorruptionFile(debug_, implementation_->rootPath(), message);
    corruptionHandler_(*this, message);
  }

  std::unique_ptr<Base> implementation_;
  std::string name_;
  Value default_;
  Tembra::Debuggable debug_;
  ReadyCallback ready_;
  DetachCallback detached_;
  CorruptionHandler corruptionHandler_;
  bool notifying_ = false;
};

} // namespace Vanta
