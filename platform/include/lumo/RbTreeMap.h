// The ordered collection: a red-black tree, walked in the order of the key's operator<.
#pragma once

#include "lumo/NodePool.h"

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace Lumo {

/// An ordered map. An empty one owns nothing; references to members stay valid until the member is
/// deleted. Entering keys in ascending order costs no search.
template <class Key, class Value>
class RbTreeMap {
  using Allocator = PoolAllocator<std::pair<const Key, Value>>;
  using Tree = std::map<Key, Value, std::less<Key>, Allocator>;
  struct Body {
    NodePool pool;
    Tree tree{Allocator(pool)};
    std::uint32_t deletions = 0;
  };

 public:
  using KeyType = Key;
  using ValueType = Value;

  RbTreeMap() = default;
  RbTreeMap(const RbTreeMap& other) {
    for (const auto& [key, value] : other) insertOrAssign(key, value);
  }
  RbTreeMap(RbTreeMap&&) noexcept = default;
  RbTreeMap& operator=(RbTreeMap other) noexcept {
    body_.swap(other.body_);
    return *this;
  }

  std::size_t size() const { return body_ ? body_->tree.size() : 0; }
  bool empty() const { return size() == 0; }
  /// Starts at 1 and grows with every deletion.
  std::uint32_t changes() const { return body_ ? body_->deletions + 1 : 1; }

  /// The member, or null.
  const Value* find(const Key& key) const {
    if (!body_) return nullptr;
    const auto it = body_->tree.find(key);
    return it == body_->tree.end() ? nullptr : &it->second;
  }
  Value* find(const Key& key) { return const_cast<Value*>(std::as_const(*this).find(key)); }

  Value& insertOrAssign(const Key& key, Value value) {
    Tree& tree = body().tree;
    const auto hint =
        !tree.empty() && !(std::prev(tree.end())->first < key) ? tree.lower_bound(key) : tree.end();
    return tree.insert_or_assign(hint, key, std::move(value))->second;
  }

  /// Removes the member into `old`; false when there is none.
  bool erase(const Key& key, Value* old = nullptr) {
    if (!body_) return false;
    const auto it = body_->tree.find(key);
    if (it == body_->tree.end()) return false;
    if (old) *old = std::move(it->second);
    body_->tree.erase(it);
    ++body_->deletions;
    return true;
  }

  /// A place in the walk that survives changes of the map: after a deletion it finds the next
  /// greater key again. It must not outlive the map.
  class Cursor {
   public:
    explicit Cursor(const RbTreeMap& map) : map_(map) {
      if (map_.empty()) return;
      it_ = map_.body_->tree.begin();
      arrive();
    }
    /// At the key, or at the end when it is no member.
    Cursor(const RbTreeMap& map, const Key& key) : map_(map) {
      if (map_.empty()) return;
      it_ = map_.body_->tree.find(key);
      arrive();
    }
    explicit operator bool() const { return !atEnd_; }
    const Key& key() const { return key_; }
    /// The member, or null when it has been deleted meanwhile.
    const Value* value() const { return moved() ? map_.find(key_) : &it_->second; }
    void next() {
      it_ = moved() ? map_.body_->tree.upper_bound(key_) : std::next(it_);
      arrive();
    }

   private:
    friend RbTreeMap;
    bool moved() const { return deletions_ != map_.body_->deletions; }
    void arrive() {
      deletions_ = map_.body_->deletions;
      atEnd_ = it_ == map_.body_->tree.end();
      if (!atEnd_) key_ = it_->first;
    }

    const RbTreeMap& map_;
    typename Tree::const_iterator it_;
    Key key_{};
    std::uint32_t deletions_ = 0;
    bool atEnd_ = true;
  };
  /// Removes the member that a walk stands on. It is removed by its place: unless others were
  /// deleted since the walk came there, no key is compared. The walk goes on by `next`.
  void erase(const Cursor& at) {
    if (!at || at.moved()) return static_cast<void>(erase(Key(at.key())));
    body_->tree.erase(at.it_);
    ++body_->deletions;
  }

  Cursor cursor() const { return Cursor(*this); }
  Cursor cursor(const Key& key) const { return Cursor(*this, key); }

  // Plain iteration, for walks that change nothing.
  auto begin() const { return body_ ? body_->tree.begin() : emptyTree().begin(); }
  auto end() const { return body_ ? body_->tree.end() : emptyTree().end(); }

  friend bool operator==(const RbTreeMap& a, const RbTreeMap& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
  }

 private:
  Body& body() {
    if (!body_) body_ = std::make_unique<Body>();
    return *body_;
  }
  static const Tree& emptyTree() {
    static Body empty;
    return empty.tree;
  }

  std::unique_ptr<Body> body_;
};

} // namespace Lumo
