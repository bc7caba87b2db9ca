// The ordered collection: a red-black tree, walked in the order of the key's operator<.
#pragma once

#include "lumo/NodePool.h"

#include <algorithm>
#include <boost/intrusive/set.hpp>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace Lumo {

/// An ordered map. An empty one owns nothing; references to members stay valid until the member is
/// deleted. Entering keys in ascending order costs no search.
template <class Key, class Value>
class RbTreeMap {
  /// With the colour inside a pointer, a node is a quarter smaller than that of the standard map;
  /// and a key that is known to be the last is entered without a further comparison.
  using Hook =
      boost::intrusive::set_base_hook<boost::intrusive::link_mode<boost::intrusive::normal_link>,
                                      boost::intrusive::optimize_size<true>>;
  using Item = std::pair<const Key, Value>;
  struct Node : Hook {
    Node(const Key& key, Value&& value) : item(key, std::move(value)) {}
    Item item;
  };
  struct KeyOfNode {
    using type = Key;
    const Key& operator()(const Node& node) const { return node.item.first; }
  };
  using Tree = boost::intrusive::set<Node, boost::intrusive::key_of_value<KeyOfNode>,
                                     boost::intrusive::compare<std::less<Key>>>;

  struct Body {
    NodePool pool;
    Tree tree;
    Node* last = nullptr; ///< the tree itself would go down from its root for it
    std::uint32_t deletions = 0;

    Body() = default;
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;
    /// What needs no destructor goes with the pool's blocks, without a walk.
    ~Body() {
      if constexpr (!std::is_trivially_destructible_v<Item>) {
        tree.clear_and_dispose([](Node* node) { node->~Node(); });
      }
    }

    Node& make(const Key& key, Value&& value) {
      static_assert(alignof(Node) <= alignof(void*), "the pool aligns for pointers");
      return *::new (pool.allocate(sizeof(Node))) Node(key, std::move(value));
    }
    Value& append(Node& node) {
      tree.push_back(node);
      last = &node;
      return node.item.second;
    }
    void remove(typename Tree::const_iterator at) {
      const bool wasLast = &*at == last;
      tree.erase_and_dispose(at, [this](Node* node) {
        node->~Node();
        pool.deallocate(node);
      });
      if (wasLast) last = tree.empty() ? nullptr : &*tree.rbegin();
      ++deletions;
    }
  };

  /// A plain walk's place.
  class Iterator {
   public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Item;
    using difference_type = std::ptrdiff_t;
    using pointer = const Item*;
    using reference = const Item&;

    Iterator() = default;
    explicit Iterator(typename Tree::const_iterator at) : at_(at) {}
    reference operator*() const { return at_->item; }
    pointer operator->() const { return &at_->item; }
    Iterator& operator++() {
      prefetchAhead();
      return ++at_, *this;
    }
    Iterator operator++(int) { return Iterator(at_++); }
    Iterator& operator--() { return --at_, *this; }
    friend bool operator==(const Iterator& a, const Iterator& b) { return a.at_ == b.at_; }

   private:
    /// Nodes that were entered in order lie in order: those that come soon are fetched meanwhile,
    /// which the processor does not guess from the jumps of a walk through a tree.
    [[gnu::always_inline]] void prefetchAhead() const {
      constexpr std::size_t nodesAhead = 12;
      __builtin_prefetch(reinterpret_cast<const char*>(&*at_) + nodesAhead * sizeof(Node));
    }

    typename Tree::const_iterator at_{};
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
    return it == body_->tree.end() ? nullptr : &it->item.second;
  }
  Value* find(const Key& key) { return const_cast<Value*>(std::as_const(*this).find(key)); }

  /// Enters a value or replaces that which has the key; gives the one that stands there now.
  Value& insertOrAssign(const Key& key, Value value) {
    Body& body = this->body();
    Tree& tree = body.tree;
    if (!body.last || body.last->item.first < key) {
      return body.append(body.make(key, std::move(value)));
    }
    typename Tree::insert_commit_data place;
    const auto [at, isNew] = tree.insert_check(key, place);
    if (!isNew) return at->item.second = std::move(value);
    return tree.insert_commit(body.make(key, std::move(value)), place)->item.second;
  }

  /// Removes the member into `old`; false when there is none.
  bool erase(const Key& key, Value* old = nullptr) {
    if (!body_) return false;
    const auto it = body_->tree.find(key);
    if (it == body_->tree.end()) return false;
    if (old) *old = std::move(it->item.second);
    body_->remove(it);
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
    const Value* value() const { return moved() ? map_.find(key_) : &it_->item.second; }
    /// Moves on, behind the key where it stood if that is gone.
    void next() {
      moved() ? void(it_ = map_.body_->tree.upper_bound(key_)) : void(++it_);
      arrive();
    }

   private:
    friend RbTreeMap;
    bool moved() const { return deletions_ != map_.body_->deletions; }
    void arrive() {
      deletions_ = map_.body_->deletions;
      atEnd_ = it_ == map_.body_->tree.end();
      if (!atEnd_) key_ = it_->item.first;
    }

    const RbTreeMap& map_;
    typename Tree::const_iterator it_{};
    Key key_{};
    std::uint32_t deletions_ = 0;
    bool atEnd_ = true;
  };
  /// Removes the member that a walk stands on. It is removed by its place: unless others were
  /// deleted since the walk came there, no key is compared. The walk goes on by `next`.
  void erase(const Cursor& at) {
    if (!at || at.moved()) return static_cast<void>(erase(Key(at.key())));
    body_->remove(at.it_);
  }

  /// A walk from the first member, or from that of a key:
  Cursor cursor() const { return Cursor(*this); }
  Cursor cursor(const Key& key) const { return Cursor(*this, key); }

  // Plain iteration, for walks that change nothing.
  Iterator begin() const { return body_ ? Iterator(body_->tree.cbegin()) : Iterator(); }
  Iterator end() const { return body_ ? Iterator(body_->tree.cend()) : Iterator(); }

  friend bool operator==(const RbTreeMap& a, const RbTreeMap& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
  }

 private:
  Body& body() {
    if (!body_) body_ = std::make_unique<Body>();
    return *body_;
  }

  std::unique_ptr<Body> body_;
};

} // namespace Lumo
