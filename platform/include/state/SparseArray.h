// An array by entry index that holds only the elements that were given to it.
#pragma once

#include "lumo/RbTreeMap.h"

#include <cstdint>

namespace state {

/// Any index may be read; one without an element reads as `T()`. Equal states have equal members,
/// since a default element is no member.
template <class T>
class SparseArray {
 public:
  using Index = std::uint16_t;
  using ElementType = T;

  const T& operator[](Index index) const {
    static const T absent{};
    const T* const found = members_.find(index);
    return found ? *found : absent;
  }
  /// Keeps the element, or nothing where it is the default one.
  void set(Index index, const T& element) {
    if (element == T()) {
      members_.erase(index);
    } else {
      members_.insertOrAssign(index, element);
    }
  }
  /// By ascending index.
  const Lumo::RbTreeMap<Index, T>& members() const { return members_; }

  friend bool operator==(const SparseArray&, const SparseArray&) = default;

 private:
  Lumo::RbTreeMap<Index, T> members_;
};

} // namespace state
