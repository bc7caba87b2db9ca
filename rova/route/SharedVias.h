// What the lines of all routes on one FEC have in common: how they go on behind their head, and
// the printed text of the vias.
#pragma once

#include "kesh/Prefix.h"
#include "rova/core/DirectlyConnected.h"
#include "scrivo/Stretch.h"

#include <functional>
#include <string_view>

namespace Rova {

/// How a line goes on behind its head.
enum class LineForm : std::uint8_t { unknown, hidden, connected, rows, nowhere, vias };

/// The next hops that a print compared with its route's own address, as one bit each: it may take
/// another address for one of them, but never misses one.
class AskedHops {
 public:
  void enter(std::string_view hop) {
    if (!hop.empty()) bits_ |= bit(hop);
  }
  bool mayHold(std::string_view hop) const { return (bits_ & bit(hop)) != 0; }

 private:
  static std::uint64_t bit(std::string_view hop) {
    return std::uint64_t{1} << (std::hash<std::string_view>{}(hop) % 64);
  }

  std::uint64_t bits_ = 0;
};

struct SharedVias {
  LineForm form = LineForm::unknown;
  bool isForm6 = false; ///< of which listing's lines
  AskedHops askedHops;
  scrivo::Stretch output;

  /// Whether a line of this route looks like the others, as far as is known. It does not where the
  /// route is one to the address of a next hop.
  bool suit(const Kesh::IpGenPrefix& prefix) const {
    if (!isHostRoute(prefix)) return true;
    char text[Kesh::maxAddressText];
    return !askedHops.mayHold({text, prefix.address().writeText(text)});
  }
  /// Whether a line in that form needs nothing more of the FEC.
  bool isKnown(bool asForm6) const { return form != LineForm::unknown && isForm6 == asForm6; }
  /// Tells that a line was printed, or left out, in a form that was not known: the first of its
  /// FEC, or the first in the other listing's form.
  void isPrinted(LineForm as, bool asForm6, const Kesh::IpGenPrefix& prefix) {
    if (!suit(prefix)) return forget();
    form = as;
    isForm6 = asForm6;
  }
  /// Drops what was printed; what was asked stays true.
  void forget() {
    form = LineForm::unknown;
    output.forget();
  }
};

} // namespace Rova
