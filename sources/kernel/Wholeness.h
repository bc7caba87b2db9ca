// Whether what was read of a table is all that the kernel has of it.
//
// A dump is not one moment: while it goes on, objects come and go, and a dump of IPv6 routes loses
// some that were there throughout, without a word of the kernel's. So a table is known to be whole
// in two cases only. A dump during which nothing moved is the table. And when something did, a
// further dump is taken, and the table is whole when that brings nothing which no notification
// explains. In between an object goes by a notification alone: that a dump lacks it proves nothing.
// So where something may have gone without a word, as when notifications were lost, only a dump
// during which nothing moved makes the table whole.
#pragma once

#include "sources/kernel/Netlink.h"

namespace sources::kernel {

class Wholeness {
 public:
  bool isWhole() const { return whole_; }
  bool isDumping() const { return dumping_; }
  /// Whether a dump before the one in progress told what there is.
  bool wasDumped() const { return dumped_; }

  void dumpBegins() {
    dumping_ = true;
    quiet_ = true;
    unexplained_ = false;
  }
  /// An object of the table was notified.
  void notified() { quiet_ = false; }
  /// Something may have changed the table without a word.
  void disturbed() {
    quiet_ = false;
    unexplained_ = true;
    whole_ = false;
    mayHoldGone_ = true;
  }
  /// A dump brought an object that was not known, and no notification told of it.
  void foundUnknown() { unexplained_ = true; }

  /// Whether nothing moved during the dump that ends so: what it lacks is gone.
  bool isExact(const DumpEnd& end) const { return quiet_ && end.complete && !end.interrupted; }
  void dumpEnds(const DumpEnd& end) {
    if (isExact(end)) mayHoldGone_ = false;
    whole_ = isExact(end) || (dumped_ && end.complete && !unexplained_ && !mayHoldGone_);
    dumping_ = false;
    dumped_ = true;
  }

 private:
  bool whole_ = false;
  bool dumping_ = false;
  bool dumped_ = false; ///< at least once
  bool quiet_ = true;
  bool unexplained_ = false;
  bool mayHoldGone_ = false; ///< since the last exact dump something may have gone without a word
};

} // namespace sources::kernel
