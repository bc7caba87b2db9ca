// A word for each FEC that routes ask about again and again: of as many FECs as a large table has,
// they fit into the processor caches, where what else is known of the FECs does not.
#pragma once

#include "state/FecId.h"

#include <vector>

namespace Rova {

/// The words under the identifiers of FECs; open addressing.
class FecWords {
 public:
  using FecId = Vanta::Fib::FecId;

  /// The word of a FEC, valid until the next one is entered; null without one, and for no FEC.
  const std::uint64_t* find(FecId id) const {
    const Member& member = members_[placeOf(id)];
    return member.id == 0 ? nullptr : &member.word;
  }
  /// Enters or replaces a word; none for no FEC.
  void enter(FecId id, std::uint64_t word) {
    if (id.isNull()) return;
    if ((used_ + 1) * 2 > members_.size()) grow();
    Member& member = members_[placeOf(id)];
    used_ += member.id == 0;
    member = {id.value(), word};
  }
  /// Tells that the word will be looked for soon. Inlined, or g++ drops a call without effect.
  [[gnu::always_inline]] void expect(FecId id) const {
    __builtin_prefetch(&members_[Kesh::mixHash(id.value()) & (members_.size() - 1)]);
  }
  /// Forgets all words.
  void clear() { *this = FecWords(); }

 private:
  struct Member {
    std::uint64_t id = 0; ///< 0 where it is free
    std::uint64_t word = 0;
  };

  /// The member of an identifier, or the free one where it belongs.
  std::size_t placeOf(FecId id) const {
    const std::size_t mask = members_.size() - 1;
    std::size_t at = Kesh::mixHash(id.value()) & mask;
    while (members_[at].id != 0 && members_[at].id != id.value()) at = (at + 1) & mask;
    return at;
  }

  void grow() {
    std::vector<Member> old(members_.size() * 2);
    old.swap(members_);
    for (const Member& member : old) {
      if (member.id != 0) members_[placeOf(FecId(member.id))] = member;
    }
  }

  std::vector<Member> members_ = std::vector<Member>(64); // a power of two
  std::size_t used_ = 0;
};

} // namespace Rova
