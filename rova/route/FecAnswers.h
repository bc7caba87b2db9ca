// What a selection asks of each FEC again for every route on it, in one word a FEC. The entities
// of a large table lie scattered over more memory than the processor caches; these words fit.
#pragma once

#include "state/FecId.h"

#include <vector>

namespace Rova {

/// A yes or no for each FEC that was asked about. Open addressing over identifiers, the answer in
/// the top bit, which no valid identifier has: its adjacency type is below 20.
class FecAnswers {
 public:
  /// The answer for a FEC, from `ask()` when it is not known yet. The null identifier and invalid
  /// ones are asked about each time.
  template <class Ask>
  bool answer(Vanta::Fib::FecId id, Ask&& ask) {
    if (id.isNull() || (id.value() & yes) != 0) return ask();
    if (const std::uint64_t known = *place(id.value())) return (known & yes) != 0;
    const bool isYes = ask();
    enter(id.value() | (isYes ? yes : 0));
    return isYes;
  }

  /// Tells that the FEC will be asked about soon. Inlined, or g++ drops a call without effect.
  [[gnu::always_inline]] void expect(Vanta::Fib::FecId id) const {
    __builtin_prefetch(&words_[Kesh::mixHash(id.value()) & (words_.size() - 1)]);
  }

 private:
  static constexpr std::uint64_t yes = std::uint64_t{1} << 63;

  /// The word of an identifier, or the free one where it belongs.
  std::uint64_t* place(std::uint64_t id) {
    const std::size_t mask = words_.size() - 1;
    std::size_t at = Kesh::mixHash(id) & mask;
    while (words_[at] != 0 && (words_[at] & ~yes) != id) at = (at + 1) & mask;
    return &words_[at];
  }

  void enter(std::uint64_t word) {
    if (++used_ > words_.size() / 2) grow();
    *place(word & ~yes) = word;
  }

  void grow() {
    std::vector<std::uint64_t> old(words_.size() * 2);
    old.swap(words_);
    for (const std::uint64_t word : old) {
      if (word != 0) *place(word & ~yes) = word;
    }
  }

  std::vector<std::uint64_t> words_ = std::vector<std::uint64_t>(64); // a power of two
  std::size_t used_ = 0;
};

} // namespace Rova
