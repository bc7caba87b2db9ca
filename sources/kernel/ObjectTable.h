// A table of the kernel's that is not its routes, kept up to date: see Wholeness.h for the rules.
#pragma once

#include "lumo/Order.h"
#include "sources/kernel/Wholeness.h"

#include <map>
#include <set>
#include <vector>

namespace sources::kernel {

/// Objects by `object.key()`.
template <class Object>
class ObjectTable : public Wholeness {
 public:
  using Key = decltype(std::declval<const Object&>().key());

  void begin() {
    ++dump_;
    place_ = 0;
    told_.clear();
    dumpBegins();
  }

  /// An object of the dump in progress. What was notified since the dump began is newer, or the
  /// same.
  void dumped(Object object) {
    const Key key = object.key();
    if (told_.contains(key)) return;
    const auto [at, isNew] = entries_.try_emplace(key);
    if (isNew) foundUnknown();
    at->second = {std::move(object), dump_, place_++};
  }

  void end(const DumpEnd& how) {
    if (isExact(how)) {
      std::erase_if(entries_, [&](const auto& entry) { return entry.second.dump != dump_; });
    }
    dumpEnds(how);
  }

  /// The object was notified to be there, new or changed; false when it is as it was.
  bool changed(Object object) {
    const Key key = object.key();
    tell(key);
    const auto [at, isNew] = entries_.try_emplace(key);
    const bool differs = isNew || !(at->second.object == object);
    const std::size_t place = isNew ? behindAll : at->second.place;
    at->second = {std::move(object), dump_, place};
    return differs;
  }

  /// False when it was not there.
  bool gone(const Key& key) {
    tell(key);
    return entries_.erase(key) > 0;
  }

  const Object* find(const Key& key) const {
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : &found->second.object;
  }

  /// Calls `visit(object)` in order of keys.
  template <class Visit>
  void forEach(Visit&& visit) {
    for (auto& [key, entry] : entries_) visit(entry.object);
  }

  bool empty() const { return entries_.empty(); }

  /// The objects, in the order of the kernel's last dump; those that came later behind it.
  std::vector<Object> all() const {
    std::vector<const Entry*> order;
    for (const auto& [key, entry] : entries_) order.push_back(&entry);
    order = Lumo::inOrder(std::move(order),
                          [](const Entry* a, const Entry* b) { return a->place < b->place; });
    std::vector<Object> objects;
    objects.reserve(order.size());
    for (const Entry* const entry : order) objects.push_back(entry->object);
    return objects;
  }

 private:
  static constexpr std::size_t behindAll = ~std::size_t{0};

  struct Entry {
    Object object;
    unsigned dump = 0;     ///< the last one that showed it, or that was over when it was notified
    std::size_t place = 0; ///< in that dump
  };

  void tell(const Key& key) {
    if (!isDumping()) return;
    told_.insert(key);
    notified();
  }

  std::map<Key, Entry> entries_;
  std::set<Key> told_; ///< what was notified during the dump in progress
  unsigned dump_ = 0;
  std::size_t place_ = 0; ///< of the next object of the dump
};

} // namespace sources::kernel
