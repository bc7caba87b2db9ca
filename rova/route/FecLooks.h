// What a display works out of a FEC at the first route on it and needs again for every other, side
// by side with the output that its routes share. The entity of a FEC with its vias takes six cache
// misses a route to ask.
#pragma once

#include "lumo/HashMap2018.h"
#include "scrivo/Stretch.h"
#include "state/FecId.h"

#include <algorithm>
#include <array>

namespace Rova {

/// The looks of one display. A look has the member `output()`, a `scrivo::Stretch`.
template <class Look>
class FecLooks {
 public:
  using FecId = Vanta::Fib::FecId;

  /// The look of a FEC, from `make()` at first. Valid until the next call.
  template <class Make>
  Look& look(FecId fecId, Make&& make) {
    if (next_ && fecId == nextId_ && looks_.size() == sizeAtNext_) return *next_;
    if (Look* const known = looks_.find(fecId)) return *known;
    return looks_.insertOrAssign(fecId, make());
  }

  /// Tells that the FEC will be looked at soon.
  [[gnu::always_inline]] void expect(FecId fecId) const { looks_.prefetch(fecId); }
  /// Tells that it will be looked at next, and its output be printed.
  void expectOutput(FecId fecId) {
    next_ = looks_.find(fecId);
    nextId_ = fecId;
    sizeAtNext_ = looks_.size();
    if (next_) next_->output().prefetch();
  }

 private:
  Lumo::HashMap2018<FecId, Look> looks_;
  Look* next_ = nullptr; ///< as long as there are no more looks than `sizeAtNext_`
  FecId nextId_;
  std::size_t sizeAtNext_ = 0;
};

/// Calls `print(route)` for each of the routes in order. It reads two routes ahead, so that what is
/// known of their FECs, and then the output that it leads to, are on their way from memory while
/// another route prints.
template <class Routes, class Look, class Print>
void printLookingAhead(const Routes& routes, FecLooks<Look>& looks, Print&& print) {
  constexpr std::size_t depth = 3;
  std::array<typename Routes::ValueType, depth> coming;
  std::size_t count = 0;
  auto at = routes.cursor();
  do {
    for (; at && count < depth; at.next()) {
      coming[count] = at.value() ? *at.value() : typename Routes::ValueType();
      looks.expect(coming[count++].fecId);
    }
    if (count == 0) return;
    if (count > 1) looks.expectOutput(coming[1].fecId);
    print(coming[0]);
    std::move(coming.begin() + 1, coming.begin() + count, coming.begin());
  } while (--count != 0 || at);
}

} // namespace Rova
