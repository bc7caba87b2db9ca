// The hashed collection: open addressing over members that stand in the order of their entry. A few
// members need no hashing: they are searched one by one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Lumo {

/// How a key hashes: by its own `hash()`, else by the standard library.
template <class Key>
struct HashOf {
  std::size_t operator()(const Key& key) const {
    if constexpr (requires { key.hash(); }) {
      return key.hash();
    } else {
      return std::hash<Key>{}(key);
    }
  }
};

/// A hashed map. An empty one is one null pointer, since an entity may hold a dozen that it rarely
/// fills. A member's reference is valid until the next insertion. No order is promised to callers.
///
/// Deleted members leave a hole until the next growth; the index keeps pointing at the hole, so
/// that probing goes on behind it.
template <class Key, class Value>
class HashMap2018 {
  struct Member {
    std::pair<Key, Value> item;
    std::uint64_t sequence; // ascending along the members; a cursor finds its place again by it
    bool present;
  };
  struct Body {
    std::vector<Member> members;
    std::vector<std::uint32_t> index; // 1 + position in members, 0 for free; a power of two or none
    std::size_t present = 0;
    std::uint64_t nextSequence = 0;
    std::uint32_t compactions = 0;
  };

 public:
  using KeyType = Key;
  using ValueType = Value;

  HashMap2018() = default;
  HashMap2018(const HashMap2018& other)
      : body_(other.body_ ? std::make_unique<Body>(*other.body_) : nullptr) {}
  HashMap2018(HashMap2018&&) noexcept = default;
  HashMap2018& operator=(HashMap2018 other) noexcept {
    body_.swap(other.body_);
    return *this;
  }

  std::size_t size() const { return body_ ? body_->present : 0; }
  bool empty() const { return size() == 0; }
  /// Grows whenever the members move.
  std::uint32_t changes() const { return body_ ? body_->compactions : 0; }

  /// The value under the key, null for a missing one; valid until the map changes.
  const Value* find(const Key& key) const {
    const Member* const member = findMember(key);
    return member ? &member->item.second : nullptr;
  }
  Value* find(const Key& key) { return const_cast<Value*>(std::as_const(*this).find(key)); }

  /// Has the processor fetch what leads to the key's member, ahead of a `prefetch`. No effect but
  /// on time, as of that; as calls without effect g++ would drop them, were they not inlined.
  [[gnu::always_inline]] void prefetchPlace(const Key& key) const {
    if (!body_ || body_->index.empty()) return;
    __builtin_prefetch(&body_->index[slot(key, body_->index.size() - 1)]);
  }
  /// Has the processor fetch the member itself, ahead of a `find`.
  [[gnu::always_inline]] void prefetch(const Key& key) const {
    if (!body_ || body_->index.empty()) return;
    const std::uint32_t place = body_->index[slot(key, body_->index.size() - 1)];
    if (place == 0) return;
    constexpr std::size_t cacheLine = 64;
    const auto* const member = reinterpret_cast<const char*>(&body_->members[place - 1]);
    for (std::size_t at = 0; at < sizeof(Member); at += cacheLine) __builtin_prefetch(member + at);
  }

  /// Enters a value or replaces that which has the key; gives the one that stands there now.
  Value& insertOrAssign(const Key& key, Value value) {
    if (Value* const present = find(key)) return *present = std::move(value);
    Body& body = this->body();
    if (body.members.size() + 1 > std::max(searchedOneByOne, body.index.size() / 2)) rebuild(body);
    body.members.push_back({{key, std::move(value)}, body.nextSequence++, true});
    enter(body, key, static_cast<std::uint32_t>(body.members.size()));
    ++body.present;
    return body.members.back().item.second;
  }

  bool erase(const Key& key, Value* old = nullptr) {
    auto* const member = const_cast<Member*>(findMember(key));
    if (!member) return false;
    if (old) *old = std::move(member->item.second);
    member->item.second = Value();
    member->present = false;
    --body_->present;
    return true;
  }

  /// A place in the walk that survives changes of the map; members entered during the walk may be
  /// visited. It must not outlive the map.
  class Cursor {
   public:
    explicit Cursor(const HashMap2018& map) : map_(map) {
      if (map_.body_) compactions_ = map_.body_->compactions;
      skipHoles();
    }
    /// At the key, or at the end when it is no member.
    Cursor(const HashMap2018& map, const Key& key) : map_(map) {
      if (!map_.body_) return;
      compactions_ = map_.body_->compactions;
      const Member* const member = map_.findMember(key);
      const auto& members = map_.body_->members;
      position_ = member ? static_cast<std::size_t>(member - members.data()) : members.size();
      skipHoles();
    }
    explicit operator bool() const { return !atEnd_; }
    const Key& key() const { return key_; }
    /// The member, or null when it has been deleted meanwhile.
    const Value* value() const { return map_.find(key_); }
    /// Moves on; at the end it stays there.
    void next() {
      if (atEnd_) return;
      if (compactions_ != map_.body_->compactions) {
        findPlace();
      } else {
        ++position_;
      }
      skipHoles();
    }

   private:
    void skipHoles() {
      if (!map_.body_) return;
      const auto& members = map_.body_->members;
      while (position_ < members.size() && !members[position_].present) ++position_;
      atEnd_ = position_ >= members.size();
      if (atEnd_) return;
      key_ = members[position_].item.first;
      sequence_ = members[position_].sequence;
    }
    void findPlace() {
      compactions_ = map_.body_->compactions;
      const auto& members = map_.body_->members;
      position_ = 0;
      while (position_ < members.size() && members[position_].sequence <= sequence_) ++position_;
    }

    const HashMap2018& map_;
    std::size_t position_ = 0;
    std::uint64_t sequence_ = 0;
    std::uint32_t compactions_ = 0;
    bool atEnd_ = true; // a fact of its own: members may come behind a walk that has ended
    Key key_{};
  };
  /// Removes the member that a walk stands on, which goes on by `next`.
  void erase(const Cursor& at) { erase(at.key()); }

  /// A walk from the first member, or from that of a key:
  Cursor cursor() const { return Cursor(*this); }
  Cursor cursor(const Key& key) const { return Cursor(*this, key); }

  /// Calls `visit(key, value)` for each member; the walk changes nothing.
  template <class Visit>
  void forEach(Visit&& visit) const {
    if (!body_) return;
    for (const Member& member : body_->members) {
      if (member.present) visit(member.item.first, member.item.second);
    }
  }

  friend bool operator==(const HashMap2018& a, const HashMap2018& b) {
    if (a.size() != b.size()) return false;
    bool equal = true;
    a.forEach([&](const Key& key, const Value& value) {
      const Value* const other = b.find(key);
      equal = equal && other && *other == value;
    });
    return equal;
  }

 private:
  /// Up to that many members and holes stand without an index: it would be one more place in memory
  /// to read, which costs more than comparing them.
  static constexpr std::size_t searchedOneByOne = 8;

  Body& body() {
    if (!body_) body_ = std::make_unique<Body>();
    return *body_;
  }

  // The multiplication spreads hashes that differ in their high bits alone.
  static std::size_t slot(const Key& key, std::size_t mask) {
    const std::uint64_t spread = HashOf<Key>{}(key)*0x9e3779b97f4a7c15ull;
    return (spread >> 32) & mask;
  }

  const Member* findMember(const Key& key) const {
    if (!body_) return nullptr;
    if (body_->index.empty()) return searchMember(key);
    const std::size_t mask = body_->index.size() - 1;
    for (std::size_t at = slot(key, mask);; at = (at + 1) & mask) {
      const std::uint32_t place = body_->index[at];
      if (place == 0) return nullptr;
      const Member& member = body_->members[place - 1];
      if (member.present && member.item.first == key) return &member;
    }
  }

  const Member* searchMember(const Key& key) const {
    for (const Member& member : body_->members) {
      if (member.present && member.item.first == key) return &member;
    }
    return nullptr;
  }

  static void enter(Body& body, const Key& key, std::uint32_t place) {
    if (body.index.empty()) return;
    const std::size_t mask = body.index.size() - 1;
    std::size_t at = slot(key, mask);
    while (body.index[at]) at = (at + 1) & mask;
    body.index[at] = place;
  }

  static void rebuild(Body& body) {
    std::erase_if(body.members, [](const Member& member) { return !member.present; });
    ++body.compactions;
    body.index.clear();
    if (body.members.size() < searchedOneByOne) return;
    std::size_t size = 8;
    while (size < 4 * (body.members.size() + 1)) size *= 2;
    body.index.assign(size, 0);
    for (std::size_t i = 0; i < body.members.size(); ++i) {
      enter(body, body.members[i].item.first, static_cast<std::uint32_t>(i + 1));
    }
  }

  std::unique_ptr<Body> body_;
};

} // namespace Lumo
